#include "desktop/BusThread.h"

#include "desktop/BusConnection.h"
#include "desktop/FileSystemIds.h"
#include "foundation/UniqueFd.h"

#include <sys/eventfd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace tarnwell::desktop {

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char *signalPath = "/com/varnit/DistributedNotifications";
constexpr const char *signalInterface = "com.varnit.DistributedNotifications";
constexpr const char *signalName = "Posted";

/// How long a bus may take to let us in.
constexpr std::chrono::seconds patience{5};
/// How long the end waits for the bus to have what was sent.
constexpr std::chrono::milliseconds lastPatience{1000};
/// How long it waits when nothing is left to send.
constexpr std::chrono::milliseconds connectPatience{100};
/// The most that waits for a bus.
constexpr size_t maximumOutgoing = 256;

/// No signature: one that is not ours is to be seen and logged.
BusMessage subscription()
{
    BusMessage message = BusConnection::busCall("AddMatch");
    const QByteArray rule = QByteArray("type='signal',path='") + signalPath + "',interface='" +
                            signalInterface + "',member='" + signalName + '\'';
    const char *const text = rule.constData();
    if (!dbus_message_append_args(message.get(), DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID))
        qBadAlloc();
    return message;
}

BusMessage signalOf(const NotificationEnvelope &envelope)
{
    BusMessage message(dbus_message_new_signal(signalPath, signalInterface, signalName));
    const QByteArray name = envelope.name.toUtf8();
    const QByteArray object = envelope.object.toUtf8();
    const char *const texts[] = {name.constData(), object.constData(),
                                 envelope.userInfoText.constData()};
    if (!message ||
        !dbus_message_append_args(message.get(), DBUS_TYPE_STRING, &texts[0], DBUS_TYPE_STRING,
                                  &texts[1], DBUS_TYPE_STRING, &texts[2], DBUS_TYPE_INVALID))
        qBadAlloc();
    return message;
}

bool isNotification(DBusMessage *message)
{
    return dbus_message_is_signal(message, signalInterface, signalName) &&
           dbus_message_has_path(message, signalPath);
}

void takeIn(DBusMessage *message, NotificationInbox &inbox)
{
    const char *name = nullptr;
    const char *object = nullptr;
    const char *userInfo = nullptr;
    if (!dbus_message_has_signature(message, "sss") ||
        !dbus_message_get_args(message, nullptr, DBUS_TYPE_STRING, &name, DBUS_TYPE_STRING, &object,
                               DBUS_TYPE_STRING, &userInfo, DBUS_TYPE_INVALID)) {
        inbox.noteMalformed(Malformation::Arguments);
        return;
    }
    if (std::strlen(name) + std::strlen(object) + std::strlen(userInfo) >
        size_t(maximumNotificationText)) {
        inbox.noteMalformed(Malformation::Size);
        return;
    }
    inbox.take({QString::fromUtf8(name), QString::fromUtf8(object), QByteArray(userInfo)});
}

} // namespace

struct BusThread::Shared
{
    std::shared_ptr<NotificationInbox> inbox;
    foundation::UniqueFd wake{::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};

    std::mutex mutex;
    std::condition_variable ended;
    std::function<void(Event)> handler;
    QString address; ///< of a bus that is to be joined; empty when none is
    std::deque<NotificationEnvelope> outgoing;
    bool isUnconfirmed = false; ///< the bus has not said that it has all that was to be sent
    bool isEnding = false;
    bool hasEnded = false;

    void wakeUp() const { ::eventfd_write(wake.get(), 1); }

    void tell(Event event)
    {
        const std::scoped_lock lock(mutex);
        if (handler)
            handler(event);
    }
};

/// What the thread does.
class BusThread::Loop
{
public:
    explicit Loop(const std::shared_ptr<Shared> &shared)
        : m_shared(shared)
    {}

    void run()
    {
        const OwnIds reachTheOwnBus;
        while (takeOrders()) {
            wait();
            // What a bus that is gone has sent is read first.
            if (readMessages())
                noteLoss();
        }
        m_connection.reset();
        const std::scoped_lock lock(m_shared->mutex);
        m_shared->hasEnded = true;
        m_shared->ended.notify_all();
    }

private:
    /// False when there is nothing left to do.
    bool takeOrders()
    {
        std::unique_lock lock(m_shared->mutex);
        const QString address = std::exchange(m_shared->address, {});
        if (m_shared->isEnding) {
            if (!m_end)
                m_end = Clock::now() + lastPatience;
            if (!m_shared->isUnconfirmed || Clock::now() >= *m_end)
                return false;
        }
        if (!m_connection && !address.isEmpty()) {
            lock.unlock();
            connect(address);
            lock.lock();
        }
        if (!m_connection) {
            m_shared->outgoing.clear();
            m_shared->isUnconfirmed = false;
            return !m_shared->isEnding;
        }
        if (m_isJoined && !m_shared->outgoing.empty()) {
            for (const NotificationEnvelope &envelope : m_shared->outgoing)
                m_connection->send(signalOf(envelope));
            m_shared->outgoing.clear();
            // The bus handles our messages in their order: its answer tells that it has the
            // others, even if this process ends next.
            m_lastPing = m_connection->send(BusConnection::busCall("GetId"));
        }
        return true;
    }

