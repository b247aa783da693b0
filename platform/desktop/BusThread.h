#pragma once

#include "desktop/NotificationInbox.h"

#include <functional>
#include <memory>

namespace tarnwell::desktop {

/// The thread that talks with a message bus, so that a bus that is slow, silent or flooded holds up
/// nobody else. What it receives goes into an inbox; while that is full it reads nothing.
class BusThread
{
public:
    enum class Event {
        Joined, ///< the bus delivers to us from now on
        NoBus,  ///< nobody listens there, or nobody answers; what was to be sent is dropped
        Gone    ///< it was joined, and went away
    };

    /// The handler is called from the thread, which it must not hold up, and never after the
    /// destructor has begun.
    BusThread(std::shared_ptr<NotificationInbox> inbox, std::function<void(Event)> handler);

    /// Waits for a second at most until the bus has what was sent.
    ~BusThread();
    Q_DISABLE_COPY_MOVE(BusThread)

    /// Joins a bus unless one is joined. An event tells how it went.
    void join(const QString &address);

    /// The same, and then sends a notification. Of those that wait for a bus, the latest few are
    /// kept.
    void send(const NotificationEnvelope &envelope, const QString &address);

private:
    struct Shared;
    class Loop;

    void start();

    std::shared_ptr<Shared> m_shared; ///< the thread's too: nobody can end it while it connects
    bool m_isStarted = false;
};

} // namespace tarnwell::desktop
