#include "compositions/evaluator/PatchDefinition.h"

#include "compositions/Limits.h"
#include "compositions/patches/Families.h"

#include <QHash>

#include <algorithm>
#include <array>

namespace tarnwell::compositions {

namespace {

int countMentioned(const QStringList &keys, QLatin1StringView prefix)
{
    int count = 0;
    for (const QString &key : keys) {
        if (!key.startsWith(prefix)) {
            continue;
        }
        bool isNumber = false;
        const int number = QStringView(key).mid(prefix.size()).toInt(&isNumber);
        if (isNumber && number >= 0 && number < limits::countedPorts) {
            count = std::max(count, number + 1);
        }
    }
    return count;
}

} // namespace

Value PortDefinition::initialValue() const
{
    switch (type) {
    case PortType::Number:
        return defaultValue;
    case PortType::Index:
        return Value::index(qint64(defaultValue));
    case PortType::Boolean:
        return defaultValue != 0.0;
    case PortType::Color:
        return Color{defaultValue, defaultValue, defaultValue, defaultValue != 0.0 ? 1.0 : 0.0};
    default:
        return Value::zero(type);
    }
}

PortList::PortList(QStringList mentionedInputs, QStringList mentionedOutputs)
    : m_mentionedInputs(std::move(mentionedInputs))
    , m_mentionedOutputs(std::move(mentionedOutputs))
{}

void PortList::addInput(const QString &key, PortType type, const Value &initial)
{
    m_inputs.push_back({key, type, initial.isNull() ? Value::zero(type) : initial});
}

void PortList::addOutput(const QString &key, PortType type)
{
    m_outputs.push_back({key, type, {}});
}

int PortList::mentionedInputCount(QLatin1StringView prefix) const
{
    return countMentioned(m_mentionedInputs, prefix);
}

int PortList::mentionedOutputCount(QLatin1StringView prefix) const
{
    return countMentioned(m_mentionedOutputs, prefix);
}

std::span<const std::span<const PatchDefinition>> patchFamilies()
{
    static const std::array families{
        numericPatches(),     logicPatches(),  colorPatches(),       imagePatches(),
        imageFilterPatches(), textPatches(),   structurePatches(),   generatorPatches(),
        timingPatches(),      scriptPatches(), environmentPatches(), consumerPatches(),
        shapePatches(),       lightPatches(),  devicePatches(),
    };
    return families;
}

const PatchDefinition *findPatchDefinition(QStringView className)
{
    static const QHash<QStringView, const PatchDefinition *> table = [] {
        static QStringList names; // owns what the keys look at
        QHash<QStringView, const PatchDefinition *> result;
        for (const auto &family : patchFamilies()) {
            for (const PatchDefinition &definition : family) {
                names.append(definition.className);
                result.insert(names.constLast(), &definition);
            }
        }
        return result;
    }();
    return table.value(className, nullptr);
}

} // namespace tarnwell::compositions
