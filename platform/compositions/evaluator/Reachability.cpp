#include "compositions/evaluator/Report.h"

#include <algorithm>
#include <map>
#include <set>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

/// Only what draws can be switched off, so a node with the switch draws, whatever its class.
bool wouldDraw(const Node &node)
{
    return node.definition == nullptr && !node.macro && node.inputIndex(u"_enable") >= 0;
}

/// Walks from what draws up to everything that it depends on.
class Walk
{
public:
    explicit Walk(const Network &network)
        : m_network(network)
        , m_isReached(network.nodes.size(), false)
    {
        for (size_t i = 0; i < network.nodes.size(); ++i) {
            if (network.nodes[i].destination < 0) {
                reachIfDrawing(int(i));
            }
        }
        while (!m_open.empty()) {
            const int index = m_open.back();
            m_open.pop_back();
            follow(index);
        }
    }

    bool isReached(size_t index) const { return m_isReached[index]; }

private:
    void reach(int index)
    {
        if (index >= 0 && !m_isReached[size_t(index)]) {
            m_isReached[size_t(index)] = true;
            m_open.push_back(index);
        }
    }

    void reachIfDrawing(int index)
    {
        const Node &node = m_network.nodes[size_t(index)];
        const bool isConsumer =
            node.definition != nullptr && node.definition->role == Role::Consumer;
        if (isConsumer || wouldDraw(node)) {
            reach(index);
        }
    }

    void follow(int index)
    {
        const Node &node = m_network.nodes[size_t(index)];
        reach(node.parent);
        for (const InputState &input : node.inputs) {
            reach(input.source.node);
        }
        const Role role = node.definition != nullptr ? node.definition->role : Role::Processor;
        if (role == Role::Iterator && node.macro) {
            for (const auto &[output, inner] : node.macro->copiedOutputs) {
                reach(inner.node);
            }
        } else if (role == Role::RenderInImage) {
            // Nodes of a macro follow it in one run.
            for (size_t i = size_t(index) + 1;
                 i < m_network.nodes.size() && m_network.nodes[i].parent >= index; ++i) {
                if (m_network.nodes[i].destination == index) {
                    reachIfDrawing(int(i));
                }
            }
        } else if (role == Role::Feedback && node.parent >= 0) {
            for (const OutputState &output : node.outputs) {
                reach(m_network.nodes[size_t(node.parent)]
                          .macro->publishedOutputs.value(output.key)
                          .node);
            }
        }
    }

    const Network &m_network;
    std::vector<bool> m_isReached;
    std::vector<int> m_open;
};

} // namespace

std::vector<UnsupportedClass> findUnsupportedClasses(const Network &network)
{
    const Walk walk(network);
    std::map<std::pair<QString, QString>, int> counts;
    for (size_t i = 0; i < network.nodes.size(); ++i) {
        const Node &node = network.nodes[i];
        const bool isInstance = node.description->isVirtualInstance && node.macro;
        if (node.definition == nullptr && !isInstance && walk.isReached(i)) {
            ++counts[{node.description->className, node.description->identifier}];
        }
    }
    std::vector<UnsupportedClass> result;
    for (const auto &[name, count] : counts) {
        result.push_back({name.first, name.second, count});
    }
    return result;
}

bool hasConsumers(const Network &network)
{
    return network.nodes.front().draws || std::ranges::any_of(network.nodes, wouldDraw);
}

QStringList findUnknownPorts(const Network &network)
{
    const Walk walk(network);
    std::set<QString> names;
    for (size_t i = 0; i < network.nodes.size(); ++i) {
        const Node &node = network.nodes[i];
        if (node.definition == nullptr || node.description->isVirtualInstance ||
            !walk.isReached(i)) {
            continue;
        }
        const auto collect = [&](const auto &ports) {
            for (const auto &port : ports) {
                // Those that begin so belong to the editor and to every class alike.
                if (!port.isKnown && !port.key.startsWith(u'_')) {
                    names.insert(node.description->className + u'.' + port.key);
                }
            }
        };
        collect(node.inputs);
        collect(node.outputs);
    }
    return {names.begin(), names.end()};
}

} // namespace tarnwell::compositions
