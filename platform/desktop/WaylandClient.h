#pragma once

#include <memory>

#include <wayland-client.h>

namespace tarnwell::desktop {

/// Ends objects of the protocol, and tells the compositor where it wants to know.
struct WaylandRelease
{
    void operator()(wl_event_queue *queue) const;
    void operator()(wl_registry *registry) const;
    void operator()(wl_seat *seat) const;
    void operator()(wl_keyboard *keyboard) const;
};
template <typename Object>
using WaylandPointer = std::unique_ptr<Object, WaylandRelease>;

/// The toolkit's connection to the compositor, which it owns; null when its windows are elsewhere.
/// The toolkit hands out the events of the default queue, on the main thread.
wl_display *toolkitWaylandDisplay();

/// A registry whose events, and those of what it binds, go to a queue. Null when memory is short.
WaylandPointer<wl_registry> waylandRegistry(wl_display *display, wl_event_queue *queue);

/// Leaves the events of an object, or of none, to the toolkit.
template <typename Object>
void leaveToToolkit(Object *object)
{
    if (object)
        wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(object), nullptr);
}

} // namespace tarnwell::desktop
