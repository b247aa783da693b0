#include "desktop/ScreenWindowServer.h"

#include "desktop/WaylandShortcuts.h"

#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QPointer>
#include <QScreen>
#include <QWindow>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

bool canMakeContext()
{
    // Nobody looks at these screens, though one of them makes contexts where it finds an X server.
    const QString platform = QGuiApplication::platformName();
    if (platform == "offscreen"_L1 || platform == "minimal"_L1 || !QGuiApplication::primaryScreen())
        return false;
    QSurfaceFormat format;
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    QOpenGLContext context;
    context.setScreen(QGuiApplication::primaryScreen());
    context.setFormat(format);
    if (!context.create())
        return false;
    QOffscreenSurface surface(context.screen());
    surface.setFormat(context.format());
    surface.create();
    if (!surface.isValid() || !context.makeCurrent(&surface))
        return false;
    const bool isEnough = !context.isOpenGLES() && context.format().version() >= std::pair(3, 3);
    context.doneCurrent();
    return isEnough;
}

class KeyboardGrab final : public ports::ShortcutInhibition
{
public:
    explicit KeyboardGrab(QWindow &window)
        : m_window(&window)
    {}
    ~KeyboardGrab() override
    {
        if (m_window)
            m_window->setKeyboardGrabEnabled(false);
    }

private:
    QPointer<QWindow> m_window;
};

} // namespace

bool ScreenWindowServer::canPlayCompositions() const
{
    if (!m_canPlay)
        m_canPlay = canMakeContext();
    return *m_canPlay;
}

std::unique_ptr<ports::ShortcutInhibition> ScreenWindowServer::inhibitShortcuts(QWindow &window)
{
    if (QGuiApplication::platformName() != "xcb"_L1)
        return inhibitWaylandShortcuts(window);
    if (!window.setKeyboardGrabEnabled(true))
        return nullptr;
    return std::make_unique<KeyboardGrab>(window);
}

} // namespace tarnwell::desktop
