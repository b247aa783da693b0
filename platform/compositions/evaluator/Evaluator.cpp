#include "compositions/evaluator/Evaluator.h"

#include "compositions/Limits.h"
#include "compositions/model/Image.h"
#include "compositions/script/ScriptHost.h"

#include <algorithm>
#include <cmath>

namespace tarnwell::compositions {

Evaluator::Evaluator(std::shared_ptr<const Composition> composition,
                     const EvaluatorOptions &options)
    : m_options(options)
    , m_network(buildNetwork(std::move(composition)))
    , m_imageBudget(std::make_shared<ImageBudget>(limits::imageBytes))
    , m_scripts(std::make_unique<ScriptHost>())
    , m_scopes(size_t(m_network.scopeCount))
{}

Evaluator::~Evaluator() = default;

QStringList Evaluator::inputKeys() const
{
    QStringList keys;
    if (composition().root.graph) {
        for (const PublishedPort &port : composition().root.graph->inputs) {
            if (!keys.contains(port.key)) {
                keys.append(port.key);
            }
        }
    }
    return keys;
}

bool Evaluator::hasInput(const QString &key) const
{
    const auto &macro = m_network.nodes.front().macro;
    return macro && macro->publishedInputs.contains(key);
}

PortType Evaluator::inputType(const QString &key) const
{
    if (!hasInput(key)) {
        return composition().root.portValues.value(key).type();
    }
    const Endpoint inner = m_network.nodes.front().macro->publishedInputs.value(key);
    const PortType type = m_network.nodes[size_t(inner.node)].inputs[size_t(inner.port)].type;
    return type != PortType::Virtual ? type : composition().root.portValues.value(key).type();
}

Value Evaluator::inputValue(const QString &key) const
{
    if (!hasInput(key)) {
        return composition().root.portValues.value(key);
    }
    const Endpoint inner = m_network.nodes.front().macro->publishedInputs.value(key);
    return m_network.nodes[size_t(inner.node)].inputs[size_t(inner.port)].constant.converted(
        inputType(key));
}

bool Evaluator::setInput(const QString &key, const Value &value)
{
    if (!hasInput(key)) {
        return false;
    }
    const Endpoint inner = m_network.nodes.front().macro->publishedInputs.value(key);
    InputState &input = node(inner.node).inputs[size_t(inner.port)];
    const Value converted = value.converted(input.type);
    if (!input.constant.isIdentical(converted)) {
        input.constant = converted;
        input.changedAt = ++m_serial;
    }
    return true;
}

Frame Evaluator::evaluate(const FrameRequest &request)
{
    m_request = request;
    m_request.time = request.time > 0.0 ? request.time : 0.0;
    m_request.pixels =
        request.pixels.boundedTo({limits::imageSide, limits::imageSide}).expandedTo({1, 1});
    ++m_frameNumber;
    m_iterationsLeft = limits::iterations;
    m_evaluationsLeft = limits::evaluations;
    m_scripts->beginFrame();
    m_feedbackNodes.clear();
    for (Scope &scope : m_scopes) {
        scope = {.stamp = ++m_serial, .passId = 0, .pass = {}};
    }
    m_canvas.begin(m_request.pixels, [this](const ImageRef &pattern, const QRect &area) {
        return computeImage(pattern->recipe(), area, Image::Outside::NearestPixel);
    });
    if (node(0).macro) {
        drawChildren(0);
    }
    pullOutputs();
    captureFeedback();
    return m_canvas.finish();
}

QStringList Evaluator::outputKeys() const
{
    const auto &macro = m_network.nodes.front().macro;
    return macro ? QStringList(macro->publishedOutputs.keyBegin(), macro->publishedOutputs.keyEnd())
                 : QStringList();
}

Value Evaluator::outputValue(const QString &key) const
{
    const auto &macro = m_network.nodes.front().macro;
    const Endpoint inner = macro ? macro->publishedOutputs.value(key) : Endpoint{};
    return inner.isValid() ? m_network.nodes[size_t(inner.node)].outputs[size_t(inner.port)].value
                           : Value();
}

void Evaluator::pullOutputs()
{
    if (node(0).macro) {
        for (const Endpoint &inner : std::as_const(node(0).macro->publishedOutputs)) {
            pull(inner.node);
        }
    }
}

const Value &Evaluator::inputValue(const Node &owner, int input) const
{
    const InputState &state = owner.inputs[size_t(input)];
    return state.source.isValid()
               ? m_network.nodes[size_t(state.source.node)].outputs[size_t(state.source.port)].value
               : state.constant;
}

double Evaluator::parentTime(const Node &owner)
{
    return owner.parent >= 0 ? timeOf(owner.parent) : m_request.time;
}

double Evaluator::timeOf(int index)
{
    Node &owner = node(index);
    const quint64 stamp = m_scopes[size_t(owner.scope)].stamp;
    if (owner.timedAt == stamp) {
        return owner.time;
    }
    double time = 0.0;
    switch (owner.description->timeBase) {
    case TimeBase::Parent:
        time = parentTime(owner);
        break;
    case TimeBase::Local:
        // Whoever was not asked in the frame before has just been switched on.
        if (owner.touchedFrame + 1 < m_frameNumber) {
            owner.localStart = parentTime(owner);
        }
        owner.touchedFrame = m_frameNumber;
        time = parentTime(owner) - owner.localStart;
        break;
    case TimeBase::External:
        if (owner.timeInput >= 0) {
            if (const Endpoint source = owner.inputs[size_t(owner.timeInput)].source;
                source.isValid() && owner.macro) {
                pull(source.node);
            }
            time = inputValue(owner, owner.timeInput).toNumber();
        }
        break;
    }
    owner.time = time > 0.0 && std::isfinite(time) ? time : 0.0;
    owner.timedAt = stamp;
    return owner.time;
}

QSize Evaluator::destinationOf(const Node &owner)
{
    return owner.destination >= 0 ? sizeOfImage(owner.destination) : m_request.pixels;
}

bool Evaluator::takeIteration()
{
    if (m_iterationsLeft <= 0) {
        return false;
    }
    --m_iterationsLeft;
    return true;
}

bool Evaluator::charge(qint64 work)
{
    m_evaluationsLeft -= std::clamp<qint64>(work, 0, limits::evaluations);
    return m_evaluationsLeft > 0;
}

void Evaluator::chargeVisit(const Node &visited)
{
    // What a frame's nodes are asked for again and again, pass by pass, adds up even if none runs.
    constexpr size_t base = 4;
    constexpr size_t perRun = 64;
    m_visitCost += base + visited.inputs.size();
    charge(qint64(m_visitCost / perRun));
    m_visitCost %= perRun;
    if (m_options.stop.stop_requested()) {
        m_evaluationsLeft = 0;
    }
}

/// Patterns without end among the images get pixels where the kernel is going to look.
ImageRef Evaluator::computeImage(const ImageRecipe &recipe, const QRect &extent,
                                 Image::Outside outside)
{
    constexpr qint64 pixelsPerRun = 32;
    constexpr qint64 leastRuns = 100;
    const QRect area = coveringPixels(extent);
    if (area.isEmpty() ||
        !charge(leastRuns + qint64(area.width()) * area.height() / pixelsPerRun)) {
        return {};
    }
    KernelCommand command{.kernel = recipe.kernel,
                          .images = recipe.images,
                          .arguments = recipe.arguments,
                          .origin = area.topLeft()};
    for (ImageRef &image : command.images) {
        if (image && image->kind() == Image::Kind::Endless) {
            const int margin = recipe.margin;
            const QRect needed = coveringPixels(recipe.toImages.mapRect(QRectF(area)))
                                     .adjusted(-margin, -margin, margin, margin);
            image = computeImage(image->recipe(), needed, Image::Outside::NearestPixel);
        }
    }
    const ImageRef result = Image::rendered(area, outside, m_imageBudget);
    return result && m_canvas.compute(result, std::move(command)) ? result : ImageRef();
}

} // namespace tarnwell::compositions
