#pragma once

#include "desktop/NotificationMessage.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <memory>
#include <optional>

namespace tarnwell::ports {
class Timer;
class Timers;
} // namespace tarnwell::ports

namespace tarnwell::desktop {

/// The way of notifications over a D-Bus message bus: signals of one path, interface and name.
///
/// The connection is this object's own. When the bus goes away it says so once, and it looks for
/// the bus again after a second, two, four and so on up to half a minute.
class NotificationBus final : public QObject
{
    Q_OBJECT

public:
    /// An empty address stands for the user's session bus. Nothing is connected yet.
    NotificationBus(ports::Timers &timers, const QString &address);
    ~NotificationBus() override;

    /// Joins the bus from the event loop, a moment later so that a window can be mapped first, and
    /// from then on stays joined as well as it can.
    void joinSoon();

    /// Sends a notification, on a bus that has it when the call returns; joins it if need be.
    /// False when there is no bus.
    bool send(const NotificationEnvelope &envelope);

Q_SIGNALS:
    /// The bus delivers to us from now on; what was sent before is missed.
    void joined();

    /// Somebody else's signal.
    void received(const QVariantList &arguments);

private Q_SLOTS:
    void takeSignal(const QDBusMessage &message);
    void noteDisconnected();

private:
    bool join();
    void leave();
    void awaitAnswer();
    void scheduleJoin(double seconds);
    void tryAgainLater();
    QString address() const;

    ports::Timers &m_timers;
    QString m_address;
    QString m_connectionName;
    std::optional<QDBusConnection> m_connection;
    std::unique_ptr<ports::Timer> m_joinTimer;
    double m_retryInterval;
    bool m_staysJoined = false;
    bool m_isAway = false; ///< and the log says so
};

} // namespace tarnwell::desktop
