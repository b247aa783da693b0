#include "compositions/evaluator/Context.h"
#include "compositions/patches/Edge.h"
#include "compositions/patches/Families.h"
#include "compositions/patches/Settings.h"

#include <array>
#include <cmath>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using Type = PortType;

namespace {

PortType portClassSetting(const NodeDescription &description)
{
    const QString portClass = description.setting("portClass"_L1).toString();
    return portClass.isEmpty() ? Type::Virtual : portTypeOfClass(portClass);
}

void conditional(Context &context)
{
    const double difference = context.number(0) - context.number(2);
    const double tolerance = std::abs(context.number(3));
    bool result = false;
    switch (context.index(1)) {
    case 0:
        result = std::abs(difference) <= tolerance;
        break;
    case 1:
        result = std::abs(difference) > tolerance;
        break;
    case 2:
        result = difference > tolerance;
        break;
    case 3:
        result = difference < -tolerance;
        break;
    case 4:
        result = difference >= -tolerance;
        break;
    case 5:
        result = difference <= tolerance;
        break;
    default:
        break;
    }
    context.set(0, result);
}

void logic(Context &context)
{
    const bool a = context.boolean(0);
    const bool b = context.boolean(2);
    const std::array results{a && b, a || b, a != b, !a, !(a && b), !(a || b), a == b};
    const qint64 operation = context.index(1);
    context.set(0, operation < qint64(results.size()) && results[size_t(operation)]);
}

void addSplitterPorts(const NodeDescription &description, PortList &ports)
{
    ports.addInput(u"input"_s, portClassSetting(description));
    ports.addOutput(u"output"_s, portClassSetting(description));
}

class Splitter : public Patch
{
public:
    explicit Splitter(const NodeDescription &description)
        : m_type(portClassSetting(description))
    {}

    void run(Context &context) override { context.set(0, context.value(0).converted(m_type)); }

private:
    PortType m_type;
};

constexpr int firstSource = 1;

void addMultiplexerPorts(const NodeDescription &description, PortList &ports)
{
    const int count = std::max(countSetting(description, "inputCount"_L1),
                               ports.mentionedInputCount("source_"_L1));
    for (int i = 0; i < count; ++i) {
        ports.addInput(u"source_%1"_s.arg(i), portClassSetting(description));
    }
    ports.addOutput(u"output"_s, portClassSetting(description));
}

int selectedSource(Context &context)
{
    int count = 0;
    while (firstSource + count < context.inputCount() &&
           context.inputKey(firstSource + count).startsWith("source_"_L1)) {
        ++count;
    }
    return count == 0 ? -1 : firstSource + int(std::min<qint64>(context.index(0), count - 1));
}

class Multiplexer : public Patch
{
public:
    explicit Multiplexer(const NodeDescription &description)
        : m_type(portClassSetting(description))
    {}

    void run(Context &context) override
    {
        const int selected = selectedSource(context);
        if (selected >= 0) {
            context.set(0, context.value(selected).converted(m_type));
        }
    }

private:
    PortType m_type;
};

void addDemultiplexerPorts(const NodeDescription &description, PortList &ports)
{
    const PortType type = portClassSetting(description);
    ports.addInput(u"input"_s, type);
    ports.addInput(u"inputReset"_s, type);
    const int count = std::max(countSetting(description, "outputCount"_L1),
                               ports.mentionedOutputCount("destination_"_L1));
    for (int i = 0; i < count; ++i) {
        ports.addOutput(u"destination_%1"_s.arg(i), type);
    }
}

class Demultiplexer : public Patch
{
public:
    explicit Demultiplexer(const NodeDescription &description)
        : m_type(portClassSetting(description))
        , m_resets(flagSetting(description, "resetOutputs"_L1))
    {}

