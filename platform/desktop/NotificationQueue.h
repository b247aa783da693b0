#pragma once

#include "ports/NotificationCenter.h"

#include <QHash>

#include <deque>
#include <utility>

namespace tarnwell::desktop {

/// Notifications that wait for their delivery, first in, first out. One that says what the last
/// waiting one of its name and object says already is left out; a change and its undoing stay two.
class NotificationQueue
{
public:
    /// Whether the notification was added, and not left out. The cost is what it counts for as
    /// long as it waits.
    bool append(const ports::Notification &notification, qsizetype cost = 0);

    /// Whether the last waiting one of its name and object says the same.
    bool contains(const ports::Notification &notification) const;

    bool isEmpty() const { return m_waiting.empty(); }
    qsizetype size() const { return qsizetype(m_waiting.size()); }
    qsizetype cost() const { return m_cost; } ///< of all that wait

    /// Must not be called on an empty queue.
    ports::Notification takeFirst();

private:
    using Subject = std::pair<QString, QString>;

    struct Entry
    {
        ports::Notification notification;
        qsizetype cost;
    };

    static Subject subjectOf(const ports::Notification &notification);

    std::deque<Entry> m_waiting;
    qsizetype m_cost = 0;
    quint64 m_firstNumber = 0;              ///< the number of m_waiting's first notification
    QHash<Subject, quint64> m_latestNumber; ///< of each subject that waits
};

} // namespace tarnwell::desktop
