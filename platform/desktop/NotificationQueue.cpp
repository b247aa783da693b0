#include "desktop/NotificationQueue.h"

namespace tarnwell::desktop {

NotificationQueue::Subject NotificationQueue::subjectOf(const ports::Notification &notification)
{
    return {notification.name, notification.object};
}

bool NotificationQueue::append(const ports::Notification &notification)
{
    const Subject subject = subjectOf(notification);
    if (const auto latest = m_latestNumber.constFind(subject); latest != m_latestNumber.cend()) {
        if (m_waiting[size_t(*latest - m_firstNumber)].userInfo == notification.userInfo)
            return false;
    }
    m_latestNumber.insert(subject, m_firstNumber + m_waiting.size());
    m_waiting.push_back(notification);
    return true;
}

ports::Notification NotificationQueue::takeFirst()
{
    ports::Notification first = std::move(m_waiting.front());
    m_waiting.pop_front();
    if (const auto latest = m_latestNumber.constFind(subjectOf(first)); *latest == m_firstNumber)
        m_latestNumber.erase(latest);
    ++m_firstNumber;
    return first;
}

} // namespace tarnwell::desktop
