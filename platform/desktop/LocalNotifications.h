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
    /// Nothing ever waits here, so that there is nothing to merge.
    [[nodiscard]] std::unique_ptr<ports::Observation>
    addMergingObserver(const QString &name, std::function<void()> handler) override;
    void post(const ports::Notification &notification) override;

private:
    ObserverList m_observers;
};

} // namespace tarnwell::desktop
