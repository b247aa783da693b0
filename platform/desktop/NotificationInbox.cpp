#include "desktop/NotificationInbox.h"

#include <utility>

namespace tarnwell::desktop {

void NotificationInbox::setWakeUp(std::function<void()> wakeUp)
{
    const std::scoped_lock lock(m_mutex);
    m_wakeUp = std::move(wakeUp);
}

void NotificationInbox::setRoomHandler(std::function<void()> thereIsRoom)
{
    const std::scoped_lock lock(m_mutex);
    m_thereIsRoom = std::move(thereIsRoom);
}

void NotificationInbox::setInterests(const Interests &interests)
{
    const std::scoped_lock lock(m_mutex);
    m_interests = interests;
}

void NotificationInbox::take(const NotificationEnvelope &envelope)
{
    const ports::Notification merged{envelope.name, {}, {}};
    Interest interest = Interest::None;
    {
        const std::scoped_lock lock(m_mutex);
        interest = m_interests.in(envelope.name, envelope.object);
        // The user info of what nobody here wants to hear is not even read.
        if (interest == Interest::None ||
            (interest == Interest::Merged && m_queue.contains(merged)))
            return;
    }
    const auto read = notificationOf(envelope);
    if (const auto *const malformation = std::get_if<Malformation>(&read)) {
        noteMalformed(*malformation);
        return;
    }
    const std::scoped_lock lock(m_mutex);
    if (interest == Interest::Merged)
        put(merged, 0);
    else
        put(std::get<ports::Notification>(read), envelope.size());
}

void NotificationInbox::noteMalformed(Malformation malformation)
{
    const std::scoped_lock lock(m_mutex);
    ++m_malformed[size_t(malformation)];
    wakeUp();
}

void NotificationInbox::post(const ports::Notification &notification)
{
    const std::scoped_lock lock(m_mutex);
    switch (m_interests.in(notification.name, notification.object)) {
    case Interest::None:
        return;
    case Interest::Merged:
        put({notification.name, {}, {}}, 0);
        return;
    case Interest::Each:
        put(notification, 0);
    }
}

void NotificationInbox::put(const ports::Notification &notification, qsizetype cost)
{
    if (m_queue.append(notification, cost))
        wakeUp();
}

void NotificationInbox::wakeUp()
{
    if (!std::exchange(m_isAwake, true) && m_wakeUp)
        m_wakeUp();
}

bool NotificationInbox::isFull()
{
    const std::scoped_lock lock(m_mutex);
    m_readerWaits = m_queue.size() >= maximumSize || m_queue.cost() >= maximumCost;
    return m_readerWaits;
}

std::optional<ports::Notification> NotificationInbox::takeFirst()
{
    const std::scoped_lock lock(m_mutex);
    if (m_queue.isEmpty()) {
        m_isAwake = false;
        return std::nullopt;
    }
    std::optional<ports::Notification> first = m_queue.takeFirst();
    const bool hasRoom = m_queue.size() <= maximumSize / 2 && m_queue.cost() <= maximumCost / 2;
    if (hasRoom && std::exchange(m_readerWaits, false) && m_thereIsRoom)
        m_thereIsRoom();
    return first;
}

bool NotificationInbox::isEmpty() const
{
    const std::scoped_lock lock(m_mutex);
    return m_queue.isEmpty();
}

NotificationInbox::MalformedCounts NotificationInbox::malformedCounts() const
{
    const std::scoped_lock lock(m_mutex);
    return m_malformed;
}

} // namespace tarnwell::desktop
