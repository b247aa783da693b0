#pragma once

#include "desktop/ObserverList.h"

namespace tarnwell::desktop {

/// The centre within the process: post() calls the handlers before it returns.
class LocalNotifications final : public ports::NotificationCenter
{
public:
    [[nodiscard]] std::unique_ptr<ports::Observation>
    addObserver(const QString &name, const std::optional<QString> &object,
                Handler handler) override;
    void post(const ports::Notification &notification) override;

private:
    ObserverList m_observers;
};

} // namespace tarnwell::desktop
