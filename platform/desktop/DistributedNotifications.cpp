#include "desktop/DistributedNotifications.h"

#include "foundation/Logging.h"

#include <QElapsedTimer>

#include <algorithm>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

/// How many times as long as a handler took the loop is left to others, and how long at most, in
/// milliseconds.
constexpr qint64 breathingSpace = 3;
constexpr qint64 longestPause = 100;

/// The first of a kind is logged, and then every hundred times as many: one line a flood.
constexpr quint64 loggedGrowth = 100;

} // namespace

DistributedNotifications::DistributedNotifications(ports::Timers &timers, const QString &busAddress)
    : m_inbox(std::make_shared<NotificationInbox>())
    , m_bus(timers, m_inbox, busAddress)
{
    m_delivery.setSingleShot(true);
    connect(&m_delivery, &QTimer::timeout, this, &DistributedNotifications::deliverNext);
    // A timer comes after all the events that wait already.
    m_inbox->setWakeUp([this] {
        QMetaObject::invokeMethod(
            this, [this] { m_delivery.start(0); }, Qt::QueuedConnection);
    });
    m_observers.setChangeHandler([this] { m_inbox->setInterests(m_observers.interests()); });
    connect(&m_bus, &NotificationBus::joined, this, [this] {
        if (m_missedNotifications && !m_observers.isEmpty())
            m_missedNotifications();
    });
}

DistributedNotifications::~DistributedNotifications()
{
    m_inbox->setWakeUp({}); // the thread may go on for a moment
}

std::unique_ptr<ports::Observation>
DistributedNotifications::addObserver(const QString &name, const std::optional<QString> &object,
                                      Handler handler)
{
    m_bus.joinSoon();
    return m_observers.add(name, object, std::move(handler));
}

std::unique_ptr<ports::Observation>
DistributedNotifications::addMergingObserver(const QString &name, std::function<void()> handler)
{
    m_bus.joinSoon();
    return m_observers.addMerging(name, std::move(handler));
}

void DistributedNotifications::post(const ports::Notification &notification)
{
    m_inbox->post(notification);
    const NotificationEnvelope envelope = envelopeFor(notification);
    // What every receiver would drop need not travel.
    if (envelope.size() > maximumNotificationText)
        m_inbox->noteMalformed(Malformation::Size);
    else
        m_bus.send(envelope);
}

void DistributedNotifications::setMissedNotificationsHandler(std::function<void()> handler)
{
    m_missedNotifications = std::move(handler);
}

void DistributedNotifications::noteMalformed()
{
    const NotificationInbox::MalformedCounts counts = m_inbox->malformedCounts();
    for (size_t kind = 0; kind < counts.size(); ++kind) {
        quint64 next = 1;
        while (next <= m_knownMalformed[kind])
            next *= loggedGrowth;
        if (counts[kind] >= next)
            noteMalformed(Malformation(kind), counts[kind]);
    }
    m_knownMalformed = counts;
}

void DistributedNotifications::noteMalformed(Malformation malformation, quint64 count)
{
    const auto reason = [malformation] {
        switch (malformation) {
        case Malformation::Arguments:
            return u"its arguments are not three strings"_s;
        case Malformation::UserInfo:
            return u"its user info is no property-list dictionary"_s;
        case Malformation::Size:
            break;
        }
        return u"it is too large"_s;
    };
    TARNWELL_SYSTEM_LOG(u"A notification is dropped, %1 (%2 so far)."_s.arg(reason()).arg(count));
}

void DistributedNotifications::deliverNext()
{
    noteMalformed();
    const std::optional<ports::Notification> next = m_inbox->takeFirst();
    if (!next)
        return;
    // A handler may run an event loop of its own, which then delivers the rest.
    m_delivery.start(0);
    QElapsedTimer timer;
    timer.start();
    m_observers.deliver(*next);
    m_delivery.start(int(std::min(breathingSpace * timer.elapsed(), longestPause)));
}

} // namespace tarnwell::desktop
