#include "compositions/Limits.h"
#include "compositions/evaluator/Evaluator.h"
#include "compositions/model/Image.h"
#include "compositions/model/Structure.h"

#include <QScopedValueRollback>

namespace tarnwell::compositions {

namespace {

// What large values cost, in runs of a simple patch: so many of their parts are one run.
constexpr qint64 charactersPerRun = 64;
constexpr qint64 pixelsPerRun = 256;

qint64 workOf(const Value &value)
{
    switch (value.type()) {
    case PortType::String:
        return value.toString().size() / charactersPerRun;
    case PortType::Structure:
        return value.toStructure()->count();
    default:
        return 0;
    }
}

} // namespace

bool Evaluator::isFresh(const Node &candidate) const
{
    return candidate.freshAt == m_scopes[size_t(candidate.scope)].stamp;
}

/// Puts the source of an input on the stack of pending nodes, if it has to run first.
bool Evaluator::pushSource(Node &owner, size_t input)
{
    const Endpoint source = owner.inputs[input].source;
    if (!source.isValid()) {
        return false;
    }
    Node &needed = node(source.node);
    // A node that is pending already needs this one: a cycle. It shows its last value.
    if (needed.isPending || isFresh(needed)) {
        return false;
    }
    needed.isPending = true;
    m_pending.push_back({source.node, 0, false});
    return true;
}

// A stack of our own: a chain of connections may be as long as a composition has nodes.
void Evaluator::pull(int index)
{
    if (isFresh(node(index)) || node(index).isPending || m_pullDepth >= limits::pullDepth) {
        return;
    }
    const QScopedValueRollback depth(m_pullDepth, m_pullDepth + 1);
    const size_t base = m_pending.size();
    node(index).isPending = true;
    m_pending.push_back({index, 0, false});
    while (m_pending.size() > base) {
        const size_t position = m_pending.size() - 1;
        const int current = m_pending[position].node;
        Node &owner = node(current);
        int (*const select)(Context &) =
            owner.definition != nullptr ? owner.definition->selectInput : nullptr;
        const size_t eager =
            select != nullptr ? std::min<size_t>(1, owner.inputs.size()) : owner.inputs.size();
        bool hasPushed = false;
        while (!hasPushed && m_pending[position].nextInput < eager) {
            hasPushed = pushSource(owner, m_pending[position].nextInput++);
        }
        if (!hasPushed && select != nullptr && !m_pending[position].isSelected) {
            m_pending[position].isSelected = true;
            Context context(*this, current);
            const int selected = select(context);
            if (selected >= 0 && size_t(selected) < owner.inputs.size()) {
                hasPushed = pushSource(owner, size_t(selected));
            }
        }
        if (hasPushed) {
            continue;
        }
        runNode(current);
        owner.isPending = false;
        m_pending.pop_back();
    }
}

void Evaluator::pullInputs(int index)
{
    for (size_t i = 0; i < node(index).inputs.size(); ++i) {
        if (const Endpoint source = node(index).inputs[i].source; source.isValid()) {
            pull(source.node);
        }
    }
}

bool Evaluator::mustRun(const Node &owner) const
{
    if (owner.ranAt == 0 || owner.definition == nullptr ||
        owner.definition->role != Role::Processor || owner.definition->traits) {
        return true;
    }
    for (const InputState &input : owner.inputs) {
        const quint64 changedAt = input.source.isValid()
                                      ? m_network.nodes[size_t(input.source.node)].changedAt
                                      : input.changedAt;
        if (changedAt > owner.ranAt) {
            return true;
        }
    }
    return false;
}

Patch *Evaluator::patchOf(Node &owner)
{
    const quint64 passId = m_scopes[size_t(owner.scope)].passId;
    std::unique_ptr<Patch> *patch = &owner.patch;
    if (passId != 0 && owner.definition->traits.testFlag(Trait::StatePerPass)) {
        if (const auto found = owner.patchesByPass.find(passId);
            found != owner.patchesByPass.end()) {
            return found->second.get();
        }
        if (m_passStates < limits::passStates) {
            ++m_passStates;
            patch = &owner.patchesByPass[passId];
        }
    }
    if (!*patch) {
        *patch = owner.definition->make(*owner.description);
    }
    return patch->get();
}

void Evaluator::runNode(int index)
{
    Node &owner = node(index);
    owner.freshAt = m_scopes[size_t(owner.scope)].stamp;
    chargeVisit(owner);
    if (m_evaluationsLeft <= 0 || !mustRun(owner)) {
        return;
    }
    --m_evaluationsLeft;
    // The run has a moment of its own: what changes in it is newer than what ran before.
    const quint64 moment = ++m_serial;
    if (owner.definition == nullptr) {
        passThrough(index);
    } else if (owner.definition->role == Role::Iterator) {
        if (!owner.draws) {
            iterate(index);
        }
    } else if (owner.definition->role == Role::RenderInImage) {
        renderInImage(index);
    } else if (owner.definition->role == Role::Processor ||
               owner.definition->role == Role::Feedback) {
        Context context(*this, index);
        if (owner.definition->make != nullptr) {
            patchOf(owner)->run(context);
        } else if (owner.definition->run != nullptr) {
            owner.definition->run(context);
        }
        if (owner.changedAt >= moment) {
            chargeFor(owner);
        }
        if (owner.definition->role == Role::Feedback && owner.feedbackFrame != m_frameNumber) {
            owner.feedbackFrame = m_frameNumber;
            m_feedbackNodes.push_back(index);
        }
    }
    owner.ranAt = std::max(moment, owner.ranAt);
}

/// A run that made large values counts as many.
void Evaluator::chargeFor(const Node &owner)
{
    qint64 work = 0;
    for (const OutputState &output : owner.outputs) {
        work += workOf(output.value);
        if (output.value.type() == PortType::Image) {
            const QSize size = output.value.toImage()->pixelSize();
            work += qint64(size.width()) * size.height() / pixelsPerRun;
        }
    }
    charge(work);
}

/// Classes that are not supported hand an image through, so that the rest of a composition shows.
void Evaluator::passThrough(int index)
{
    Context context(*this, index);
    const int output = node(index).outputIndex(u"outputImage");
    if (output < 0) {
        return;
    }
    if (const int input = node(index).inputIndex(u"inputImage"); input >= 0) {
        context.set(output, context.image(input));
        return;
    }
    for (int i = 0; i < context.inputCount(); ++i) {
        if (context.value(i).type() == PortType::Image) {
            context.set(output, context.value(i));
            return;
        }
    }
    context.set(output, {});
}

} // namespace tarnwell::compositions
