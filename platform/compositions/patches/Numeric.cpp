#include "compositions/evaluator/Context.h"
#include "compositions/expression/Expression.h"
#include "compositions/maths/Easing.h"
#include "compositions/patches/Edge.h"
#include "compositions/patches/Families.h"
#include "compositions/patches/Settings.h"

#include <QVarLengthArray>

#include <array>
#include <cmath>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using Type = PortType;

namespace {

double finite(double number)
{
    return std::isfinite(number) ? number : 0.0;
}

double calculate(qint64 operation, double left, double right)
{
    switch (operation) {
    case 0:
        return left + right;
    case 1:
        return left - right;
    case 2:
        return left * right;
    case 3:
        return right == 0.0 ? 0.0 : left / right;
    case 4:
        return right == 0.0 ? 0.0 : std::fmod(left, right);
    case 5:
        return finite(std::pow(left, right));
    case 6:
        return std::min(left, right);
    case 7:
        return std::max(left, right);
    default:
        return left;
    }
}

void addMathPorts(const NodeDescription &description, PortList &ports)
{
    int count = countSetting(description, "operationCount"_L1,
                             countSetting(description, "numberOfOperations"_L1));
    count = std::max({count, ports.mentionedInputCount("operand_"_L1) - 1,
                      ports.mentionedInputCount("operation_"_L1) - 1});
    for (int i = 1; i <= count; ++i) {
        ports.addInput(u"operation_%1"_s.arg(i), Type::Index);
        ports.addInput(u"operand_%1"_s.arg(i), Type::Number);
    }
}

/// Strictly from left to right.
class Math : public Patch
{
public:
    void run(Context &context) override
    {
        if (m_pairs < 0) {
            m_pairs = 0;
            while (2 * m_pairs + 2 < context.inputCount() &&
                   context.inputKey(2 * m_pairs + 1).startsWith("operation_"_L1)) {
                ++m_pairs;
            }
        }
        double result = context.number(0);
        for (int i = 0; i < m_pairs; ++i) {
            result = calculate(context.index(2 * i + 1), result, context.number(2 * i + 2));
        }
        context.set(0, finite(result));
    }

private:
    int m_pairs = -1;
};

void addExpressionPorts(const NodeDescription &description, PortList &ports)
{
    if (const auto expression =
            Expression::compile(description.setting("expression"_L1).toString())) {
        for (const QString &variable : expression->variables()) {
            ports.addInput(variable, Type::Number);
        }
    }
}

class ExpressionPatch : public Patch
{
public:
    explicit ExpressionPatch(const NodeDescription &description)
        : m_expression(Expression::compile(description.setting("expression"_L1).toString()))
    {}

    void run(Context &context) override
    {
        constexpr qsizetype stepsPerRun = 64;
        if (!m_expression || !context.charge(m_expression->length() / stepsPerRun)) {
            return;
        }
        QVarLengthArray<double, 16> values;
        for (qsizetype i = 0; i < m_expression->variables().size(); ++i) {
            values.append(context.number(int(i)));
        }
        context.set(0, m_expression->evaluate(values, context.seed() + ++m_runs));
    }

private:
    std::optional<Expression> m_expression;
    quint64 m_runs = 0; // so that rand() differs from run to run
};

void roundValue(Context &context)
{
    const double value = context.number(0);
    context.set(0, std::round(value));
    context.set(1, std::floor(value));
    context.set(2, std::ceil(value));
}

void rangeValue(Context &context)
{
    const double value = context.number(0);
    const double least = std::min(context.number(1), context.number(2));
    const double most = std::max(context.number(1), context.number(2));
    context.set(0, std::clamp(value, least, most));
    const double width = most - least;
    const double turns = width > 0.0 ? std::floor((value - least) / width) : 0.0;
    context.set(1, width > 0.0 ? finite(value - turns * width) : least);
}

/// The slope of its input over time, or the area under it.
class DifferentialValue : public Patch
{
public:
    explicit DifferentialValue(const NodeDescription &description)
        : m_integrates(description.identifier != "derivator"_L1)
    {}

