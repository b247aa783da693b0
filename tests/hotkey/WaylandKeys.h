#pragma once

#include <QByteArray>
#include <QList>

#include <memory>

namespace tarnwell::tests {

/// A keyboard on the Wayland compositor that WAYLAND_DISPLAY names.
class WaylandKeys
{
public:
    /// Without a compositor that takes such keyboards the object does nothing.
    explicit WaylandKeys(const QByteArray &keymap = keymapOf("us"));
    ~WaylandKeys();

    /// The keymap of layouts of the database, such as "us,de", as text.
    static QByteArray keymapOf(const char *layouts);

    bool isPluggedIn() const;
    void useKeymap(const QByteArray &keymap);
    void lockGroup(quint32 group);

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
