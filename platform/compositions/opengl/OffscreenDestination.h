#pragma once

#include <QImage>
#include <QString>

#include <memory>
#include <stop_token>

namespace tarnwell::compositions {

class Renderer;
struct Frame;

/// A picture in memory to draw frames into, with an OpenGL context of its own that needs no display
/// and no window.
class OffscreenDestination
{
public:
    /// Null, with the reason, when no such context can be made here.
    static std::unique_ptr<OffscreenDestination> create(QSize pixels, QString *error = nullptr);
    ~OffscreenDestination();
    Q_DISABLE_COPY_MOVE(OffscreenDestination)

    /// Makes the picture another size; what was drawn is lost. False when there is no memory for
    /// it, and then nothing can be drawn until another size was given.
    bool resize(QSize pixels);
    QSize pixels() const { return m_pixels; }

    /// Draws a frame and waits for it, or draws only a part when somebody asks to stop.
    void draw(const Frame &frame, std::stop_token stop = {});
    /// What was drawn last.
    QImage picture() const;

    const Renderer &renderer() const { return *m_renderer; }

private:
    class Context;
    OffscreenDestination(std::unique_ptr<Context> context, QSize pixels);
    bool initialize(QString *error);
    bool allocate();

    std::unique_ptr<Context> m_context;
    std::unique_ptr<Renderer> m_renderer;
    QSize m_pixels;
    unsigned m_framebuffer = 0;
    unsigned m_color = 0;
    unsigned m_depth = 0;
};

} // namespace tarnwell::compositions
