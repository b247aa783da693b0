#include "desktop/WaylandClient.h"

#include <QGuiApplication>
#include <QLibraryInfo>
#include <QVersionNumber>

#include <qpa/qplatformnativeinterface.h>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

void WaylandRelease::operator()(wl_event_queue *queue) const
{
    wl_event_queue_destroy(queue);
}

void WaylandRelease::operator()(wl_registry *registry) const
{
    wl_registry_destroy(registry);
}

void WaylandRelease::operator()(wl_seat *seat) const
{
    if (wl_seat_get_version(seat) >= WL_SEAT_RELEASE_SINCE_VERSION)
        wl_seat_release(seat);
    else
        wl_seat_destroy(seat);
}

void WaylandRelease::operator()(wl_keyboard *keyboard) const
{
    if (wl_keyboard_get_version(keyboard) >= WL_KEYBOARD_RELEASE_SINCE_VERSION)
        wl_keyboard_release(keyboard);
    else
        wl_keyboard_destroy(keyboard);
}

wl_display *toolkitWaylandDisplay()
{
    // Only the very release that this was built with is sure to have the same class.
    const bool isSameToolkit =
        QLibraryInfo::version() == QVersionNumber::fromString(QLatin1StringView(QT_VERSION_STR));
    if (!qGuiApp || !QGuiApplication::platformName().startsWith("wayland"_L1) || !isSameToolkit)
        return nullptr;
    QPlatformNativeInterface *const toolkit = QGuiApplication::platformNativeInterface();
    return toolkit ? static_cast<wl_display *>(toolkit->nativeResourceForIntegration("wl_display"))
                   : nullptr;
}

WaylandPointer<wl_registry> waylandRegistry(wl_display *display, wl_event_queue *queue)
{
    auto *const wrapper = static_cast<wl_display *>(wl_proxy_create_wrapper(display));
    if (!wrapper)
        return nullptr;
    wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(wrapper), queue);
    WaylandPointer<wl_registry> registry(wl_display_get_registry(wrapper));
    wl_proxy_wrapper_destroy(wrapper);
    return registry;
}

} // namespace tarnwell::desktop
