#include "compositions/reader/GraphReader.h"

#include "compositions/Limits.h"
#include "compositions/reader/ValueDecoding.h"
#include "foundation/plist/Array.h"

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

TimeBase timeBaseOf(const QString &name)
{
    return name == "local"_L1      ? TimeBase::Local
           : name == "external"_L1 ? TimeBase::External
                                   : TimeBase::Parent;
}

std::vector<PublishedPort> readPublishedPorts(const plist::Array &stored)
{
    std::vector<PublishedPort> ports;
    for (const plist::Value &entry : stored) {
        const plist::Dictionary &port = entry.toDictionary();
        PublishedPort published{.key = port.value("key"_L1).toString(),
                                .node = port.value("node"_L1).toString(),
                                .port = port.value("port"_L1).toString(),
                                .value = {}};
        if (published.key.isEmpty()) {
            continue;
        }
        const plist::Dictionary &state = port.value("state"_L1).toDictionary();
        published.value = decodeValue(state.value("value"_L1));
        ports.push_back(std::move(published));
    }
    return ports;
}

QStringList namesIn(const plist::Value &stored)
{
    if (stored.isDictionary()) {
        return stored.toDictionary().keys();
    }
    QStringList names;
    for (const plist::Value &name : stored.toArray()) {
        names.append(name.isString() ? name.toString()
                                     : name.toDictionary().value("key"_L1).toString());
    }
    return names;
}

/// Whether an entry looks like a node at all.
bool isNode(const plist::Value &stored)
{
    return stored.isDictionary() && stored.toDictionary().value("class"_L1).isString();
}

} // namespace

void readPortStates(const plist::Value &stored, QHash<QString, Value> &values, QStringList *keys)
{
    for (const auto &[key, state] : stored.toDictionary()) {
        if (keys != nullptr) {
            keys->append(key);
        }
        const plist::Value &value = state.toDictionary().value("value"_L1);
        if (!value.isNull()) {
            values.insert(key, decodeValue(value));
        }
    }
}

GraphReader::GraphReader(const plist::Dictionary &virtualPatches)
    : m_stored(virtualPatches)
    , m_nodesLeft(limits::nodes)
{}

NodeDescription GraphReader::readNode(const plist::Dictionary &stored)
{
    return readNode(stored, 0);
}

NodeDescription GraphReader::readNode(const plist::Dictionary &stored, int depth)
{
    NodeDescription node;
    node.className = stored.value("class"_L1).toString();
    node.key = stored.value("key"_L1).toString();
    node.identifier = stored.value("identifier"_L1).toString();
    const plist::Dictionary &state = stored.value("state"_L1).toDictionary();
    node.settings = state;
    node.timeBase = timeBaseOf(state.value("timebase"_L1).toString());
    readPortStates(state.value("ivarInputPortStates"_L1), node.portValues);
    readPortStates(state.value("customInputPortStates"_L1), node.portValues, &node.customInputs);
    readPortStates(state.value("systemInputPortStates"_L1), node.portValues, &node.customInputs);
    node.customOutputs = namesIn(state.value("customOutputPortStates"_L1));
    if (node.className.startsWith(u'/')) {
        readInstance(node, depth);
    } else if (state.value("nodes"_L1).isArray()) {
        node.graph = readGraph(state, depth);
    }
    return node;
}

void GraphReader::readInstance(NodeDescription &node, int depth)
{
    node.isVirtualInstance = true;
    const VirtualPatch *patch = virtualPatch(node.className, depth);
    if (patch == nullptr) {
        return;
    }
    node.graph = patch->graph;
    for (auto it = patch->inputs.begin(); it != patch->inputs.end(); ++it) {
        if (!node.portValues.contains(it.key())) {
            node.portValues.insert(it.key(), it.value());
        }
    }
}

const GraphReader::VirtualPatch *GraphReader::virtualPatch(const QString &name, int depth)
{
    if (const auto found = m_virtualPatches.constFind(name); found != m_virtualPatches.constEnd()) {
        return found->graph ? &*found : nullptr;
    }
    const plist::Dictionary &stored = m_stored.value(name).toDictionary();
    if (stored.isEmpty() || m_open.contains(name)) {
        report(stored.isEmpty() ? u"the reusable patch \"%1\" is missing"_s.arg(name)
                                : u"the reusable patch \"%1\" contains itself"_s.arg(name));
        return nullptr;
    }
    m_open.insert(name);
    VirtualPatch patch;
    const plist::Dictionary &root = stored.value("rootPatch"_L1).toDictionary();
    patch.graph = readGraph(root.value("state"_L1).toDictionary(), depth);
    for (const auto &[key, value] : stored.value("inputParameters"_L1).toDictionary()) {
        patch.inputs.insert(key, decodeValue(value));
    }
    m_open.remove(name);
    const auto inserted = m_virtualPatches.insert(name, std::move(patch));
    return inserted->graph ? &*inserted : nullptr;
}

std::shared_ptr<const GraphDescription> GraphReader::readGraph(const plist::Dictionary &state,
                                                               int depth)
{
    auto graph = std::make_shared<GraphDescription>();
    if (depth >= limits::nesting) {
        report(u"macros nested more than %1 deep are left out"_s.arg(limits::nesting));
        return graph;
    }
    for (const plist::Value &child : state.value("nodes"_L1).toArray()) {
        if (!isNode(child)) {
            continue;
        }
        if (m_nodesLeft <= 0) {
            report(u"more than %1 nodes: the rest is left out"_s.arg(limits::nodes));
            break;
        }
        --m_nodesLeft;
        graph->nodes.push_back(readNode(child.toDictionary(), depth + 1));
    }
    for (const auto &[name, entry] : state.value("connections"_L1).toDictionary()) {
        const plist::Dictionary &connection = entry.toDictionary();
        graph->connections.push_back({connection.value("sourceNode"_L1).toString(),
                                      connection.value("sourcePort"_L1).toString(),
                                      connection.value("destinationNode"_L1).toString(),
                                      connection.value("destinationPort"_L1).toString()});
    }
    graph->inputs = readPublishedPorts(state.value("publishedInputPorts"_L1).toArray());
    graph->outputs = readPublishedPorts(state.value("publishedOutputPorts"_L1).toArray());
    return graph;
}

void GraphReader::report(const QString &finding)
{
    constexpr qsizetype mostFindings = 100;
    if (m_findings.size() < mostFindings && !m_findings.contains(finding)) {
        m_findings.append(finding);
    }
}

} // namespace tarnwell::compositions
