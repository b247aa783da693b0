#pragma once

#include "desktop/NotificationBus.h"
#include "desktop/NotificationInbox.h"
#include "desktop/ObserverList.h"

#include <QObject>
#include <QTimer>

namespace tarnwell::desktop {

/// The centre between processes, over the session bus. Without a bus it serves this process alone.
///
/// Handlers are called from the event loop, for this process's own notifications, too: one
/// notification a turn, and after a handler that took long the loop gets several times as long for
/// everything else. Equal notifications that wait are delivered once, so that a burst costs its
/// observers little. What others send is read by another thread and waits in an inbox of bounded
/// size; when that is full, the rest waits with the bus. The bus is joined at the first need: a
/// moment after the first observer, or at the first post().
class DistributedNotifications final : public QObject, public ports::NotificationCenter
{
    Q_OBJECT

public:
    /// An empty address stands for the user's session bus. The timers must outlive the centre.
    explicit DistributedNotifications(ports::Timers &timers, const QString &busAddress = {});
    ~DistributedNotifications() override;

    [[nodiscard]] std::unique_ptr<ports::Observation>
    addObserver(const QString &name, const std::optional<QString> &object,
                Handler handler) override;

    [[nodiscard]] std::unique_ptr<ports::Observation>
    addMergingObserver(const QString &name, std::function<void()> handler) override;

    /// Returns at once; that the bus has the notification is sure when this object is gone. User
    /// info must be a dictionary or null.
    void post(const ports::Notification &notification) override;

    /// Called from the event loop each time the bus was joined while somebody observes: at first,
    /// and when it is back after it went away. What others posted until then is missed, so that the
    /// observers' owner may want to look for itself.
    void setMissedNotificationsHandler(std::function<void()> handler);

private:
    void noteMalformed();
    void noteMalformed(Malformation malformation, quint64 count);
    void deliverNext();

    std::shared_ptr<NotificationInbox> m_inbox;
    ObserverList m_observers;
    QTimer m_delivery;
    std::function<void()> m_missedNotifications;
    NotificationInbox::MalformedCounts m_knownMalformed{};
    NotificationBus m_bus;
};

} // namespace tarnwell::desktop
