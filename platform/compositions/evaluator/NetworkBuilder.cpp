#include "compositions/Limits.h"
#include "compositions/evaluator/Network.h"

#include <QSet>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

/// Port names that connections and published ports of a graph speak of, by node.
struct Mentions
{
    QHash<QString, QStringList> inputs;
    QHash<QString, QStringList> outputs;

    explicit Mentions(const GraphDescription &graph)
    {
        for (const ConnectionDescription &connection : graph.connections) {
            inputs[connection.destinationNode].append(connection.destinationPort);
            outputs[connection.sourceNode].append(connection.sourcePort);
        }
        for (const PublishedPort &port : graph.inputs) {
            inputs[port.node].append(port.port);
        }
        for (const PublishedPort &port : graph.outputs) {
            outputs[port.node].append(port.port);
        }
    }
};

/// Ports are looked up one by one, so no node may have very many.
constexpr size_t mostPorts = 4 * limits::countedPorts;

PortType guessedType(const QString &key)
{
    return key == "_enable"_L1 ? PortType::Boolean
           : key == "_time"_L1 ? PortType::Number
                               : PortType::Virtual;
}

/// What there is to go through in a node's description. A file says a thing once that its nodes may
/// all refer to, so its own size bounds nothing.
qint64 sizeOf(const NodeDescription &description)
{
    qint64 size = description.portValues.size() + description.customInputs.size() +
                  description.customOutputs.size();
    for (const auto &[key, setting] : description.settings) {
        // The characters of expressions and scripts, which are compiled for each node.
        size += 1 + (setting.isString() ? setting.toString().size() : 0);
    }
    if (description.graph) {
        size += qint64(description.graph->connections.size() + description.graph->inputs.size() +
                       description.graph->outputs.size());
    }
    return size;
}

class Builder
{
public:
    explicit Builder(std::shared_ptr<const Composition> composition)
    {
        m_network.composition = std::move(composition);
    }

    Network build()
    {
        addNode(m_network.composition->root, {}, {}, {.parent = -1, .scope = 0, .destination = -1},
                0);
        return std::move(m_network);
    }

private:
    struct Place
    {
        int parent;
        int scope;
        int destination;
    };

    int addNode(const NodeDescription &description, QStringList mentionedInputs,
                QStringList mentionedOutputs, Place place, int depth)
    {
        if (m_network.nodes.size() >= size_t(limits::nodes)) {
            report(u"more than %1 nodes: the rest is left out"_s.arg(limits::nodes));
            return -1;
        }
        m_descriptionsLeft -= sizeOf(description);
        if (m_descriptionsLeft <= 0) {
            report(u"the nodes have too many ports: the rest is left out"_s);
            return -1;
        }
        const int index = int(m_network.nodes.size());
        m_network.nodes.emplace_back();
        Node &node = m_network.nodes.back();
        node.description = &description;
        node.definition = findPatchDefinition(description.className);
        if (node.definition != nullptr && node.definition->supports != nullptr &&
            !node.definition->supports(description)) {
            node.definition = nullptr;
        }
        node.parent = place.parent;
        node.scope = place.scope;
        node.destination = place.destination;
        addPorts(node, std::move(mentionedInputs), std::move(mentionedOutputs));
        m_descriptionsLeft -= qint64(node.inputs.size() + node.outputs.size());
        if (description.graph) {
            // The vector may grow from here on, so the reference is not used any more.
            addChildren(index, place, depth);
        }
        finishNode(index);
        return index;
    }

    static void addPorts(Node &node, QStringList mentionedInputs, QStringList mentionedOutputs)
    {
        const NodeDescription &description = *node.description;
        for (auto it = description.portValues.keyBegin(); it != description.portValues.keyEnd();
             ++it) {
            mentionedInputs.append(*it);
        }
        mentionedInputs += description.customInputs;
        mentionedOutputs += description.customOutputs;
        PortList list(std::move(mentionedInputs), std::move(mentionedOutputs));
        if (node.definition != nullptr) {
            for (const PortDefinition &port : node.definition->inputs) {
                node.inputs.push_back({.key = port.key,
                                       .type = port.type,
                                       .constant = port.initialValue(),
                                       .source = {},
                                       .isKnown = true});
            }
            for (const PortDefinition &port : node.definition->outputs) {
                node.outputs.push_back({port.key, port.type, Value::zero(port.type), true});
            }
            if (node.definition->addPorts != nullptr) {
                node.definition->addPorts(description, list);
            }
        }
        for (const PortList::Port &port : list.inputs()) {
            if (node.inputIndex(port.key) < 0) {
                node.inputs.push_back({.key = port.key,
                                       .type = port.type,
                                       .constant = port.initial,
                                       .source = {},
                                       .isKnown = true});
            }
        }
        for (const PortList::Port &port : list.outputs()) {
            if (node.outputIndex(port.key) < 0) {
                node.outputs.push_back({port.key, port.type, Value::zero(port.type), true});
            }
        }
        // Whatever else the file speaks of exists too, so that values pass through classes that are
        // not known. Of a macro such a name is that of a published port.
        QSet<QString> known;
        for (const InputState &input : node.inputs) {
            known.insert(input.key);
        }
        const bool isMacro = description.graph != nullptr;
        for (const QString &key : list.mentionedInputs()) {
            const bool isSystemPort = key == "_enable"_L1 || key == "_time"_L1;
            if (!known.contains(key) && (!isMacro || isSystemPort) &&
                node.inputs.size() < mostPorts) {
                known.insert(key);
                node.inputs.push_back(
                    {.key = key, .type = guessedType(key), .constant = {}, .source = {}});
            }
        }
        if (!isMacro) {
            known.clear();
            for (const OutputState &output : node.outputs) {
                known.insert(output.key);
            }
            for (const QString &key : list.mentionedOutputs()) {
                if (!known.contains(key) && node.outputs.size() < mostPorts) {
                    known.insert(key);
                    node.outputs.push_back({key, PortType::Virtual, {}, false});
                }
            }
        }
    }

