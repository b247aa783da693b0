#include "desktop/XkbX11Keyboard.h"

#include "desktop/FileSystemIds.h"

#include <QSocketNotifier>

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <cstdlib>

// One of its structures has a field of that name.
#define explicit explicitComponents
#include <xcb/xkb.h>
#undef explicit

namespace tarnwell::desktop {

namespace {

/// Replies and events come from malloc().
struct Free
{
    void operator()(void *memory) const { std::free(memory); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

} // namespace

X11Keyboard readX11Keyboard(xcb_connection_t *connection, xkb_context *context)
{
    if (connection == nullptr || context == nullptr ||
        !xkb_x11_setup_xkb_extension(
            connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr))
        return {};
    const int32_t device = xkb_x11_get_core_keyboard_device_id(connection);
    if (device < 0)
        return {};
    X11Keyboard keyboard;
    keyboard.keymap.reset(
        xkb_x11_keymap_new_from_device(context, connection, device, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (keyboard.keymap == nullptr)
        return {};
    const XkbStatePointer state(
        xkb_x11_state_new_from_device(keyboard.keymap.get(), connection, device));
    if (state != nullptr)
        keyboard.group = xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE);
    return keyboard;
}

xkb_mod_mask_t readX11Modifiers(xcb_connection_t *connection)
{
    const xcb_setup_t *setup = connection != nullptr ? xcb_get_setup(connection) : nullptr;
    if (setup == nullptr || setup->roots_len == 0)
        return 0;
    const xcb_window_t root = xcb_setup_roots_iterator(setup).data->root;
    const Reply<xcb_query_pointer_reply_t> pointer(
        xcb_query_pointer_reply(connection, xcb_query_pointer(connection, root), nullptr));
    // The low eight bits are the modifiers; pointer buttons follow.
    return pointer != nullptr ? pointer->mask & 0xFFU : 0;
}

void X11KeyboardWatcher::Disconnect::operator()(xcb_connection_t *connection) const
{
    xcb_disconnect(connection);
}

X11KeyboardWatcher::X11KeyboardWatcher(QObject *parent)
    : QObject(parent)
{}

X11KeyboardWatcher::~X11KeyboardWatcher() = default;

bool X11KeyboardWatcher::start()
{
    if (m_connection != nullptr)
        return true;
    const OwnIds readTheSessionsKey;
    m_connection.reset(xcb_connect(nullptr, nullptr));
    if (xcb_connection_has_error(m_connection.get()) != 0 || !selectEvents()) {
        m_connection.reset();
        return false;
    }
    auto *notifier = new QSocketNotifier(xcb_get_file_descriptor(m_connection.get()),
                                         QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        readEvents();
        if (xcb_connection_has_error(m_connection.get()) != 0)
            notifier->setEnabled(false);
    });
    return true;
}

void X11KeyboardWatcher::catchUp()
{
    xcb_connection_t *connection = m_connection.get();
    if (connection == nullptr)
        return;
    // Any answer comes after the events that there are.
    const Reply<xcb_get_input_focus_reply_t> answer(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    readEvents();
}

bool X11KeyboardWatcher::selectEvents()
{
    xcb_connection_t *connection = m_connection.get();
    if (!xkb_x11_setup_xkb_extension(
            connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &m_firstEvent, nullptr))
        return false;
    constexpr quint16 mapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS |
                                 XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_VIRTUAL_MODS;
    xcb_xkb_select_events_details_t details{};
    details.affectNewKeyboard = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.affectState = XCB_XKB_STATE_PART_GROUP_STATE;
    details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
    xcb_xkb_select_events_aux(connection, XCB_XKB_ID_USE_CORE_KBD,
                              XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY |
                                  XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY,
                              0, 0, mapParts, mapParts, &details);
    return xcb_flush(connection) > 0;
}

void X11KeyboardWatcher::readEvents()
{
    bool isChanged = false;
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())})
        isChanged = isChanged || (event->response_type & 0x7F) == m_firstEvent;
    if (isChanged)
        Q_EMIT keyboardChanged();
}

} // namespace tarnwell::desktop