    void connect(const QString &address)
    {
        m_connection = BusConnection::open(address);
        if (!m_connection) {
            m_shared->tell(Event::NoBus);
            return;
        }
        m_subscription = m_connection->send(subscription());
        m_deadline = Clock::now() + patience;
    }

    void wait()
    {
        std::vector<pollfd> awaited;
        if (m_connection)
            awaited = m_connection->awaited();
        awaited.push_back({m_shared->wake.get(), POLLIN, 0});
        ::poll(awaited.data(), awaited.size(), timeLeft());
        if (awaited.back().revents != 0) {
            eventfd_t count = 0;
            ::eventfd_read(m_shared->wake.get(), &count);
        }
        awaited.pop_back();
        if (m_connection)
            m_connection->handle(awaited);
    }

    /// Until the next deadline, in milliseconds as poll() takes them.
    int timeLeft() const
    {
        std::optional<Clock::time_point> next = m_end;
        if (m_connection && !m_isJoined && (!next || m_deadline < *next))
            next = m_deadline;
        if (!next)
            return -1;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*next - Clock::now());
        return int(std::max<qint64>(left.count(), 0));
    }

    /// False when there may be more than there is room for.
    bool readMessages()
    {
        while (m_connection) {
            // At the end only the bus's answers count, and nobody makes room any more.
            if (!m_end && m_shared->inbox->isFull())
                return false;
            const BusMessage message = m_connection->takeMessage();
            if (!message)
                break;
            if (!isNotification(message.get()))
                noteAnswer(message.get());
            else if (!m_end)
                takeIn(message.get(), *m_shared->inbox);
        }
        return true;
    }

    void noteAnswer(DBusMessage *message)
    {
        const quint32 number = dbus_message_get_reply_serial(message);
        if (number == 0)
            return;
        if (number == m_lastPing) {
            const std::scoped_lock lock(m_shared->mutex);
            m_shared->isUnconfirmed = !m_shared->outgoing.empty();
        }
        if (number != m_subscription || m_isJoined)
            return;
        m_isJoined = dbus_message_get_type(message) != DBUS_MESSAGE_TYPE_ERROR;
        if (m_isJoined)
            m_shared->tell(Event::Joined);
        else
            leave(Event::NoBus);
    }

    void leave(Event event)
    {
        m_connection.reset();
        m_isJoined = false;
        m_shared->tell(event);
    }

    void noteLoss()
    {
        if (!m_connection)
            return;
        const bool isLate = !m_isJoined && Clock::now() >= m_deadline;
        if (m_connection->isOpen() && !isLate)
            return;
        leave(m_isJoined ? Event::Gone : Event::NoBus);
    }

    const std::shared_ptr<Shared> m_shared;
    std::unique_ptr<BusConnection> m_connection;
    Clock::time_point m_deadline; ///< for the bus to let us in
    std::optional<Clock::time_point> m_end;
    bool m_isJoined = false;
    quint32 m_subscription = 0;
    quint32 m_lastPing = 0;
};

BusThread::BusThread(std::shared_ptr<NotificationInbox> inbox, std::function<void(Event)> handler)
    : m_shared(std::make_shared<Shared>())
{
    m_shared->inbox = std::move(inbox);
    m_shared->handler = std::move(handler);
    // The inbox may outlive this object, but not the thread's half of it.
    m_shared->inbox->setRoomHandler([shared = std::weak_ptr<Shared>(m_shared)] {
        if (const auto present = shared.lock())
            present->wakeUp();
    });
}

BusThread::~BusThread()
{
    std::unique_lock lock(m_shared->mutex);
    m_shared->handler = nullptr;
    m_shared->isEnding = true;
    if (!m_isStarted)
        return;
    m_shared->wakeUp();
    // A thread that still connects is left alone.
    const auto limit = m_shared->isUnconfirmed ? lastPatience : connectPatience;
    m_shared->ended.wait_for(lock, limit, [this] { return m_shared->hasEnded; });
}

void BusThread::start()
{
    if (!std::exchange(m_isStarted, true))
        std::thread([shared = m_shared] { Loop(shared).run(); }).detach();
    m_shared->wakeUp();
}

void BusThread::join(const QString &address)
{
    {
        const std::scoped_lock lock(m_shared->mutex);
        m_shared->address = address;
    }
    start();
}

void BusThread::send(const NotificationEnvelope &envelope, const QString &address)
{
    {
        const std::scoped_lock lock(m_shared->mutex);
        m_shared->address = address;
        m_shared->outgoing.push_back(envelope);
        m_shared->isUnconfirmed = true;
        if (m_shared->outgoing.size() > maximumOutgoing)
            m_shared->outgoing.pop_front();
    }
    start();
}

} // namespace tarnwell::desktop
