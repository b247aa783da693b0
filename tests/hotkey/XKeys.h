#pragma once

#include <QList>

#include <xcb/xcb.h>

#include <memory>

namespace tarnwell::tests {

/// A program of its own on the X server that DISPLAY names: it presses the keys of the keyboard,
/// and can grab some as a desktop does.
class XKeys
{
public:
    /// Without a server the object does nothing.
    XKeys();

    /// Presses keys in this order and releases them in the opposite one. All are by the server by
    /// the time that this returns.
    void press(const QList<quint8> &codes);

    /// The modifiers that are down or locked.
    quint8 modifiers() const;

    /// Switches the keyboard to a group.
    void lockGroup(quint8 group);

    /// Lets a key have a symbol alone, as programs do that send symbols which have no key.
    void giveSymbol(quint8 code, quint32 symbol);

    /// Takes a key with modifiers from everybody else.
    void grab(quint8 code, quint16 modifiers);
    /// How many presses of grabbed keys there were, once there was one; 0 when none came in a
    /// minute, which only a failing test waits for.
    int waitForGrabbedPresses();

private:
    void fake(quint8 event, quint8 code);

    struct Disconnect
    {
        void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
    };
    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    xcb_window_t m_root = 0;
};

} // namespace tarnwell::tests