    void run(Context &context) override
    {
        const double value = context.number(0);
        const double elapsed = context.isFirstRun() ? 0.0 : context.time() - m_time;
        if (m_reset.rises(context.boolean(1))) {
            m_result = 0.0;
        } else if (elapsed > 0.0) {
            m_result =
                finite(m_integrates ? m_result + value * elapsed : (value - m_value) / elapsed);
        }
        m_value = value;
        m_time = context.time();
        context.set(0, m_result);
    }

private:
    bool m_integrates;
    Edge m_reset;
    double m_value = 0.0;
    double m_time = 0.0;
    double m_result = 0.0;
};

/// Follows its input in a curve of its own for each direction.
class Smooth : public Patch
{
public:
    void run(Context &context) override
    {
        const double target = context.number(0);
        const double time = context.time();
        if (!m_hasStarted) {
            m_hasStarted = true;
            m_from = m_to = target;
        } else if (target != m_to) {
            m_from = present(time);
            m_to = target;
            m_start = time;
            const bool isIncreasing = m_to > m_from;
            m_duration = context.number(isIncreasing ? 1 : 3);
            m_curve = context.index(isIncreasing ? 2 : 4);
        }
        context.set(0, present(time));
    }

private:
    double present(double time) const
    {
        return m_from + (m_to - m_from) * ease(m_curve, repeated(0, time - m_start, m_duration));
    }

    bool m_hasStarted = false;
    double m_from = 0.0;
    double m_to = 0.0;
    double m_start = 0.0;
    double m_duration = 0.0;
    qint64 m_curve = 0;
};

constexpr std::array mathInputs{PortDefinition{"inputValue"_L1, Type::Number}};
constexpr std::array mathOutputs{PortDefinition{"outputValue"_L1, Type::Number}};
constexpr std::array expressionOutputs{PortDefinition{"outputResult"_L1, Type::Number}};
constexpr std::array roundInputs{PortDefinition{"inputValue"_L1, Type::Number}};
constexpr std::array roundOutputs{PortDefinition{"outputRound"_L1, Type::Number},
                                  PortDefinition{"outputFloor"_L1, Type::Number},
                                  PortDefinition{"outputCeil"_L1, Type::Number}};
constexpr std::array rangeInputs{PortDefinition{"inputValue"_L1, Type::Number},
                                 PortDefinition{"inputMin"_L1, Type::Number},
                                 PortDefinition{"inputMax"_L1, Type::Number, 1.0}};
constexpr std::array rangeOutputs{PortDefinition{"outputClip"_L1, Type::Number},
                                  PortDefinition{"outputRoll"_L1, Type::Number}};
constexpr std::array differentialInputs{PortDefinition{"inputValue"_L1, Type::Number},
                                        PortDefinition{"inputResetSignal"_L1, Type::Boolean}};
constexpr std::array smoothInputs{PortDefinition{"inputValue"_L1, Type::Number},
                                  PortDefinition{"inputIncreasingDuration"_L1, Type::Number, 1.0},
                                  PortDefinition{"inputIncreasingInterpolation"_L1, Type::Index},
                                  PortDefinition{"inputDecreasingDuration"_L1, Type::Number, 1.0},
                                  PortDefinition{"inputDecreasingInterpolation"_L1, Type::Index}};

const std::array definitions{
    PatchDefinition{.className = "QCMath"_L1,
                    .inputs = mathInputs,
                    .outputs = mathOutputs,
                    .make = makePatch<Math>,
                    .addPorts = addMathPorts},
    PatchDefinition{.className = "QCExpression"_L1,
                    .outputs = expressionOutputs,
                    .make = makePatch<ExpressionPatch>,
                    .addPorts = addExpressionPorts},
    PatchDefinition{.className = "QCRoundValue"_L1,
                    .inputs = roundInputs,
                    .outputs = roundOutputs,
                    .run = roundValue},
    PatchDefinition{.className = "QCRangeValue"_L1,
                    .inputs = rangeInputs,
                    .outputs = rangeOutputs,
                    .run = rangeValue},
    PatchDefinition{.className = "QCDifferentialValue"_L1,
                    .inputs = differentialInputs,
                    .outputs = mathOutputs,
                    .traits = Trait::TimeDependent | Trait::Stateful,
                    .make = makePatch<DifferentialValue>},
    PatchDefinition{.className = "QCSmooth"_L1,
                    .inputs = smoothInputs,
                    .outputs = mathOutputs,
                    .traits = Trait::TimeDependent | Trait::StatePerPass,
                    .make = makePatch<Smooth>},
};

} // namespace

std::span<const PatchDefinition> numericPatches()
{
    return definitions;
}

} // namespace tarnwell::compositions
