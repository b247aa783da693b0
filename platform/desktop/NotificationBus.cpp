#include "desktop/NotificationBus.h"

#include "desktop/SessionBus.h"
#include "foundation/Logging.h"
#include "ports/Timers.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <atomic>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

const QString signalPath = u"/com/varnit/DistributedNotifications"_s;
const QString signalInterface = u"com.varnit.DistributedNotifications"_s;
const QString signalName = u"Posted"_s;

constexpr double joinDelay = 0.05;
constexpr double firstRetryInterval = 1.0;
constexpr double longestRetryInterval = 30.0;

/// How long a bus may take to say that it has what we sent, in milliseconds.
constexpr int flushLimit = 2000;

QDBusMessage ping()
{
    return QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                          u"org.freedesktop.DBus"_s, u"GetId"_s);
}

QString unusedConnectionName()
{
    static std::atomic<int> count = 0;
    return u"tarnwell-notifications-%1"_s.arg(++count);
}

} // namespace

NotificationBus::NotificationBus(ports::Timers &timers, const QString &address)
    : m_timers(timers)
    , m_address(address)
    , m_retryInterval(firstRetryInterval)
{}

NotificationBus::~NotificationBus()
{
    leave();
}

QString NotificationBus::address() const
{
    return m_address.isEmpty() ? sessionBusAddress() : m_address;
}

void NotificationBus::joinSoon()
{
    m_staysJoined = true;
    if (!m_connection && !m_joinTimer)
        scheduleJoin(joinDelay);
}

void NotificationBus::scheduleJoin(double seconds)
{
    m_joinTimer = m_timers.scheduleOnce(seconds, [this] {
        m_joinTimer.reset();
        if (!m_connection && !join())
            tryAgainLater();
    });
}

void NotificationBus::tryAgainLater()
{
    if (!m_staysJoined || m_joinTimer)
        return;
    scheduleJoin(m_retryInterval);
    m_retryInterval = qMin(m_retryInterval * 2, longestRetryInterval);
}

bool NotificationBus::join()
{
    const QString busAddress = address();
    if (!busAddress.isEmpty()) {
        m_connectionName = unusedConnectionName();
        m_connection = QDBusConnection::connectToBus(busAddress, m_connectionName);
        if (m_connection->isConnected()) {
            // No signature: one that is not ours is to be seen and logged.
            m_connection->connect({}, signalPath, signalInterface, signalName, this,
                                  SLOT(takeSignal(QDBusMessage)));
            m_connection->connect({}, u"/org/freedesktop/DBus/Local"_s,
                                  u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s, this,
                                  SLOT(noteDisconnected()));
            awaitAnswer();
            return true;
        }
        leave();
    }
    if (!m_isAway) {
        m_isAway = true;
        TARNWELL_SYSTEM_LOG(u"There is no session bus: notifications stay within this process."_s);
    }
    return false;
}

/// The bus handles our messages in their order, so that its answer says that it knows by then what
/// we want to hear.
void NotificationBus::awaitAnswer()
{
    auto *const watcher = new QDBusPendingCallWatcher(m_connection->asyncCall(ping()), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, name = m_connectionName, watcher] {
                watcher->deleteLater();
                if (watcher->isError() || !m_connection || name != m_connectionName)
                    return;
                m_retryInterval = firstRetryInterval;
                if (std::exchange(m_isAway, false))
                    TARNWELL_SYSTEM_LOG(u"The session bus is back."_s);
                Q_EMIT joined();
            });
}

void NotificationBus::leave()
{
    if (!m_connection)
        return;
    m_connection.reset();
    QDBusConnection::disconnectFromBus(m_connectionName);
}

void NotificationBus::noteDisconnected()
{
    // The word of a connection that was left may come late.
    if (!m_connection || m_connection->isConnected())
        return;
    leave();
    if (!m_isAway) {
        m_isAway = true;
        TARNWELL_SYSTEM_LOG(u"The session bus went away: notifications stay within this process"
                            " until it is back."_s);
    }
    tryAgainLater();
}

bool NotificationBus::send(const NotificationEnvelope &envelope)
{
    if (!m_connection && !join())
        return false;
    QDBusMessage message = QDBusMessage::createSignal(signalPath, signalInterface, signalName);
    message << envelope.name << envelope.object << envelope.userInfoText;
    if (!m_connection->send(message))
        return false;
    // Sending only hands the message to another thread. Its answer to a later call tells that the
    // bus has it, even if the process ends next.
    return m_connection->call(ping(), QDBus::Block, flushLimit).type() ==
           QDBusMessage::ReplyMessage;
}

void NotificationBus::takeSignal(const QDBusMessage &message)
{
    // The bus echoes our own signals, which were delivered without it.
    if (m_connection && message.service() != m_connection->baseService())
        Q_EMIT received(message.arguments());
}

} // namespace tarnwell::desktop
