#include "desktop/NotificationQueue.h"

namespace tarnwell::desktop {

NotificationQueue::Subject NotificationQueue::subjectOf(const ports::Notification &notification)
{
    return {notification.name, notification.object};
}

bool NotificationQueue::contains(const ports::Notification &notification) const
{
    const auto latest = m_latestNumber.constFind(subjectOf(notification));
    return latest != m_latestNumber.cend() &&
           m_waiting[size_t(*latest - m_firstNumber)].notification.userInfo ==
               notification.userInfo;
}

bool NotificationQueue::append(const ports::Notification &notification, qsizetype cost)
{
    if (contains(notification))
        return false;
    m_latestNumber.insert(subjectOf(notification), m_firstNumber + m_waiting.size());
    m_waiting.push_back({notification, cost});
    m_cost += cost;
    return true;
}

ports::Notification NotificationQueue::takeFirst()
{
    ports::Notification first = std::move(m_waiting.front().notification);
    m_cost -= m_waiting.front().cost;
    m_waiting.pop_front();
    if (const auto latest = m_latestNumber.constFind(subjectOf(first)); *latest == m_firstNumber)
        m_latestNumber.erase(latest);
    ++m_firstNumber;
    return first;
}

} // namespace tarnwell::desktop
