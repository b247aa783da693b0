#pragma once

#include "desktop/NotificationBus.h"
#include "desktop/NotificationQueue.h"
#include "desktop/ObserverList.h"

#include <QObject>
#include <QTimer>

#include <array>

namespace tarnwell::desktop {

/// The centre between processes, over the session bus. Without a bus it serves this process alone.
///
/// Handlers are called from the event loop, for this process's own notifications, too. Equal
/// notifications that wait for the same turn of the loop are delivered once, so that a burst costs
/// its observers little. The bus is joined at the first need: a moment after the first observer, or
/// at the first post().
class DistributedNotifications final : public QObject, public ports::NotificationCenter
{
    Q_OBJECT

public:
    /// An empty address stands for the user's session bus. The timers must outlive the centre.
    explicit DistributedNotifications(ports::Timers &timers, const QString &busAddress = {});

    [[nodiscard]] std::unique_ptr<ports::Observation>
    addObserver(const QString &name, const std::optional<QString> &object,
                Handler handler) override;

    /// Has the bus have the notification before it returns. User info must be a dictionary or null.
    void post(const ports::Notification &notification) override;

    /// Called from the event loop each time the bus was joined while somebody observes: at first,
    /// and when it is back after it went away. What others posted until then is missed, so that the
    /// observers' owner may want to look for itself.
    void setMissedNotificationsHandler(std::function<void()> handler);

private:
    void takeArguments(const QVariantList &arguments);
    void noteMalformed(Malformation malformation);
    void enqueue(const ports::Notification &notification);
    void deliverWaiting();

    ObserverList m_observers;
    NotificationQueue m_queue;
    QTimer m_delivery;
    std::function<void()> m_missedNotifications;
    std::array<quint64, 3> m_malformedCounts{};
    NotificationBus m_bus;
};

} // namespace tarnwell::desktop
