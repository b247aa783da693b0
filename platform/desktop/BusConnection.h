#pragma once

#include <QString>

#include <dbus/dbus.h>
#include <poll.h>

#include <memory>
#include <optional>
#include <vector>

namespace tarnwell::desktop {

struct ReleaseBusMessage
{
    void operator()(DBusMessage *message) const { dbus_message_unref(message); }
};
using BusMessage = std::unique_ptr<DBusMessage, ReleaseBusMessage>;

/// A connection of one's own to a message bus, for a thread that waits for it together with other
/// things. It takes no more from the bus than is asked of it: whoever stops calling takeMessage()
/// leaves the rest in the bus's hands, but for some hundred kilobytes.
///
/// All calls must come from one thread.
class BusConnection
{
public:
    /// Connects and asks to be registered, which takes effect when isRegistered() says so. Null
    /// when nobody listens there. May take long: an address may name another machine, or a bus
    /// that has stopped and lets the callers queue.
    static std::unique_ptr<BusConnection> open(const QString &address);
    ~BusConnection();
    Q_DISABLE_COPY_MOVE(BusConnection)

    /// False once the bus is gone.
    bool isOpen() const;

    /// Whether the bus has given us a name.
    bool isRegistered() const { return !m_name.isEmpty(); }

    /// The descriptors to wait for, as poll() takes them.
    std::vector<pollfd> awaited() const;

    /// Reads and writes what these descriptors allow, without waiting.
    void handle(const std::vector<pollfd> &ready);

    /// The next signal or answer of somebody else's that has arrived; null when there is none.
    BusMessage takeMessage();

    /// Queues a message, and returns the number that its answer will refer to.
    quint32 send(const BusMessage &message);

    /// A call of the bus itself.
    static BusMessage busCall(const char *method);

private:
    explicit BusConnection(DBusConnection *connection);

    static dbus_bool_t addWatch(DBusWatch *watch, void *self);
    static void removeWatch(DBusWatch *watch, void *self);
    bool isOwn(DBusMessage *message) const;
    void refuse(DBusMessage *call);
    void noteName(DBusMessage *answer);

    DBusConnection *m_connection;
    std::vector<DBusWatch *> m_watches;
    quint32 m_registration = 0;
    QByteArray m_name; ///< as the bus calls us
};

} // namespace tarnwell::desktop
