#include "desktop/WaylandShortcuts.h"

#include "desktop/WaylandClient.h"
#include "keyboard-shortcuts-inhibit-client.h"

#include <QGuiApplication>
#include <QWindow>

#include <qpa/qplatformnativeinterface.h>

#include <cstring>

namespace tarnwell::desktop {

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
    wl_display *const display = toolkitWaylandDisplay();
    if (!display || !window.handle())
        return {};
    QPlatformNativeInterface *const toolkit = QGuiApplication::platformNativeInterface();
    return {
        display,
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
    const WaylandPointer<wl_event_queue> queue(wl_display_create_queue(display));
    if (!queue)
        return nullptr;
    const WaylandPointer<wl_registry> registry = waylandRegistry(display, queue.get());
    if (!registry)
        return nullptr;
    static constexpr wl_registry_listener listener{noteGlobal, forgetGlobal};
    uint32_t name = 0;
    wl_registry_add_listener(registry.get(), &listener, &name);
    if (wl_display_roundtrip_queue(display, queue.get()) < 0 || name == 0)
        return nullptr;
    Manager manager(static_cast<zwp_keyboard_shortcuts_inhibit_manager_v1 *>(wl_registry_bind(
        registry.get(), name, &zwp_keyboard_shortcuts_inhibit_manager_v1_interface, 1)));
    leaveToToolkit(manager.get());
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
