#pragma once

#include <QList>

#include <memory>

namespace tarnwell::tests {

/// A keyboard with the English layout on the Wayland compositor that WAYLAND_DISPLAY names.
class WaylandKeys
{
public:
    /// Without a compositor that takes such keyboards the object does nothing.
    WaylandKeys();
    ~WaylandKeys();

    bool isPluggedIn() const;

    /// Presses keys of these evdev codes in this order and releases them in the opposite one. The
    /// compositor has seen to all of them by the time that this returns, and before them to what it
    /// was asked by then.
    void press(const QList<quint16> &codes);

private:
    struct Connection;
    void turn(quint16 code, bool down);

    std::unique_ptr<Connection> m_connection;
};

} // namespace tarnwell::tests
