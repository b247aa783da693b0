#include "compositions/evaluator/Network.h"

#include "compositions/Limits.h"

#include <algorithm>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

template <typename Port>
int indexOf(const std::vector<Port> &ports, QStringView key)
{
    const auto found = std::ranges::find_if(ports, [key](const Port &p) { return p.key == key; });
    return found == ports.end() ? -1 : int(found - ports.begin());
}

/// Macros of these classes run their children on demand; through all others values pass freely.
bool runsOnDemand(const Node &node)
{
    return node.definition != nullptr && node.definition->role == Role::Iterator;
}

} // namespace

int Node::inputIndex(QStringView key) const
{
    return indexOf(inputs, key);
}

int Node::outputIndex(QStringView key) const
{
    return indexOf(outputs, key);
}

Endpoint Network::resolveInput(int node, const QString &port)
{
    const Node &found = nodes[size_t(node)];
    if (const int own = found.inputIndex(port); own >= 0) {
        return {node, own};
    }
    return found.macro ? found.macro->publishedInputs.value(port) : Endpoint{};
}

Endpoint Network::resolveOutput(int node, const QString &port)
{
    Node &found = nodes[size_t(node)];
    if (const int own = found.outputIndex(port); own >= 0) {
        return {node, own};
    }
    const Endpoint inner = found.macro ? found.macro->publishedOutputs.value(port) : Endpoint{};
    if (!inner.isValid() || !runsOnDemand(found)) {
        return inner;
    }
    found.outputs.push_back({port, PortType::Virtual, {}, true});
    const int own = int(found.outputs.size()) - 1;
    found.macro->copiedOutputs.emplace_back(own, inner);
    return {node, own};
}

} // namespace tarnwell::compositions
