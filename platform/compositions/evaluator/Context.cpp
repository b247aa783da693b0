#include "compositions/evaluator/Context.h"

#include "compositions/evaluator/Evaluator.h"

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

const Value noValue;

} // namespace

Context::Context(Evaluator &evaluator, int node)
    : m_evaluator(evaluator)
    , m_node(evaluator.node(node))
    , m_index(node)
{}

int Context::inputCount() const
{
    return int(m_node.inputs.size());
}

int Context::outputCount() const
{
    return int(m_node.outputs.size());
}

const QString &Context::inputKey(int input) const
{
    return m_node.inputs[size_t(input)].key;
}

const QString &Context::outputKey(int output) const
{
    return m_node.outputs[size_t(output)].key;
}

bool Context::isConnected(int input) const
{
    return m_node.inputs[size_t(input)].source.isValid();
}

const Value &Context::value(int input) const
{
    return m_evaluator.inputValue(m_node, input);
}

const Value &Context::value(QStringView key) const
{
    const int input = m_node.inputIndex(key);
    return input >= 0 ? value(input) : noValue;
}

const Value &Context::output(int output) const
{
    return m_node.outputs[size_t(output)].value;
}

void Context::set(int output, const Value &value)
{
    if (output < 0 || output >= outputCount()) {
        return;
    }
    Value &current = m_node.outputs[size_t(output)].value;
    if (!current.isIdentical(value)) {
        current = value;
        m_node.changedAt = m_evaluator.m_serial;
    }
}

const Value &Context::remembered(int output) const
{
    return size_t(output) < m_node.remembered.size() ? m_node.remembered[size_t(output)] : noValue;
}

const NodeDescription &Context::description() const
{
    return *m_node.description;
}

double Context::time() const
{
    return m_evaluator.timeOf(m_index);
}

double Context::systemTime() const
{
    return m_evaluator.m_request.systemTime;
}

bool Context::isFirstRun() const
{
    return m_node.ranAt == 0;
}

QSize Context::destination() const
{
    return m_evaluator.destinationOf(m_node);
}

Pass Context::pass() const
{
    return m_evaluator.m_scopes[size_t(m_node.scope)].pass;
}

bool Context::takeIteration()
{
    return m_evaluator.takeIteration();
}

bool Context::charge(qint64 work)
{
    return m_evaluator.charge(work);
}

quint64 Context::seed() const
{
    return m_evaluator.m_options.seed * 0x9e3779b97f4a7c15ULL +
           quint64(m_node.description->setting("randomSeed"_L1).toInteger());
}

const QLocale &Context::locale() const
{
    return m_evaluator.m_options.locale;
}

const QTimeZone &Context::timeZone() const
{
    return m_evaluator.m_options.timeZone;
}

const std::shared_ptr<ImageBudget> &Context::imageBudget() const
{
    return m_evaluator.m_imageBudget;
}

ImageRef Context::computeImage(const ImageRecipe &recipe, const QRect &extent,
                               Image::Outside outside)
{
    return m_evaluator.computeImage(recipe, extent, outside);
}

ScriptHost &Context::scripts() const
{
    return *m_evaluator.m_scripts;
}

} // namespace tarnwell::compositions
