#include "compositions/Limits.h"
#include "compositions/evaluator/Evaluator.h"
#include "compositions/model/Image.h"

#include <QScopedValueRollback>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

constexpr int iteratorCount = 0;
constexpr int imageWidth = 0;
constexpr int imageHeight = 1;
constexpr int imageRender = 2;
constexpr int imageOutput = 0;

/// Passes of nested iterators get identities of their own.
quint64 passIdentity(quint64 outer, qint64 index)
{
    return outer * quint64(limits::iterations + 1) + quint64(index) + 1;
}

} // namespace

bool Evaluator::isEnabled(int index)
{
    const int input = node(index).enableInput;
    if (input < 0) {
        return true;
    }
    if (const Endpoint source = node(index).inputs[size_t(input)].source; source.isValid()) {
        pull(source.node);
    }
    return inputValue(node(index), input).toBoolean();
}

void Evaluator::drawChildren(int macro)
{
    for (const int child : node(macro).macro->children) {
        if (node(child).draws && m_evaluationsLeft > 0 && isEnabled(child)) {
            drawNode(child);
        }
    }
}

void Evaluator::drawNode(int index)
{
    --m_evaluationsLeft;
    chargeVisit(node(index));
    const PatchDefinition *definition = node(index).definition;
    timeOf(index); // keeps local time running
    pullInputs(index);
    Context context(*this, index);
    if (definition != nullptr && definition->draw != nullptr) {
        definition->draw(context, m_canvas);
    } else if (!node(index).macro) {
        return;
    } else if (definition != nullptr && definition->role == Role::Iterator) {
        node(index).freshAt = m_scopes[size_t(node(index).scope)].stamp;
        iterate(index);
    } else if (definition != nullptr && definition->surround != nullptr) {
        const QMatrix4x4 model = m_canvas.model();
        const LightingRef lighting = m_canvas.lighting();
        definition->surround(context, m_canvas, [this, index] { drawChildren(index); });
        m_canvas.setModel(model);
        m_canvas.setLighting(lighting);
    } else {
        drawChildren(index);
    }
    node(index).ranAt = m_serial;
}

void Evaluator::iterate(int index)
{
    Node &owner = node(index);
    if (!owner.macro) {
        return;
    }
    Scope &scope = m_scopes[size_t(owner.ownScope)];
    const qint64 count = inputValue(owner, iteratorCount).toIndex();
    const quint64 outer = m_scopes[size_t(owner.scope)].passId;
    for (qint64 i = 0; i < count && m_evaluationsLeft > 0 && takeIteration(); ++i) {
        scope = {.stamp = ++m_serial, .passId = passIdentity(outer, i), .pass = {i, count}};
        if (owner.draws) {
            drawChildren(index);
        }
        for (const auto &[output, inner] : owner.macro->copiedOutputs) {
            pull(inner.node);
            Value &current = owner.outputs[size_t(output)].value;
            const Value &latest = node(inner.node).outputs[size_t(inner.port)].value;
            if (!current.isIdentical(latest)) {
                current = latest;
                owner.changedAt = ++m_serial;
            }
        }
    }
}

QSize Evaluator::sizeOfImage(int macro)
{
    const Node &owner = node(macro);
    for (const int input : {imageWidth, imageHeight}) {
        if (const Endpoint source = owner.inputs[size_t(input)].source; source.isValid()) {
            pull(source.node);
        }
    }
    const QSize around = destinationOf(owner);
    const auto side = [&](int input, QLatin1StringView setting, int whole) {
        // Old files keep the size as a setting, newer ones have ports for it.
        const qint64 fromSetting =
            owner.inputs[size_t(input)].isStored || owner.inputs[size_t(input)].source.isValid()
                ? 0
                : owner.description->setting(setting).toInteger();
        const qint64 wanted = std::max(inputValue(owner, input).toIndex(), fromSetting);
        return wanted > 0 ? int(std::min<qint64>(wanted, limits::imageSide)) : whole;
    };
    return {side(imageWidth, "width"_L1, around.width()),
            side(imageHeight, "height"_L1, around.height())};
}

void Evaluator::renderInImage(int index)
{
    Node &owner = node(index);
    // Without the switch the last image stays.
    if (!owner.macro || (!inputValue(owner, imageRender).toBoolean() && owner.ranAt != 0)) {
        return;
    }
    const QSize size = sizeOfImage(index);
    // The old image goes first, unless somebody else keeps it: both may not fit into the budget.
    owner.outputs[imageOutput].value = {};
    const ImageRef image = Image::rendered(size, m_imageBudget);
    if (image) {
        m_canvas.push(image, !owner.description->setting("noDepthBuffer"_L1).toBool());
        drawChildren(index);
        m_canvas.pop();
    }
    owner.outputs[imageOutput].value = image;
    owner.changedAt = m_serial;
}

void Evaluator::captureFeedback()
{
    // First everything is brought up to date, then everything is stored: one feedback must not see
    // another one's new value.
    std::vector<std::pair<int, Endpoint>> captures;
    for (size_t i = 0; i < m_feedbackNodes.size(); ++i) {
        const int index = m_feedbackNodes[i];
        const Node &owner = node(index);
        for (size_t output = 0; output < owner.outputs.size(); ++output) {
            const Endpoint inner =
                node(owner.parent).macro->publishedOutputs.value(owner.outputs[output].key);
            captures.emplace_back(index, inner);
            if (inner.isValid()) {
                pull(inner.node);
            }
        }
    }
    int previous = -1;
    int output = 0;
    for (const auto &[index, inner] : captures) {
        output = index == previous ? output + 1 : 0;
        previous = index;
        if (inner.isValid()) {
            node(index).remembered.resize(node(index).outputs.size());
            node(index).remembered[size_t(output)] =
                node(inner.node).outputs[size_t(inner.port)].value;
        }
    }
}

} // namespace tarnwell::compositions
