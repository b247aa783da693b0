#pragma once

#include "compositions/evaluator/PatchDefinition.h"

#include <QHash>

#include <unordered_map>
#include <vector>

namespace tarnwell::compositions {

/// A port at the end of a chain of published ports: a node and one of its own ports.
struct Endpoint
{
    int node = -1;
    int port = -1;

    bool isValid() const { return node >= 0 && port >= 0; }
    friend bool operator==(const Endpoint &, const Endpoint &) = default;
};

struct InputState
{
    QString key;
    PortType type = PortType::Virtual;
    Value constant;
    Endpoint source; ///< of a connected input
    bool isStored = false;
    bool isKnown = false;  ///< to the class; others exist because the file speaks of them
    quint64 changedAt = 0; ///< of the constant
};

struct OutputState
{
    QString key;
    PortType type = PortType::Virtual;
    Value value;
    bool isKnown = false;
};

/// What a macro knows besides what every node does.
struct MacroState
{
    std::vector<int> children; ///< in the order of their layers
    QHash<QString, int> childrenByKey;
    QHash<QString, Endpoint> publishedInputs;
    QHash<QString, Endpoint> publishedOutputs;
    /// Own outputs that repeat a child's output after every run, for macros that run on demand.
    std::vector<std::pair<int, Endpoint>> copiedOutputs;
};

struct Node
{
    const NodeDescription *description = nullptr;
    const PatchDefinition *definition = nullptr; ///< null for classes that are not supported
    std::vector<InputState> inputs;
    std::vector<OutputState> outputs;
    std::unique_ptr<MacroState> macro;

    int parent = -1;
    int scope = 0;        ///< of the innermost iterator around
    int ownScope = -1;    ///< of an iterator's children
    int destination = -1; ///< the macro that draws into an image around it
    int enableInput = -1;
    int timeInput = -1;
    bool draws = false; ///< a consumer, or a macro with one in it

    std::unique_ptr<Patch> patch;
    std::unordered_map<quint64, std::unique_ptr<Patch>> patchesByPass;

    std::vector<Value> remembered; ///< of feedback: the outputs for the next frame

    quint64 freshAt = 0;   ///< the stamp of the scope when it was last brought up to date
    quint64 ranAt = 0;     ///< 0 for never
    quint64 changedAt = 0; ///< when an output last changed
    bool isPending = false;

    double localStart = 0.0;
    double time = 0.0;
    quint64 timedAt = 0;
    qint64 touchedFrame = -2;
    qint64 feedbackFrame = -1; ///< the last one in which feedback was asked for

    int inputIndex(QStringView key) const;
    int outputIndex(QStringView key) const;
};

/// A composition made ready to run: all macros and instances opened up into one list of nodes, and
/// every connection led through published ports to the two ports that it really joins.
struct Network
{
    std::shared_ptr<const Composition> composition;
    std::vector<Node> nodes; ///< the root macro is the first one
    int scopeCount = 1;
    QStringList findings; ///< what a limit left out

    /// Where a published port of a macro, or an own port of any node, ends up.
    Endpoint resolveInput(int node, const QString &port);
    Endpoint resolveOutput(int node, const QString &port);
};

Network buildNetwork(std::shared_ptr<const Composition> composition);

} // namespace tarnwell::compositions
