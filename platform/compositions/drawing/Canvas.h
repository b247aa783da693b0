#pragma once

#include "compositions/drawing/Frame.h"

#include <functional>

namespace tarnwell::compositions {

/// Where consumers put what they want drawn: a stack of render targets, with the transformation
/// that the macros around have built up. It holds the limits of a frame.
class Canvas
{
public:
    /// Makes pixels of a pattern without end, for a rectangle of its plane.
    using PatternPainter = std::function<ImageRef(const ImageRef &, const QRect &)>;

    /// Starts a frame on a destination of so many pixels.
    void begin(QSize pixels, PatternPainter painter = {});
    /// Ends it. Targets that a limit cut short are complete as far as they go.
    Frame finish();

    /// Starts an image; what follows is drawn into it, in its own coordinates.
    void push(const ImageRef &image, bool hasDepth = true);
    void pop();

    QSize pixels() const;
    const QMatrix4x4 &model() const { return m_model; }
    void setModel(const QMatrix4x4 &model) { m_model = model; }
    /// The lights of the surroundings; null where there are none.
    const LightingRef &lighting() const { return m_lighting; }
    void setLighting(const LightingRef &lighting) { m_lighting = lighting; }
    /// From the coordinates of the surroundings to clip coordinates.
    QMatrix4x4 clipFromModel() const { return m_projection * m_model; }
    const QMatrix4x4 &clipFromView() const { return m_projection; }

    void clear(const ClearCommand &command);
    /// Takes what would be visible at all: neither an endless number nor nothing to see. A constant
    /// image becomes part of the colour.
    void draw(DrawCommand command);
    /// Computes an image before whatever is being drawn now. False when nothing is left for it.
    bool compute(const ImageRef &image, KernelCommand command);

private:
    struct Open
    {
        RenderTarget target;
        QMatrix4x4 model;
        QMatrix4x4 projection;
        LightingRef lighting;
        bool hasDepth = true;
    };

    Frame m_frame;
    PatternPainter m_paintPattern;
    std::vector<Open> m_open;
    QMatrix4x4 m_model;
    QMatrix4x4 m_projection;
    LightingRef m_lighting;
    int m_commandsLeft = 0;
    qint64 m_verticesLeft = 0;
};

} // namespace tarnwell::compositions