    void addChildren(int index, Place place, int depth)
    {
        const GraphDescription &graph = *m_network.nodes[size_t(index)].description->graph;
        m_network.nodes[size_t(index)].macro = std::make_unique<MacroState>();
        if (depth >= limits::nesting) {
            report(u"macros nested more than %1 deep are left out"_s.arg(limits::nesting));
            return;
        }
        const PatchDefinition *definition = m_network.nodes[size_t(index)].definition;
        place.parent = index;
        if (definition != nullptr && definition->role == Role::Iterator) {
            place.scope = m_network.scopeCount++;
            m_network.nodes[size_t(index)].ownScope = place.scope;
        } else if (definition != nullptr && definition->role == Role::RenderInImage) {
            place.destination = index;
        }
        const Mentions mentions(graph);
        MacroState &macro = *m_network.nodes[size_t(index)].macro;
        for (const NodeDescription &child : graph.nodes) {
            const int added = addNode(child, mentions.inputs.value(child.key),
                                      mentions.outputs.value(child.key), place, depth + 1);
            if (added < 0) {
                break;
            }
            macro.children.push_back(added);
            if (!child.key.isEmpty() && !macro.childrenByKey.contains(child.key)) {
                macro.childrenByKey.insert(child.key, added);
            }
        }
        connectChildren(graph, macro);
        publish(graph, index);
    }

    void connectChildren(const GraphDescription &graph, const MacroState &macro)
    {
        for (const ConnectionDescription &connection : graph.connections) {
            const int from = macro.childrenByKey.value(connection.sourceNode, -1);
            const int to = macro.childrenByKey.value(connection.destinationNode, -1);
            if (from < 0 || to < 0) {
                continue;
            }
            const Endpoint source = m_network.resolveOutput(from, connection.sourcePort);
            const Endpoint destination = m_network.resolveInput(to, connection.destinationPort);
            if (source.isValid() && destination.isValid()) {
                input(destination).source = source;
            }
        }
    }

    void publish(const GraphDescription &graph, int index)
    {
        for (const PublishedPort &port : graph.inputs) {
            MacroState &macro = *m_network.nodes[size_t(index)].macro;
            const int child = macro.childrenByKey.value(port.node, -1);
            const Endpoint inner =
                child >= 0 ? m_network.resolveInput(child, port.port) : Endpoint{};
            if (!inner.isValid() || macro.publishedInputs.contains(port.key)) {
                continue;
            }
            macro.publishedInputs.insert(port.key, inner);
            if (!port.value.isNull() && !input(inner).isStored) {
                setConstant(inner, port.value);
            }
        }
        for (const PublishedPort &port : graph.outputs) {
            MacroState &macro = *m_network.nodes[size_t(index)].macro;
            const int child = macro.childrenByKey.value(port.node, -1);
            if (child < 0 || macro.publishedOutputs.contains(port.key)) {
                continue;
            }
            const Endpoint inner = m_network.resolveOutput(child, port.port);
            if (inner.isValid()) {
                macro.publishedOutputs.insert(port.key, inner);
            }
        }
    }

    void finishNode(int index)
    {
        Node &node = m_network.nodes[size_t(index)];
        const auto &values = node.description->portValues;
        for (auto it = values.begin(); it != values.end(); ++it) {
            const Endpoint endpoint = m_network.resolveInput(index, it.key());
            if (endpoint.isValid()) {
                setConstant(endpoint, it.value());
            }
        }
        if (node.parent < 0) {
            zeroUntouchedInputs(node);
        }
        node.enableInput = node.inputIndex(u"_enable");
        node.timeInput = node.inputIndex(u"_time");
        if (node.enableInput >= 0 && node.inputs[size_t(node.enableInput)].constant.isNull()) {
            node.inputs[size_t(node.enableInput)].constant = true;
        }
        const Role role = node.definition != nullptr ? node.definition->role : Role::Processor;
        node.draws = role == Role::Consumer;
        if (node.macro && role != Role::RenderInImage) {
            for (const int child : node.macro->children) {
                node.draws = node.draws || m_network.nodes[size_t(child)].draws;
            }
        }
    }

    /// An input that the composition publishes but gives no value starts at its type's zero, not at
    /// the default of whatever patch lies behind it. What draws stays enabled.
    void zeroUntouchedInputs(const Node &root)
    {
        if (!root.macro) {
            return;
        }
        for (const Endpoint &endpoint : std::as_const(root.macro->publishedInputs)) {
            InputState &state = input(endpoint);
            if (!state.isStored && state.key != "_enable"_L1) {
                state.constant = Value::zero(state.type);
            }
        }
    }

    InputState &input(Endpoint endpoint)
    {
        return m_network.nodes[size_t(endpoint.node)].inputs[size_t(endpoint.port)];
    }

    void setConstant(Endpoint endpoint, const Value &value)
    {
        InputState &state = input(endpoint);
        state.constant = value;
        state.isStored = true;
    }

    void report(const QString &finding)
    {
        if (!m_network.findings.contains(finding)) {
            m_network.findings.append(finding);
        }
    }

    Network m_network;
    qint64 m_descriptionsLeft = limits::descriptions;
};

} // namespace

Network buildNetwork(std::shared_ptr<const Composition> composition)
{
    return Builder(std::move(composition)).build();
}

} // namespace tarnwell::compositions
