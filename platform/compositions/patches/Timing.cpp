#include "compositions/evaluator/Context.h"
#include "compositions/patches/Edge.h"
#include "compositions/patches/Families.h"
#include "compositions/patches/Settings.h"

#include <array>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using Type = PortType;

namespace {

void patchTime(Context &context)
{
    context.set(0, context.time());
}

void systemTime(Context &context)
{
    context.set(0, context.systemTime());
}

class Stopwatch : public Patch
{
public:
    void run(Context &context) override
    {
        const double time = context.time();
        if (m_isRunning && time > m_lastTime) {
            m_elapsed += time - m_lastTime;
        }
        m_lastTime = time;
        if (m_start.rises(context.boolean(0))) {
            m_isRunning = true;
        }
        if (m_stop.rises(context.boolean(1))) {
            m_isRunning = false;
        }
        if (m_reset.rises(context.boolean(2))) {
            m_elapsed = 0.0;
        }
        context.set(0, m_elapsed);
    }

private:
    Edge m_start;
    Edge m_stop;
    Edge m_reset;
    bool m_isRunning = false;
    double m_lastTime = 0.0;
    double m_elapsed = 0.0;
};

constexpr QLatin1StringView initialPrefix = "Initial_"_L1;

void addFeedbackPorts(const NodeDescription &, PortList &ports)
{
    // Every output has an input for its first value, named after it.
    QStringList keys = ports.mentionedOutputs();
    for (const QString &key : ports.mentionedInputs()) {
        if (key.startsWith(initialPrefix)) {
            keys.append(key.mid(initialPrefix.size()));
        }
    }
    keys.removeDuplicates();
    for (const QString &key : keys.mid(0, limits::countedPorts)) {
        ports.addInput(initialPrefix + key, Type::Virtual);
        ports.addOutput(key, Type::Virtual);
    }
}

void feedBack(Context &context)
{
    const bool isInitializing = context.boolean(0);
    for (int i = 0; i < context.outputCount(); ++i) {
        const Value &before = context.remembered(i);
        context.set(i, isInitializing || before.isNull()
                           ? context.value(QString(initialPrefix + context.outputKey(i)))
                           : before);
    }
}

constexpr std::array timeOutput{PortDefinition{"outputTime"_L1, Type::Number}};
constexpr std::array stopwatchInputs{PortDefinition{"inputStartSignal"_L1, Type::Boolean},
                                     PortDefinition{"inputStopSignal"_L1, Type::Boolean},
                                     PortDefinition{"inputResetSignal"_L1, Type::Boolean}};
constexpr std::array feedbackInputs{PortDefinition{"inputInitialize"_L1, Type::Boolean}};

const std::array definitions{
    PatchDefinition{.className = "QCTime"_L1,
                    .outputs = timeOutput,
                    .traits = Trait::TimeDependent,
                    .run = patchTime},
    PatchDefinition{.className = "QCSystemTime"_L1,
                    .outputs = timeOutput,
                    .traits = Trait::TimeDependent,
                    .run = systemTime},
    PatchDefinition{.className = "QCClock"_L1,
                    .inputs = stopwatchInputs,
                    .outputs = timeOutput,
                    .traits = Trait::TimeDependent | Trait::Stateful,
                    .make = makePatch<Stopwatch>},
    PatchDefinition{.className = "QCRecursor"_L1,
                    .role = Role::Feedback,
                    .inputs = feedbackInputs,
                    .traits = Trait::Stateful,
                    .run = feedBack,
                    .addPorts = addFeedbackPorts},
};

} // namespace

std::span<const PatchDefinition> timingPatches()
{
    return definitions;
}

} // namespace tarnwell::compositions
