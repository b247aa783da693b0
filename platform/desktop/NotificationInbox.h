#pragma once

#include "desktop/NotificationMessage.h"
#include "desktop/NotificationQueue.h"
#include "desktop/ObserverList.h"

#include <array>
#include <functional>
#include <mutex>
#include <optional>

namespace tarnwell::desktop {

/// What was received and waits for the main thread, of a bounded size.
///
/// Of what its observers merge, one of a name waits at most, so that no flood of it takes room.
/// Nothing else is dropped: when the inbox is full, the reader has to leave the rest with whoever
/// sent it until there is room again.
///
/// Every call may come from any thread.
class NotificationInbox
{
public:
    /// The wish to be emptied, called once when something comes into an inbox that nobody has
    /// been told of since takeFirst() found it empty. Called under a lock: it must only pass the
    /// word on.
    void setWakeUp(std::function<void()> wakeUp);
    /// The same for the reader that found it full: half of the room is free again.
    void setRoomHandler(std::function<void()> thereIsRoom);

    void setInterests(const Interests &interests);

    /// Takes in what a stranger sent, if anybody wants to hear it.
    void take(const NotificationEnvelope &envelope);
    void noteMalformed(Malformation malformation);
    /// Takes in what this process posts itself, whether there is room or not.
    void post(const ports::Notification &notification);

    bool isFull();

    std::optional<ports::Notification> takeFirst();
    bool isEmpty() const;

    /// How many malformed ones there were, by Malformation, since the beginning.
    using MalformedCounts = std::array<quint64, 3>;
    MalformedCounts malformedCounts() const;

    static constexpr qsizetype maximumSize = 256;
    static constexpr qsizetype maximumCost = 4 * maximumNotificationText;

private:
    void put(const ports::Notification &notification, qsizetype cost);
    void wakeUp();

    mutable std::mutex m_mutex;
    NotificationQueue m_queue;
    Interests m_interests;
    MalformedCounts m_malformed{};
    std::function<void()> m_wakeUp;
    std::function<void()> m_thereIsRoom;
    bool m_isAwake = false;
    bool m_readerWaits = false;
};

} // namespace tarnwell::desktop