    void run(Context &context) override
    {
        constexpr int input = 1;
        constexpr int reset = 2;
        const qint64 last = context.outputCount() - 1;
        const qint64 selected = std::min(context.index(0), last);
        for (qint64 i = 0; i <= last; ++i) {
            if (i == selected || m_resets) {
                context.set(int(i), context.value(i == selected ? input : reset).converted(m_type));
            }
        }
    }

private:
    PortType m_type;
    bool m_resets;
};

class Counter : public Patch
{
public:
    void run(Context &context) override
    {
        if (m_up.rises(context.boolean(0))) {
            ++m_count;
        }
        if (m_down.rises(context.boolean(1))) {
            --m_count;
        }
        if (m_reset.rises(context.boolean(2))) {
            m_count = 0;
        }
        // The output has no room for less than nothing, and counting goes on from there.
        m_count = std::max<qint64>(m_count, 0);
        context.set(0, Value::index(m_count));
    }

private:
    Edge m_up;
    Edge m_down;
    Edge m_reset;
    qint64 m_count = 0;
};

class Pulse : public Patch
{
public:
    void run(Context &context) override
    {
        const bool signal = context.boolean(0);
        const qint64 mode = context.index(1);
        const bool hasRisen = signal && !m_last;
        const bool hasFallen = !signal && m_last;
        m_last = signal;
        context.set(0, mode == 0 ? hasRisen : mode == 1 ? hasFallen : hasRisen || hasFallen);
    }

private:
    bool m_last = false;
};

/// Raises its output for one frame at certain times, or when its parameter changes.
class Signal : public Patch
{
public:
    void run(Context &context) override
    {
        const qint64 mode = context.index(0);
        const double parameter = context.number(1);
        const double time = context.time();
        if (m_isFirst || time < m_lastTime) {
            m_start = time;
            m_periods = 0;
            m_isDone = false;
        }
        bool signal = false;
        if (mode == 0) {
            signal = !m_isDone && time - m_start >= parameter;
            m_isDone = m_isDone || signal;
        } else if (mode == 1 || mode == 2) {
            const double periods = parameter > 0.0 ? std::floor((time - m_start) / parameter) : 0.0;
            signal = periods > m_periods || (mode == 2 && m_isFirst);
            m_periods = periods;
        } else {
            signal = m_isFirst ? mode == 4 : parameter != m_parameter;
        }
        m_isFirst = false;
        m_lastTime = time;
        m_parameter = parameter;
        context.set(0, signal);
    }

private:
    bool m_isFirst = true;
    bool m_isDone = false;
    double m_start = 0.0;
    double m_lastTime = 0.0;
    double m_periods = 0.0;
    double m_parameter = 0.0;
};

class SampleHold : public Patch
{
public:
    void run(Context &context) override
    {
        if (m_reset.rises(context.boolean(2))) {
            m_value = Value::zero(context.value(0).type());
        }
        if (context.boolean(1)) {
            m_value = context.value(0);
        }
        context.set(0, m_value);
    }

private:
    Edge m_reset;
    Value m_value = 0.0;
};

void addWatcherPorts(const NodeDescription &description, PortList &ports)
{
    ports.addInput(u"input"_s, portClassSetting(description));
}

class Watcher : public Patch
{
public:
    void run(Context &context) override
    {
        const Value value = context.value(u"input");
        context.set(0, !m_isFirst && !(value == m_last));
        m_last = value;
        m_isFirst = false;
    }

private:
    Value m_last;
    bool m_isFirst = true;
};

constexpr std::array conditionalInputs{PortDefinition{"inputValue1"_L1, Type::Number},
                                       PortDefinition{"inputTest"_L1, Type::Index},
                                       PortDefinition{"inputValue2"_L1, Type::Number},
                                       PortDefinition{"inputTolerance"_L1, Type::Number}};
constexpr std::array booleanResult{PortDefinition{"outputResult"_L1, Type::Boolean}};
constexpr std::array logicInputs{PortDefinition{"inputValue1"_L1, Type::Boolean},
                                 PortDefinition{"inputOperation"_L1, Type::Index},
                                 PortDefinition{"inputValue2"_L1, Type::Boolean}};
constexpr std::array indexInput{PortDefinition{"inputIndex"_L1, Type::Index}};
constexpr std::array counterInputs{PortDefinition{"inputSignal"_L1, Type::Boolean},
                                   PortDefinition{"inputSignalDown"_L1, Type::Boolean},
                                   PortDefinition{"inputSignalReset"_L1, Type::Boolean}};
constexpr std::array countOutput{PortDefinition{"outputCount"_L1, Type::Index}};
constexpr std::array pulseInputs{PortDefinition{"inputSignal"_L1, Type::Boolean},
                                 PortDefinition{"inputMode"_L1, Type::Index}};
constexpr std::array signalInputs{PortDefinition{"inputMode"_L1, Type::Index},
                                  PortDefinition{"inputParam"_L1, Type::Number, 1.0}};
constexpr std::array signalOutput{PortDefinition{"outputSignal"_L1, Type::Boolean}};
constexpr std::array sampleInputs{PortDefinition{"inputSampleValue"_L1, Type::Virtual},
                                  PortDefinition{"inputSampling"_L1, Type::Boolean},
                                  PortDefinition{"inputResetSignal"_L1, Type::Boolean}};
constexpr std::array valueOutput{PortDefinition{"outputValue"_L1, Type::Virtual}};

const std::array definitions{
    PatchDefinition{.className = "QCConditional"_L1,
                    .inputs = conditionalInputs,
                    .outputs = booleanResult,
                    .run = conditional},
    PatchDefinition{
        .className = "QCLogic"_L1, .inputs = logicInputs, .outputs = booleanResult, .run = logic},
    PatchDefinition{
        .className = "QCSplitter"_L1, .make = makePatch<Splitter>, .addPorts = addSplitterPorts},
    PatchDefinition{.className = "QCMultiplexer"_L1,
                    .inputs = indexInput,
                    .make = makePatch<Multiplexer>,
                    .addPorts = addMultiplexerPorts,
                    .selectInput = selectedSource},
    PatchDefinition{.className = "QCDemultiplexer"_L1,
                    .inputs = indexInput,
                    .make = makePatch<Demultiplexer>,
                    .addPorts = addDemultiplexerPorts},
    PatchDefinition{.className = "QCCounter"_L1,
                    .inputs = counterInputs,
                    .outputs = countOutput,
                    .traits = Trait::StatePerPass,
                    .make = makePatch<Counter>},
    PatchDefinition{.className = "QCPulse"_L1,
                    .inputs = pulseInputs,
                    .outputs = signalOutput,
                    .traits = Trait::StatePerPass,
                    .make = makePatch<Pulse>},
    PatchDefinition{.className = "QCSignal"_L1,
                    .inputs = signalInputs,
                    .outputs = signalOutput,
                    .traits = Trait::TimeDependent | Trait::Stateful,
                    .make = makePatch<Signal>},
    PatchDefinition{.className = "QCSampleHold"_L1,
                    .inputs = sampleInputs,
                    .outputs = valueOutput,
                    .traits = Trait::StatePerPass,
                    .make = makePatch<SampleHold>},
    PatchDefinition{.className = "QCWatcher"_L1,
                    .outputs = signalOutput,
                    .traits = Trait::StatePerPass,
                    .make = makePatch<Watcher>,
                    .addPorts = addWatcherPorts},
};

} // namespace

std::span<const PatchDefinition> logicPatches()
{
    return definitions;
}

} // namespace tarnwell::compositions
