#include "compositions/evaluator/Context.h"
#include "compositions/model/Structure.h"
#include "compositions/patches/Families.h"
#include "compositions/patches/FormatText.h"
#include "compositions/patches/Settings.h"
#include "compositions/patches/TextImage.h"
#include "compositions/text/DatePattern.h"
#include "compositions/text/NumberPattern.h"

#include <array>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using Type = PortType;

namespace {

/// Charges for going through a text; false when the frame has no share left.
bool takeReading(Context &context, qsizetype characters)
{
    constexpr qsizetype charactersPerRun = 64;
    return context.charge(characters / charactersPerRun);
}

void splitString(Context &context)
{
    const QString separator = context.string(1);
    const QString text = context.string(0);
    if (!takeReading(context, text.size() + separator.size())) {
        return;
    }
    std::vector<Value> parts;
    for (const QString &part : separator.isEmpty() ? QStringList{text} : text.split(separator)) {
        parts.emplace_back(part);
    }
    context.set(0, Structure::list(std::move(parts)));
}

/// Cuts a text to so many characters, or words, and puts a token where something is missing.
void truncateString(Context &context)
{
    const QString text = context.string(0);
    const bool byWords = context.index(1) == 1;
    const qsizetype most = context.index(2);
    const qint64 direction = context.index(3);
    const QString token = context.string(4);
    if (byWords && !takeReading(context, text.size())) {
        return;
    }
    const QStringList words = byWords ? text.split(u' ', Qt::SkipEmptyParts) : QStringList();
    const qsizetype length = byWords ? words.size() : text.size();
    if (length <= most) {
        context.set(0, text);
        return;
    }
    const auto part = [&](qsizetype from, qsizetype count) {
        return byWords ? words.mid(from, count).join(u' ') : text.mid(from, count);
    };
    switch (direction) {
    case 0:
        context.set(0, QString(part(0, most) + token));
        break;
    case 1:
        context.set(0, QString(token + part(length - most, most)));
        break;
    default:
        context.set(0,
                    QString(part(0, most - most / 2) + token + part(length - most / 2, most / 2)));
        break;
    }
}

void compareStrings(Context &context)
{
    const bool isSensitive = context.boolean(2);
    const QString first = context.string(0);
    const QString second = context.string(1);
    if (takeReading(context, std::min(first.size(), second.size()))) {
        context.set(
            0, first.compare(second, isSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive) == 0);
    }
}

void stringLength(Context &context)
{
    context.set(0, Value::index(context.string(0).size()));
}

void stringRange(Context &context)
{
    const QString text = context.string(0);
    const qint64 first = std::min<qint64>(context.index(1), text.size());
    context.set(0, text.mid(first, std::min<qint64>(context.index(2), text.size() - first)));
}

void changeCase(Context &context)
{
    QString text = context.string(0);
    switch (context.index(1)) {
    case 0:
        text = text.toUpper();
        break;
    case 1:
        text = text.toLower();
        break;
    default:
        for (qsizetype i = 0; i < text.size(); ++i) {
            const bool startsWord = i == 0 || !text[i - 1].isLetterOrNumber();
            text[i] = startsWord ? text[i].toUpper() : text[i].toLower();
        }
        break;
    }
    context.set(0, text);
}

void numberText(Context &context)
{
    const NodeDescription &description = context.description();
    const double number = context.number(0);
    const QString pattern = description.setting("format"_L1).toString();
    if (!takeReading(context, pattern.size())) {
        return;
    }
    if (!pattern.isEmpty()) {
        context.set(0, formatNumber(number, pattern, context.locale()));
        return;
    }
    constexpr std::array patterns{"#0.######"_L1, "#,##0.###"_L1, "#,##0.00"_L1, "#,##0%"_L1};
    const qint64 style = std::clamp<qint64>(description.setting("style"_L1).toInteger(), 0,
                                            qint64(patterns.size()) - 1);
    context.set(0, formatNumber(number, QString(patterns[size_t(style)]), context.locale()));
}

void dateText(Context &context)
{
    const NodeDescription &description = context.description();
    const QByteArray zoneId = description.setting("timeZone"_L1).toString().toLatin1();
    const QTimeZone own = zoneId.isEmpty() ? QTimeZone() : QTimeZone(zoneId);
    const QDateTime dateTime =
        dateTimeFromAbsolute(context.number(0), own.isValid() ? own : context.timeZone());
    const QString pattern = description.setting("format"_L1).toString();
    if (!takeReading(context, pattern.size())) {
        return;
    }
    const auto style = [&description](QLatin1StringView name) {
        return countSetting(description, name, 1);
    };
    context.set(0, pattern.isEmpty() ? formatDate(dateTime, style("dateStyle"_L1),
                                                  style("timeStyle"_L1), context.locale())
                                     : formatDate(dateTime, pattern, context.locale()));
}

constexpr std::array stringInput{PortDefinition{"inputString"_L1, Type::String}};
constexpr std::array stringOutput{PortDefinition{"outputString"_L1, Type::String}};
constexpr std::array splitInputs{PortDefinition{"inputString"_L1, Type::String},
                                 PortDefinition{"inputSeparator"_L1, Type::String}};
constexpr std::array splitOutputs{PortDefinition{"outputComponents"_L1, Type::Structure}};
constexpr std::array truncateInputs{PortDefinition{"inputString"_L1, Type::String},
                                    PortDefinition{"inputMode"_L1, Type::Index},
                                    PortDefinition{"inputMax"_L1, Type::Index, 10.0},
                                    PortDefinition{"inputDirection"_L1, Type::Index},
                                    PortDefinition{"inputToken"_L1, Type::String}};
constexpr std::array compareInputs{PortDefinition{"inputString1"_L1, Type::String},
                                   PortDefinition{"inputString2"_L1, Type::String},
                                   PortDefinition{"inputCaseSensitive"_L1, Type::Boolean, 1.0}};
constexpr std::array compareOutputs{PortDefinition{"outputResult"_L1, Type::Boolean}};
constexpr std::array lengthOutputs{PortDefinition{"outputLength"_L1, Type::Index}};
constexpr std::array rangeInputs{PortDefinition{"inputString"_L1, Type::String},
                                 PortDefinition{"inputIndex"_L1, Type::Index},
                                 PortDefinition{"inputLength"_L1, Type::Index, 1.0}};
constexpr std::array caseInputs{PortDefinition{"inputString"_L1, Type::String},
                                PortDefinition{"inputCase"_L1, Type::Index}};
constexpr std::array numberInputs{PortDefinition{"inputNumber"_L1, Type::Number}};
constexpr std::array dateInputs{PortDefinition{"inputTime"_L1, Type::Number}};

const std::array definitions{
    PatchDefinition{.className = "QCStringFormat"_L1,
                    .make = makePatch<FormatText>,
                    .addPorts = FormatText::addPorts},
    PatchDefinition{.className = "QCStringComponents"_L1,
                    .inputs = splitInputs,
                    .outputs = splitOutputs,
                    .run = splitString},
    PatchDefinition{.className = "QCStringTruncate"_L1,
                    .inputs = truncateInputs,
                    .outputs = stringOutput,
                    .run = truncateString},
    PatchDefinition{.className = "QCStringCompare"_L1,
                    .inputs = compareInputs,
                    .outputs = compareOutputs,
                    .run = compareStrings},
    PatchDefinition{.className = "QCStringLength"_L1,
                    .inputs = stringInput,
                    .outputs = lengthOutputs,
                    .run = stringLength},
    PatchDefinition{.className = "QCStringRange"_L1,
                    .inputs = rangeInputs,
                    .outputs = stringOutput,
                    .run = stringRange},
    PatchDefinition{.className = "QCStringCase"_L1,
                    .inputs = caseInputs,
                    .outputs = stringOutput,
                    .run = changeCase},
    PatchDefinition{.className = "QCNumberFormatter"_L1,
                    .inputs = numberInputs,
                    .outputs = stringOutput,
                    .run = numberText},
    PatchDefinition{.className = "QCDateFormatter"_L1,
                    .inputs = dateInputs,
                    .outputs = stringOutput,
                    .run = dateText},
    PatchDefinition{.className = "QCTextImage"_L1,
                    .inputs = TextImage::inputs(),
                    .outputs = TextImage::outputs(),
                    .traits = Trait::FrameDependent,
                    .make = makePatch<TextImage>},
};

} // namespace

std::span<const PatchDefinition> textPatches()
{
    return definitions;
}

} // namespace tarnwell::compositions
