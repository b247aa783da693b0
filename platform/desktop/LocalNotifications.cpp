#include "desktop/LocalNotifications.h"

namespace tarnwell::desktop {

std::unique_ptr<ports::Observation>
LocalNotifications::addObserver(const QString &name, const std::optional<QString> &object,
                                Handler handler)
{
    return m_observers.add(name, object, std::move(handler));
}

std::unique_ptr<ports::Observation>
LocalNotifications::addMergingObserver(const QString &name, std::function<void()> handler)
{
    return m_observers.addMerging(name, std::move(handler));
}

void LocalNotifications::post(const ports::Notification &notification)
{
    m_observers.deliver(notification);
}

} // namespace tarnwell::desktop
