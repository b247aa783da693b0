#include "WaylandKeys.h"

#include "virtual-keyboard-client.h"

#include <wayland-client.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

namespace tarnwell::tests {

namespace {

constexpr quint16 scanCodeOffset = 8;

} // namespace

struct WaylandKeys::Connection
{
    ~Connection()
    {
        xkb_state_unref(state);
        if (keyboard)
            zwp_virtual_keyboard_v1_destroy(keyboard);
        if (manager)
            zwp_virtual_keyboard_manager_v1_destroy(manager);
        if (seat)
            wl_seat_destroy(seat);
        if (registry)
            wl_registry_destroy(registry);
        if (display)
            wl_display_disconnect(display);
    }

    static void bindGlobal(void *data, wl_registry *registry, uint32_t name, const char *interface,
                           uint32_t)
    {
        auto &self = *static_cast<Connection *>(data);
        if (std::strcmp(interface, wl_seat_interface.name) == 0) {
            self.seat =
                static_cast<wl_seat *>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
        } else if (std::strcmp(interface, zwp_virtual_keyboard_manager_v1_interface.name) == 0) {
            self.manager = static_cast<zwp_virtual_keyboard_manager_v1 *>(
                wl_registry_bind(registry, name, &zwp_virtual_keyboard_manager_v1_interface, 1));
        }
    }
    static void forgetGlobal(void *, wl_registry *, uint32_t) {}

    void useKeymap(const QByteArray &text)
    {
        xkb_context *const context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
        xkb_keymap *const keymap = xkb_keymap_new_from_string(
            context, text.constData(), XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS);
        xkb_state_unref(state);
        state = xkb_state_new(keymap);
        const auto size = size_t(text.size()) + 1;
        const int file = memfd_create("keymap", MFD_CLOEXEC);
        if (write(file, text.constData(), size) == ssize_t(size)) {
            if (!keyboard)
                keyboard = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(manager, seat);
            zwp_virtual_keyboard_v1_keymap(keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file,
                                           uint32_t(size));
            wl_display_roundtrip(display);
        }
        close(file);
        xkb_keymap_unref(keymap);
        xkb_context_unref(context);
    }

    void tellModifiers() const
    {
        zwp_virtual_keyboard_v1_modifiers(
            keyboard, xkb_state_serialize_mods(state, XKB_STATE_MODS_DEPRESSED),
            xkb_state_serialize_mods(state, XKB_STATE_MODS_LATCHED),
            xkb_state_serialize_mods(state, XKB_STATE_MODS_LOCKED),
            xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_EFFECTIVE));
    }

    wl_display *display = nullptr;
    wl_registry *registry = nullptr;
    wl_seat *seat = nullptr;
    zwp_virtual_keyboard_manager_v1 *manager = nullptr;
    zwp_virtual_keyboard_v1 *keyboard = nullptr;
    xkb_state *state = nullptr;
    uint32_t time = 0;
};

WaylandKeys::WaylandKeys(const QByteArray &keymap)
    : m_connection(std::make_unique<Connection>())
{
    Connection &c = *m_connection;
    c.display = wl_display_connect(nullptr);
    if (!c.display)
        return;
    c.registry = wl_display_get_registry(c.display);
    static constexpr wl_registry_listener listener{Connection::bindGlobal,
                                                   Connection::forgetGlobal};
    wl_registry_add_listener(c.registry, &listener, &c);
    wl_display_roundtrip(c.display);
    if (c.seat && c.manager)
        c.useKeymap(keymap);
}

WaylandKeys::~WaylandKeys() = default;

bool WaylandKeys::isPluggedIn() const
{
    return m_connection->keyboard != nullptr;
}

QByteArray WaylandKeys::keymapOf(const char *layouts)
{
    xkb_context *const context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    const xkb_rule_names names{"evdev", "pc105", layouts, "", ""};
    xkb_keymap *const keymap =
        xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
    char *const text = xkb_keymap_get_as_string(keymap, XKB_KEYMAP_FORMAT_TEXT_V1);
    QByteArray result(text);
    std::free(text);
    xkb_keymap_unref(keymap);
    xkb_context_unref(context);
    return result;
}

void WaylandKeys::useKeymap(const QByteArray &keymap)
{
    if (isPluggedIn())
        m_connection->useKeymap(keymap);
}

void WaylandKeys::lockGroup(quint32 group)
{
    if (!isPluggedIn())
        return;
    xkb_state_update_mask(m_connection->state, 0, 0, 0, 0, 0, group);
    m_connection->tellModifiers();
    wl_display_roundtrip(m_connection->display);
}

void WaylandKeys::press(const QList<quint16> &codes)
{
    if (!isPluggedIn())
        return;
    // The compositor reads from whoever has written, one after the other: what the pane asked of it
    // before the first of these requests is heard by the time of the second.
    wl_display_roundtrip(m_connection->display);
    for (const quint16 code : codes)
        turn(code, true);
    for (auto code = codes.rbegin(); code != codes.rend(); ++code)
        turn(*code, false);
    wl_display_roundtrip(m_connection->display);
}

void WaylandKeys::turn(quint16 code, bool down)
{
    Connection &c = *m_connection;
    zwp_virtual_keyboard_v1_key(c.keyboard, ++c.time, code,
                                down ? WL_KEYBOARD_KEY_STATE_PRESSED
                                     : WL_KEYBOARD_KEY_STATE_RELEASED);
    xkb_state_update_key(c.state, code + scanCodeOffset, down ? XKB_KEY_DOWN : XKB_KEY_UP);
    c.tellModifiers();
}

} // namespace tarnwell::tests
