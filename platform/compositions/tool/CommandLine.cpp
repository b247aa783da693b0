#include "compositions/tool/CommandLine.h"

#include "compositions/Limits.h"
#include "compositions/evaluator/Report.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cmath>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

const char *const usage =
    "usage: tarnwell-composition FILE [--info] [--time SECONDS] [--size WIDTHxHEIGHT]\n"
    "                            [--set KEY=JSON]... [--png FILE] [--frames COUNT]\n"
    "                            [--deadline SECONDS] [--unconfined]\n"
    "       tarnwell-composition --confinement\n"
    "\n"
    "  --info         print what the composition is made of, in JSON\n"
    "  --time         the moment to show, in seconds from the start (default 0)\n"
    "  --size         pixels of the picture (default 640x480)\n"
    "  --set          give a published input a value, for example --set Text='\"hello\"'\n"
    "  --png          draw one frame into a file\n"
    "  --frames       draw so many frames and print how fast that was\n"
    "  --deadline     how long one frame may take (default 20)\n"
    "  --unconfined   leave the player the rights to files, programs and sockets, to debug it\n"
    "  --confinement  print whether this system can take those rights away\n"
    "\n"
    "exit status: 0 drawn, 1 not a composition, 2 usage, 3 not drawn: there is no OpenGL, the\n"
    "picture cannot be written, or the composition took too much time or memory or brought the\n"
    "player down\n";

namespace {

std::optional<QSize> parseSize(const QString &text)
{
    const QStringList parts = text.split(u'x');
    bool hasWidth = false;
    bool hasHeight = false;
    const QSize size(parts.value(0).toInt(&hasWidth), parts.value(1).toInt(&hasHeight));
    if (parts.size() != 2 || !hasWidth || !hasHeight || size.width() < 1 || size.height() < 1 ||
        size.width() > limits::imageSide || size.height() > limits::imageSide) {
        return std::nullopt;
    }
    return size;
}

std::optional<std::pair<QString, Value>> parseInput(const QString &text)
{
    const qsizetype sign = text.indexOf(u'=');
    if (sign <= 0) {
        return std::nullopt;
    }
    // Only arrays and objects are documents of their own, so the value travels in an array.
    QJsonParseError error;
    const QJsonDocument document =
        QJsonDocument::fromJson('[' + text.mid(sign + 1).toUtf8() + ']', &error);
    if (error.error != QJsonParseError::NoError || document.array().size() != 1) {
        return std::nullopt;
    }
    return std::pair{text.left(sign), fromJson(document.array().first())};
}

/// Takes one option with its value. Returns whether both make sense.
bool takeOption(const QString &option, const QString &value, CommandLine &line)
{
    bool isNumber = false;
    if (option == "--time"_L1) {
        line.time = value.toDouble(&isNumber);
        return isNumber && std::isfinite(line.time) && line.time >= 0.0;
    }
    if (option == "--deadline"_L1) {
        line.deadline = value.toDouble(&isNumber);
        return isNumber && std::isfinite(*line.deadline) && *line.deadline > 0.0;
    }
    if (option == "--frames"_L1) {
        line.frames = value.toInt(&isNumber);
        return isNumber && line.frames > 0;
    }
    if (option == "--size"_L1) {
        const auto size = parseSize(value);
        line.size = size.value_or(line.size);
        return size.has_value();
    }
    if (option == "--png"_L1) {
        line.picture = value;
        return !value.isEmpty();
    }
    auto input = parseInput(value);
    if (input) {
        line.inputs.push_back(std::move(*input));
    }
    return input.has_value();
}

} // namespace

std::optional<CommandLine> parseCommandLine(const QStringList &arguments, QString *error)
{
    const QStringList valued{u"--time"_s, u"--frames"_s, u"--size"_s,
                             u"--png"_s,  u"--set"_s,    u"--deadline"_s};
    const auto fail = [error](const QString &reason) {
        *error = reason;
        return std::nullopt;
    };
    CommandLine line;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        if (argument == "--info"_L1) {
            line.showsInfo = true;
        } else if (argument == "--unconfined"_L1) {
            line.isUnconfined = true;
        } else if (valued.contains(argument)) {
            if (i + 1 >= arguments.size()) {
                return fail(argument + u" wants a value"_s);
            }
            ++i;
            if (!takeOption(argument, arguments[i], line)) {
                return fail(argument + u" cannot be \"%1\""_s.arg(arguments[i]));
            }
        } else if (argument.startsWith("--"_L1)) {
            return fail(u"there is no option "_s + argument);
        } else if (!line.file.isEmpty()) {
            return fail(u"one composition at a time"_s);
        } else {
            line.file = argument;
        }
    }
    if (line.file.isEmpty()) {
        return fail(u"which composition?"_s);
    }
    return line;
}

} // namespace tarnwell::compositions
