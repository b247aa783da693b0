#include "desktop/BusConnection.h"

#include <QByteArray>

#include <algorithm>

namespace tarnwell::desktop {

namespace {

/// What the library reads ahead of us, in bytes, before it leaves the rest to the bus.
constexpr long readAhead = 256L * 1024;

short pollEvents(unsigned int flags)
{
    return short(((flags & DBUS_WATCH_READABLE) != 0 ? POLLIN : 0) |
                 ((flags & DBUS_WATCH_WRITABLE) != 0 ? POLLOUT : 0));
}

unsigned int watchFlags(short events)
{
    return ((events & POLLIN) != 0 ? unsigned(DBUS_WATCH_READABLE) : 0U) |
           ((events & POLLOUT) != 0 ? unsigned(DBUS_WATCH_WRITABLE) : 0U) |
           ((events & POLLERR) != 0 ? unsigned(DBUS_WATCH_ERROR) : 0U) |
           ((events & POLLHUP) != 0 ? unsigned(DBUS_WATCH_HANGUP) : 0U);
}

} // namespace

std::unique_ptr<BusConnection> BusConnection::open(const QString &address)
{
    DBusConnection *const connection =
        dbus_connection_open_private(address.toUtf8().constData(), nullptr);
    return connection ? std::unique_ptr<BusConnection>(new BusConnection(connection)) : nullptr;
}

BusConnection::BusConnection(DBusConnection *connection)
    : m_connection(connection)
{
    dbus_connection_set_exit_on_disconnect(m_connection, FALSE);
    dbus_connection_set_max_received_size(m_connection, readAhead);
    if (!dbus_connection_set_watch_functions(m_connection, addWatch, removeWatch, nullptr, this,
                                             nullptr))
        qBadAlloc();
    m_registration = send(busCall("Hello"));
}

BusConnection::~BusConnection()
{
    dbus_connection_close(m_connection);
    dbus_connection_set_watch_functions(m_connection, nullptr, nullptr, nullptr, nullptr, nullptr);
    dbus_connection_unref(m_connection);
}

dbus_bool_t BusConnection::addWatch(DBusWatch *watch, void *self)
{
    static_cast<BusConnection *>(self)->m_watches.push_back(watch);
    return TRUE;
}

void BusConnection::removeWatch(DBusWatch *watch, void *self)
{
    std::erase(static_cast<BusConnection *>(self)->m_watches, watch);
}

bool BusConnection::isOpen() const
{
    return dbus_connection_get_is_connected(m_connection);
}

std::vector<pollfd> BusConnection::awaited() const
{
    std::vector<pollfd> result;
    for (DBusWatch *const watch : m_watches) {
        if (dbus_watch_get_enabled(watch))
            result.push_back(
                {dbus_watch_get_unix_fd(watch), pollEvents(dbus_watch_get_flags(watch)), 0});
    }
    return result;
}

void BusConnection::handle(const std::vector<pollfd> &ready)
{
    // A watch may be removed while another is handled.
    const std::vector<DBusWatch *> watches = m_watches;
    for (DBusWatch *const watch : watches) {
        for (const pollfd &one : ready) {
            if (one.revents == 0 ||
                std::find(m_watches.begin(), m_watches.end(), watch) == m_watches.end() ||
                !dbus_watch_get_enabled(watch) || dbus_watch_get_unix_fd(watch) != one.fd ||
                pollEvents(dbus_watch_get_flags(watch)) != one.events)
                continue;
            dbus_watch_handle(watch, watchFlags(one.revents));
        }
    }
}

BusMessage BusConnection::takeMessage()
{
    while (BusMessage message{dbus_connection_pop_message(m_connection)}) {
        if (dbus_message_get_reply_serial(message.get()) == m_registration && !isRegistered())
            noteName(message.get());
        else if (dbus_message_get_type(message.get()) == DBUS_MESSAGE_TYPE_METHOD_CALL)
            refuse(message.get());
        else if (!isOwn(message.get()))
            return message;
    }
    return nullptr;
}

/// Nothing here can be called, and whoever tries is not left waiting; unless the bus does not take
/// what we send, for then the answers of a flood of calls would pile up.
void BusConnection::refuse(DBusMessage *call)
{
    if (dbus_message_get_no_reply(call) || dbus_connection_has_messages_to_send(m_connection))
        return;
    if (const BusMessage error{
            dbus_message_new_error(call, DBUS_ERROR_UNKNOWN_METHOD, "Nothing can be called here.")})
        send(error);
}

/// The bus echoes our own signals.
bool BusConnection::isOwn(DBusMessage *message) const
{
    const char *const sender = dbus_message_get_sender(message);
    return sender && isRegistered() && m_name == sender;
}

void BusConnection::noteName(DBusMessage *answer)
{
    const char *name = nullptr;
    if (dbus_message_get_type(answer) == DBUS_MESSAGE_TYPE_METHOD_RETURN &&
        dbus_message_get_args(answer, nullptr, DBUS_TYPE_STRING, &name, DBUS_TYPE_INVALID))
        m_name = name;
    else
        dbus_connection_close(m_connection);
}

quint32 BusConnection::send(const BusMessage &message)
{
    dbus_uint32_t serial = 0;
    if (!dbus_connection_send(m_connection, message.get(), &serial))
        qBadAlloc();
    return serial;
}

BusMessage BusConnection::busCall(const char *method)
{
    BusMessage message(dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS,
                                                    DBUS_INTERFACE_DBUS, method));
    if (!message)
        qBadAlloc();
    return message;
}

} // namespace tarnwell::desktop
