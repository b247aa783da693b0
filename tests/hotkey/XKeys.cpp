#include "XKeys.h"

#include <xcb/xcbext.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <poll.h>

#define explicit explicitComponents
#include <xcb/xkb.h>
#undef explicit

namespace tarnwell::tests {

namespace {

// The extension's own library is one more package, for a single request of 36 bytes.
xcb_extension_t xtest{"XTEST", 0};
constexpr quint8 fakeInput = 2;
constexpr int patience = 60000; // milliseconds

template <typename Reply>
struct Freed
{
    explicit Freed(Reply *reply)
        : pointer(reply, &std::free)
    {}
    std::unique_ptr<Reply, decltype(&std::free)> pointer;
};

} // namespace

XKeys::XKeys()
    : m_connection(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(m_connection.get())) {
        m_connection.reset();
        return;
    }
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data->root;
    const auto use = xcb_xkb_use_extension(m_connection.get(), 1, 0);
    const Freed reply(xcb_xkb_use_extension_reply(m_connection.get(), use, nullptr));
}

void XKeys::fake(quint8 event, quint8 code)
{
    std::array<quint8, 36> request{};
    request[4] = event;
    request[5] = code;
    std::memcpy(&request[12], &m_root, sizeof m_root);
    const xcb_protocol_request_t protocol{2, &xtest, fakeInput, 1};
    std::array<iovec, 4> parts{};
    parts[2] = {request.data(), request.size()};
    parts[3] = {nullptr, 0};
    xcb_send_request(m_connection.get(), 0, &parts[2], &protocol);
}

void XKeys::press(const QList<quint8> &codes)
{
    for (const quint8 code : codes)
        fake(XCB_KEY_PRESS, code);
    for (auto code = codes.crbegin(); code != codes.crend(); ++code)
        fake(XCB_KEY_RELEASE, *code);
    modifiers();
}

quint8 XKeys::modifiers() const
{
    if (!m_connection)
        return 0;
    const auto question = xcb_xkb_get_state(m_connection.get(), XCB_XKB_ID_USE_CORE_KBD);
    const Freed reply(xcb_xkb_get_state_reply(m_connection.get(), question, nullptr));
    return reply.pointer ? reply.pointer->mods : 0;
}

void XKeys::lockGroup(quint8 group)
{
    xcb_xkb_latch_lock_state(m_connection.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
    modifiers();
}

void XKeys::giveSymbol(quint8 code, quint32 symbol)
{
    xcb_change_keyboard_mapping(m_connection.get(), 1, code, 1, &symbol);
    modifiers();
}

void XKeys::grab(quint8 code, quint16 modifiers)
{
    const auto grabbed = xcb_grab_key_checked(m_connection.get(), 0, m_root, modifiers, code,
                                              XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const Freed error(xcb_request_check(m_connection.get(), grabbed));
}

int XKeys::waitForGrabbedPresses()
{
    pollfd readable{xcb_get_file_descriptor(m_connection.get()), POLLIN, 0};
    int presses = 0;
    do {
        while (auto *event = xcb_poll_for_event(m_connection.get())) {
            presses += (event->response_type & 0x7F) == XCB_KEY_PRESS ? 1 : 0;
            std::free(event);
        }
    } while (presses == 0 && ::poll(&readable, 1, patience) > 0);
    return presses;
}

} // namespace tarnwell::tests
