#pragma once

#include "compositions/model/Composition.h"

#include <QLatin1StringView>

#include <functional>
#include <memory>
#include <span>

namespace tarnwell::compositions {

class Canvas;
class Context;

/// What a patch is to the evaluator.
enum class Role : quint8 {
    Processor,     ///< gives values
    Consumer,      ///< draws
    Environment,   ///< a macro that draws its children in surroundings of its own
    Iterator,      ///< a macro that runs its children many times
    RenderInImage, ///< a macro whose children draw into an image
    Feedback       ///< gives what its macro published in the frame before
};

enum class Trait : quint8 {
    None = 0,
    // With any of these a patch runs in every frame, not only when an input changed.
    TimeDependent = 1,  ///< its time shows in what it gives
    FrameDependent = 2, ///< the destination or the pass shows in it
    Stateful = 4,       ///< it remembers, so it must see every frame
    StatePerPass = 8,   ///< it remembers separately for each pass of its iterators
};
Q_DECLARE_FLAGS(Traits, Trait)
Q_DECLARE_OPERATORS_FOR_FLAGS(Traits)

struct PortDefinition
{
    QLatin1StringView key;
    PortType type;
    /// The value of a port that the file says nothing about; of a colour all three components, with
    /// an opacity of 1 unless it is 0.
    double defaultValue = 0.0;

    Value initialValue() const;
};

/// Ports that a node has on top of those of its class, as its settings and its file want them.
class PortList
{
public:
    struct Port
    {
        QString key;
        PortType type;
        Value initial;
    };

    PortList(QStringList mentionedInputs, QStringList mentionedOutputs);

    void addInput(const QString &key, PortType type, const Value &initial = {});
    void addOutput(const QString &key, PortType type);

    /// How many ports of a numbered family there must be for the file's words about them to make
    /// sense: one more than the highest number behind the prefix.
    int mentionedInputCount(QLatin1StringView prefix) const;
    int mentionedOutputCount(QLatin1StringView prefix) const;
    const QStringList &mentionedInputs() const { return m_mentionedInputs; }
    const QStringList &mentionedOutputs() const { return m_mentionedOutputs; }

    const std::vector<Port> &inputs() const { return m_inputs; }
    const std::vector<Port> &outputs() const { return m_outputs; }

private:
    QStringList m_mentionedInputs;
    QStringList m_mentionedOutputs;
    std::vector<Port> m_inputs;
    std::vector<Port> m_outputs;
};

/// One patch at work, for classes that remember something or prepare their settings.
class Patch
{
public:
    virtual ~Patch() = default;

    /// Reads inputs and sets outputs. Outputs that are not set keep their values.
    virtual void run(Context &context) = 0;
};

/// Everything about a class of patches. What a class does is one of these: run, make, draw or
/// surround.
struct PatchDefinition
{
    QLatin1StringView className = {};
    Role role = Role::Processor;
    std::span<const PortDefinition> inputs = {};
    std::span<const PortDefinition> outputs = {};
    Traits traits = {};

    /// A patch that needs nothing but its inputs.
    void (*run)(Context &) = nullptr;
    /// One object a node, or one a pass.
    std::unique_ptr<Patch> (*make)(const NodeDescription &) = nullptr;
    void (*draw)(Context &, Canvas &) = nullptr;
    /// Of an environment: calls the function as often as the children are to be drawn.
    void (*surround)(Context &, Canvas &, const std::function<void()> &) = nullptr;

    void (*addPorts)(const NodeDescription &, PortList &) = nullptr;
    /// Of a class with variants that are not all supported.
    bool (*supports)(const NodeDescription &) = nullptr;
    /// Of a class that needs only one of many inputs: which one besides the first.
    int (*selectInput)(Context &) = nullptr;
};

/// The class of that name; null for one that is not supported.
const PatchDefinition *findPatchDefinition(QStringView className);

/// All classes, family by family.
std::span<const std::span<const PatchDefinition>> patchFamilies();

} // namespace tarnwell::compositions
