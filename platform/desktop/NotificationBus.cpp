#include "desktop/NotificationBus.h"

#include "desktop/SessionBus.h"
#include "foundation/Logging.h"
#include "ports/Timers.h"

#include <utility>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr double joinDelay = 0.05;
constexpr double firstRetryInterval = 1.0;
constexpr double longestRetryInterval = 30.0;

} // namespace

NotificationBus::NotificationBus(ports::Timers &timers, std::shared_ptr<NotificationInbox> inbox,
                                 const QString &address)
    : m_timers(timers)
    , m_address(address)
    , m_retryInterval(firstRetryInterval)
    , m_thread(std::move(inbox), [this](BusThread::Event event) {
        QMetaObject::invokeMethod(
            this, [this, event] { handle(event); }, Qt::QueuedConnection);
    })
{}

NotificationBus::~NotificationBus() = default;

QString NotificationBus::address() const
{
    return m_address.isEmpty() ? sessionBusAddress() : m_address;
}

void NotificationBus::joinSoon()
{
    m_staysJoined = true;
    if (!m_isJoined && !m_joinTimer)
        scheduleJoin(joinDelay);
}

void NotificationBus::scheduleJoin(double seconds)
{
    m_joinTimer = m_timers.scheduleOnce(seconds, [this] {
        m_joinTimer.reset();
        if (m_isJoined)
            return;
        const QString busAddress = address();
        if (busAddress.isEmpty())
            handle(BusThread::Event::NoBus);
        else
            m_thread.join(busAddress);
    });
}

void NotificationBus::tryAgainLater()
{
    if (!m_staysJoined || m_joinTimer)
        return;
    scheduleJoin(m_retryInterval);
    m_retryInterval = qMin(m_retryInterval * 2, longestRetryInterval);
}

void NotificationBus::noteAway(const QString &message)
{
    if (!std::exchange(m_isAway, true))
        TARNWELL_SYSTEM_LOG(message);
    tryAgainLater();
}

void NotificationBus::handle(BusThread::Event event)
{
    m_isJoined = event == BusThread::Event::Joined;
    switch (event) {
    case BusThread::Event::Joined:
        m_retryInterval = firstRetryInterval;
        if (std::exchange(m_isAway, false))
            TARNWELL_SYSTEM_LOG(u"The session bus is back."_s);
        Q_EMIT joined();
        return;
    case BusThread::Event::NoBus:
        noteAway(u"There is no session bus: notifications stay within this process."_s);
        return;
    case BusThread::Event::Gone:
        noteAway(u"The session bus went away: notifications stay within this process until it is "
                 "back."_s);
    }
}

void NotificationBus::send(const NotificationEnvelope &envelope)
{
    const QString busAddress = address();
    if (busAddress.isEmpty() && !m_isJoined)
        handle(BusThread::Event::NoBus);
    else
        m_thread.send(envelope, busAddress);
}

} // namespace tarnwell::desktop
