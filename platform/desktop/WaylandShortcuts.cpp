#include "desktop/WaylandShortcuts.h"

#include "keyboard-shortcuts-inhibit-client.h"

#include <QGuiApplication>
#include <QLibraryInfo>
#include <QVersionNumber>
#include <QWindow>

#include <qpa/qplatformnativeinterface.h>
#include <wayland-client.h>

#include <cstring>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

template <auto destroy>
struct Destroy
{
    template <typename Object>
    void operator()(Object *object) const
    {
        destroy(object);
    }
};

using Queue = std::unique_ptr<wl_event_queue, Destroy<wl_event_queue_destroy>>;
using Registry = std::unique_ptr<wl_registry, Destroy<wl_registry_destroy>>;
using Manager = std::unique_ptr<zwp_keyboard_shortcuts_inhibit_manager_v1,
                                Destroy<zwp_keyboard_shortcuts_inhibit_manager_v1_destroy>>;
using Inhibitor = std::unique_ptr<zwp_keyboard_shortcuts_inhibitor_v1,
                                  Destroy<zwp_keyboard_shortcuts_inhibitor_v1_destroy>>;

/// The connection and the objects that the toolkit has on it, which owns them. All are null when
/// there is no such display.
struct ToolkitObjects
{
    wl_display *display = nullptr;
    wl_seat *seat = nullptr;
    wl_surface *surface = nullptr; ///< lives as long as the window is shown
};

ToolkitObjects toolkitObjects(QWindow &window)
{
    // Only the very release that this was built with is sure to have the same class.
    const bool isSameToolkit =
        QLibraryInfo::version() == QVersionNumber::fromString(QLatin1StringView(QT_VERSION_STR));
    if (!QGuiApplication::platformName().startsWith("wayland"_L1) || !isSameToolkit ||
        !window.handle())
        return {};
    QPlatformNativeInterface *const toolkit = QGuiApplication::platformNativeInterface();
    if (!toolkit)
        return {};
    return {
        static_cast<wl_display *>(toolkit->nativeResourceForIntegration("wl_display")),
        static_cast<wl_seat *>(toolkit->nativeResourceForIntegration("wl_seat")),
        static_cast<wl_surface *>(toolkit->nativeResourceForWindow("surface", &window)),
    };
}

void noteGlobal(void *managerName, wl_registry *, uint32_t name, const char *interface, uint32_t)
{
    if (std::strcmp(interface, zwp_keyboard_shortcuts_inhibit_manager_v1_interface.name) == 0)
        *static_cast<uint32_t *>(managerName) = name;
}

void forgetGlobal(void *, wl_registry *, uint32_t) {}

/// Null when the compositor has none. The toolkit reads the events of what it makes.
Manager bindManager(wl_display *display)
{
    // A queue of its own: nothing of the toolkit's may be handled in here.
    const Queue queue(wl_display_create_queue(display));
    auto *const wrapper = static_cast<wl_display *>(wl_proxy_create_wrapper(display));
    if (!queue || !wrapper)
        return nullptr;
    wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(wrapper), queue.get());
    const Registry registry(wl_display_get_registry(wrapper));
    wl_proxy_wrapper_destroy(wrapper);
    if (!registry)
        return nullptr;
    static constexpr wl_registry_listener listener{noteGlobal, forgetGlobal};
    uint32_t name = 0;
    wl_registry_add_listener(registry.get(), &listener, &name);
    if (wl_display_roundtrip_queue(display, queue.get()) < 0 || name == 0)
        return nullptr;
    Manager manager(static_cast<zwp_keyboard_shortcuts_inhibit_manager_v1 *>(wl_registry_bind(
        registry.get(), name, &zwp_keyboard_shortcuts_inhibit_manager_v1_interface, 1)));
    if (manager)
        wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(manager.get()), nullptr);
    return manager;
}

class WaylandInhibition final : public ports::ShortcutInhibition
{
public:
    WaylandInhibition(Inhibitor inhibitor, wl_display *display)
        : m_inhibitor(std::move(inhibitor))
        , m_display(display)
    {
        wl_display_flush(m_display);
    }
    ~WaylandInhibition() override
    {
        m_inhibitor.reset();
        wl_display_flush(m_display);
    }

private:
    Inhibitor m_inhibitor;
    wl_display *m_display; // the toolkit's, which closes it after the last window
};

} // namespace

std::unique_ptr<ports::ShortcutInhibition> inhibitWaylandShortcuts(QWindow &window)
{
    const auto [display, seat, surface] = toolkitObjects(window);
    if (!display || !seat || !surface)
        return nullptr;
    const Manager manager = bindManager(display);
    if (!manager)
        return nullptr;
    Inhibitor inhibitor(
        zwp_keyboard_shortcuts_inhibit_manager_v1_inhibit_shortcuts(manager.get(), surface, seat));
    if (!inhibitor)
        return nullptr;
    return std::make_unique<WaylandInhibition>(std::move(inhibitor), display);
}

} // namespace tarnwell::desktop
