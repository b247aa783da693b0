#include "desktop/DistributedNotifications.h"

#include "foundation/Logging.h"

#include <bit>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

DistributedNotifications::DistributedNotifications(ports::Timers &timers, const QString &busAddress)
    : m_bus(timers, busAddress)
{
    connect(&m_bus, &NotificationBus::received, this, &DistributedNotifications::takeArguments);
    // A timer comes after all the events that wait already, and so after the whole of a burst.
    m_delivery.setSingleShot(true);
    m_delivery.setInterval(0);
    connect(&m_delivery, &QTimer::timeout, this, &DistributedNotifications::deliverWaiting);
    connect(&m_bus, &NotificationBus::joined, this, [this] {
        if (m_missedNotifications && !m_observers.isEmpty())
            m_missedNotifications();
    });
}

std::unique_ptr<ports::Observation>
DistributedNotifications::addObserver(const QString &name, const std::optional<QString> &object,
                                      Handler handler)
{
    m_bus.joinSoon();
    return m_observers.add(name, object, std::move(handler));
}

void DistributedNotifications::post(const ports::Notification &notification)
{
    enqueue(notification);
    const NotificationEnvelope envelope = envelopeFor(notification);
    // What every receiver would drop need not travel.
    if (envelope.name.size() + envelope.object.size() + envelope.userInfoText.size() >
        maximumNotificationText) {
        noteMalformed(Malformation::Size);
        return;
    }
    m_bus.send(envelope);
}

void DistributedNotifications::setMissedNotificationsHandler(std::function<void()> handler)
{
    m_missedNotifications = std::move(handler);
}

void DistributedNotifications::takeArguments(const QVariantList &arguments)
{
    const auto envelope = envelopeOf(arguments);
    if (const auto *const malformation = std::get_if<Malformation>(&envelope)) {
        noteMalformed(*malformation);
        return;
    }
    const auto &read = std::get<NotificationEnvelope>(envelope);
    // The user info of what nobody here wants to hear is not even read.
    if (!m_observers.hasObserver(read.name, read.object))
        return;
    const auto notification = notificationOf(read);
    if (const auto *const malformation = std::get_if<Malformation>(&notification))
        noteMalformed(*malformation);
    else
        enqueue(std::get<ports::Notification>(notification));
}

/// Logs the first of a kind, the second, the fourth and so on, so that a sender gone wild does not
/// fill the log.
void DistributedNotifications::noteMalformed(Malformation malformation)
{
    const quint64 count = ++m_malformedCounts[size_t(malformation)];
    if (!std::has_single_bit(count))
        return;
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

void DistributedNotifications::enqueue(const ports::Notification &notification)
{
    if (m_queue.append(notification))
        m_delivery.start();
}

void DistributedNotifications::deliverWaiting()
{
    // What handlers post waits for the next turn.
    for (qsizetype left = m_queue.size(); left > 0 && !m_queue.isEmpty(); --left) {
        const ports::Notification notification = m_queue.takeFirst();
        // A handler may run an event loop of its own, which then delivers the rest.
        if (!m_queue.isEmpty())
            m_delivery.start();
        m_observers.deliver(notification);
    }
    if (m_queue.isEmpty())
        m_delivery.stop();
}

} // namespace tarnwell::desktop
