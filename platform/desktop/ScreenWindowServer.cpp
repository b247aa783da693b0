#include "desktop/ScreenWindowServer.h"

#include "desktop/WaylandShortcuts.h"

#include <QGuiApplication>
#include <QPointer>
#include <QWindow>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

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

std::unique_ptr<ports::ShortcutInhibition> ScreenWindowServer::inhibitShortcuts(QWindow &window)
{
    if (QGuiApplication::platformName() != "xcb"_L1)
        return inhibitWaylandShortcuts(window);
    if (!window.setKeyboardGrabEnabled(true))
        return nullptr;
    return std::make_unique<KeyboardGrab>(window);
}

} // namespace tarnwell::desktop
