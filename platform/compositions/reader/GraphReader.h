#pragma once

#include "compositions/model/Composition.h"

#include <QSet>

namespace tarnwell::compositions {

/// Turns the dictionaries of nodes and macros into descriptions.
class GraphReader
{
public:
    explicit GraphReader(const plist::Dictionary &virtualPatches);

    NodeDescription readNode(const plist::Dictionary &stored);

    /// What was left out, in words.
    const QStringList &findings() const { return m_findings; }

private:
    NodeDescription readNode(const plist::Dictionary &stored, int depth);
    void readInstance(NodeDescription &node, int depth);
    std::shared_ptr<const GraphDescription> readGraph(const plist::Dictionary &state, int depth);
    void report(const QString &finding);

    /// A reusable patch, read once however often it is used.
    struct VirtualPatch
    {
        std::shared_ptr<const GraphDescription> graph;
        QHash<QString, Value> inputs;
    };
    const VirtualPatch *virtualPatch(const QString &name, int depth);

    const plist::Dictionary &m_stored;
    QHash<QString, VirtualPatch> m_virtualPatches;
    QSet<QString> m_open; ///< being read, so they contain themselves if they come up again
    QStringList m_findings;
    int m_nodesLeft;
};

/// The stored values of a table of ports; the empty ones are left out.
void readPortStates(const plist::Value &stored, QHash<QString, Value> &values,
                    QStringList *keys = nullptr);

} // namespace tarnwell::compositions
