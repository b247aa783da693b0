#include "compositions/drawing/Canvas.h"

#include "compositions/Limits.h"
#include "compositions/drawing/Geometry.h"
#include "compositions/model/Image.h"

#include <cmath>
#include <utility>

namespace tarnwell::compositions {

namespace {

bool isFinite(const QMatrix4x4 &matrix)
{
    for (int i = 0; i < 16; ++i) {
        if (!std::isfinite(matrix.constData()[i])) {
            return false;
        }
    }
    return true;
}

bool isFinite(const Color &color)
{
    return std::isfinite(color.red) && std::isfinite(color.green) && std::isfinite(color.blue) &&
           std::isfinite(color.alpha);
}

Color product(const Color &a, const Color &b)
{
    return {a.red * b.red, a.green * b.green, a.blue * b.blue, a.alpha * b.alpha};
}

} // namespace

void Canvas::begin(QSize pixels, PatternPainter painter)
{
    m_frame = {};
    m_paintPattern = std::move(painter);
    m_open.clear();
    m_lighting.reset();
    m_model = QMatrix4x4();
    m_projection = projection(pixels);
    m_commandsLeft = limits::drawCommands;
    m_verticesLeft = limits::vertices;
    m_open.push_back(
        {{.image = {}, .pixels = pixels, .commands = {}}, m_model, m_projection, {}, true});
}

Frame Canvas::finish()
{
    while (!m_open.empty()) {
        m_frame.targets.push_back(std::move(m_open.back().target));
        m_open.pop_back();
    }
    return std::move(m_frame);
}

void Canvas::push(const ImageRef &image, bool hasDepth)
{
    m_open.back().model = m_model;
    m_open.back().lighting = std::exchange(m_lighting, {});
    m_model = QMatrix4x4();
    m_projection = projection(image->pixelSize());
    m_open.push_back({{.image = image, .pixels = image->pixelSize(), .commands = {}},
                      m_model,
                      m_projection,
                      {},
                      hasDepth});
}

void Canvas::pop()
{
    Q_ASSERT(m_open.size() > 1);
    m_frame.targets.push_back(std::move(m_open.back().target));
    m_open.pop_back();
    m_model = m_open.back().model;
    m_projection = m_open.back().projection;
    m_lighting = m_open.back().lighting;
}

QSize Canvas::pixels() const
{
    return m_open.back().target.pixels;
}

void Canvas::clear(const ClearCommand &command)
{
    if (m_commandsLeft <= 0 || !isFinite(command.color)) {
        return;
    }
    --m_commandsLeft;
    m_open.back().target.commands.emplace_back(command);
}

void Canvas::draw(DrawCommand command)
{
    const qint64 vertices = command.mesh ? qint64(command.mesh->vertices.size()) : 0;
    if (m_commandsLeft <= 0 || m_verticesLeft < vertices || vertices == 0 ||
        !isFinite(command.transform) || !isFinite(command.color)) {
        return;
    }
    for (ImageRef *image : {&command.image, &command.mask}) {
        if (*image && (*image)->kind() == Image::Kind::Constant) {
            if (image == &command.image) {
                command.color = product(command.color, (*image)->color());
            }
            image->reset();
        } else if (*image && (*image)->kind() == Image::Kind::Endless) {
            *image =
                m_paintPattern ? m_paintPattern(*image, QRect(QPoint(0, 0), pixels())) : ImageRef();
            if (!*image) {
                return;
            }
        }
    }
    if (!m_open.back().hasDepth) {
        command.depth = DepthMode::None;
    }
    if (command.lighting) {
        command.model = m_projection.inverted() * command.transform;
    }
    --m_commandsLeft;
    m_verticesLeft -= vertices;
    m_open.back().target.commands.emplace_back(std::move(command));
}

bool Canvas::compute(const ImageRef &image, KernelCommand command)
{
    if (m_commandsLeft <= 0) {
        return false;
    }
    --m_commandsLeft;
    RenderTarget target{.image = image, .pixels = image->pixelSize(), .commands = {}};
    target.commands.emplace_back(std::move(command));
    m_frame.targets.push_back(std::move(target));
    return true;
}

} // namespace tarnwell::compositions
