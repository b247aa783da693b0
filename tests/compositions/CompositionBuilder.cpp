#include "CompositionBuilder.h"

#include "compositions/reader/CompositionReader.h"

namespace tarnwell::compositions::test {

using namespace Qt::StringLiterals;

namespace {

plist::Dictionary portStates(const plist::Dictionary &values)
{
    plist::Dictionary states;
    for (const auto &[key, value] : values) {
        states.insert(key, plist::Dictionary{{u"value"_s, value}});
    }
    return states;
}

plist::Dictionary nodeEntry(const QString &className, const QString &key,
                            const plist::Dictionary &inputs, plist::Dictionary state,
                            const QString &identifier)
{
    if (!inputs.isEmpty()) {
        state.insert(u"ivarInputPortStates"_s, portStates(inputs));
    }
    plist::Dictionary entry{{u"class"_s, className}, {u"key"_s, key}, {u"state"_s, state}};
    if (!identifier.isEmpty()) {
        entry.insert(u"identifier"_s, identifier);
    }
    return entry;
}

} // namespace

MacroBuilder &MacroBuilder::node(const QString &className, const QString &key,
                                 const plist::Dictionary &inputs, const plist::Dictionary &settings,
                                 const QString &identifier)
{
    m_nodes.append(nodeEntry(className, key, inputs, settings, identifier));
    return *this;
}

MacroBuilder &MacroBuilder::macro(const QString &className, const QString &key,
                                  const MacroBuilder &inside, const plist::Dictionary &inputs,
                                  const plist::Dictionary &settings)
{
    plist::Dictionary state = inside.state();
    for (const auto &[name, value] : settings) {
        state.insert(name, value);
    }
    m_nodes.append(nodeEntry(className, key, inputs, state, {}));
    return *this;
}

MacroBuilder &MacroBuilder::connect(const QString &from, const QString &to)
{
    m_connections.insert(u"connection_%1"_s.arg(m_connections.size() + 1),
                         plist::Dictionary{{u"sourceNode"_s, from.section(u'.', 0, 0)},
                                           {u"sourcePort"_s, from.section(u'.', 1)},
                                           {u"destinationNode"_s, to.section(u'.', 0, 0)},
                                           {u"destinationPort"_s, to.section(u'.', 1)}});
    return *this;
}

void MacroBuilder::addPort(plist::Array &ports, const QString &key, const QString &port,
                           const plist::Value &value)
{
    plist::Dictionary entry{
        {u"key"_s, key}, {u"node"_s, port.section(u'.', 0, 0)}, {u"port"_s, port.section(u'.', 1)}};
    if (!value.isNull()) {
        entry.insert(u"state"_s, plist::Dictionary{{u"value"_s, value}});
    }
    ports.append(entry);
}

MacroBuilder &MacroBuilder::input(const QString &key, const QString &port,
                                  const plist::Value &value)
{
    addPort(m_inputs, key, port, value);
    return *this;
}

MacroBuilder &MacroBuilder::output(const QString &key, const QString &port)
{
    addPort(m_outputs, key, port, {});
    return *this;
}

plist::Dictionary MacroBuilder::state() const
{
    return {{u"nodes"_s, m_nodes},
            {u"connections"_s, m_connections},
            {u"publishedInputPorts"_s, m_inputs},
            {u"publishedOutputPorts"_s, m_outputs}};
}

plist::Dictionary MacroBuilder::file(const plist::Dictionary &more) const
{
    plist::Dictionary file{
        {u"rootPatch"_s, plist::Dictionary{{u"class"_s, u"QCPatch"_s}, {u"state"_s, state()}}}};
    for (const auto &[key, value] : more) {
        file.insert(key, value);
    }
    return file;
}

std::shared_ptr<const Composition> MacroBuilder::read(const plist::Dictionary &more) const
{
    return readComposition(plist::Value(file(more)));
}

SinglePatch::SinglePatch(const QString &className, const plist::Dictionary &inputs,
                         const QStringList &outputs, const plist::Dictionary &settings,
                         const QString &identifier, const EvaluatorOptions &options)
    : m_outputs(outputs)
{
    MacroBuilder root;
    root.node(className, u"Patch"_s, inputs, settings, identifier);
    for (const auto &[key, value] : inputs) {
        root.input(key, u"Patch."_s + key);
    }
    for (const QString &output : outputs) {
        root.output(output, u"Patch."_s + output);
    }
    m_evaluator = std::make_unique<Evaluator>(root.read(), options);
}

SinglePatch &SinglePatch::set(const QString &input, const Value &value)
{
    m_evaluator->setInput(input, value);
    return *this;
}

Value SinglePatch::at(double time, const QString &output)
{
    m_evaluator->evaluate({.time = time, .systemTime = 0.0, .pixels = {640, 480}});
    return m_evaluator->outputValue(output);
}

Value SinglePatch::at(double time)
{
    return at(time, m_outputs.constFirst());
}

plist::Dictionary color(double red, double green, double blue, double alpha)
{
    return {{u"red"_s, red}, {u"green"_s, green}, {u"blue"_s, blue}, {u"alpha"_s, alpha}};
}

} // namespace tarnwell::compositions::test
