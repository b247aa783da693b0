#pragma once

#include "desktop/BusThread.h"

#include <QObject>

#include <memory>

namespace tarnwell::ports {
class Timer;
class Timers;
} // namespace tarnwell::ports

namespace tarnwell::desktop {

/// The way of notifications over a D-Bus message bus: signals of one path, interface and name.
///
/// Nothing here waits for the bus. When it goes away the log says so once, and it is looked for
/// again after a second, two, four and so on up to half a minute.
class NotificationBus final : public QObject
{
    Q_OBJECT

public:
    /// What others send goes into the inbox, from another thread. An empty address stands for the
    /// user's session bus. Nothing is connected yet.
    NotificationBus(ports::Timers &timers, std::shared_ptr<NotificationInbox> inbox,
                    const QString &address);
    /// Waits up to a second for the bus to have what was sent.
    ~NotificationBus() override;

    /// Joins the bus from the event loop, a moment later so that a window can be mapped first, and
    /// from then on stays joined as well as it can.
    void joinSoon();

    /// Sends a notification; joins the bus if need be. Nobody hears it when there is no bus.
    void send(const NotificationEnvelope &envelope);

Q_SIGNALS:
    /// The bus delivers to us from now on; what was sent before is missed.
    void joined();

private:
    void handle(BusThread::Event event);
    void scheduleJoin(double seconds);
    void tryAgainLater();
    void noteAway(const QString &message);
    QString address() const;

    ports::Timers &m_timers;
    QString m_address;
    std::unique_ptr<ports::Timer> m_joinTimer;
    double m_retryInterval;
    bool m_isJoined = false;
    bool m_staysJoined = false;
    bool m_isAway = false; ///< and the log says so
    BusThread m_thread;
};

} // namespace tarnwell::desktop
