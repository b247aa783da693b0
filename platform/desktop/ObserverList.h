#pragma once

#include "ports/NotificationCenter.h"

#include <QList>

#include <memory>

namespace tarnwell::desktop {

/// Who observes what. Handlers may add and remove observers, their own among them, while they are
/// called: one that is removed is not called any more, one that is added not yet.
class ObserverList
{
public:
    ObserverList();
    ~ObserverList();
    Q_DISABLE_COPY_MOVE(ObserverList)

    /// Keeps the handler until the observation is destroyed, which may also be later than the list.
    [[nodiscard]] std::unique_ptr<ports::Observation>
    add(const QString &name, const std::optional<QString> &object,
        ports::NotificationCenter::Handler handler);

    bool isEmpty() const;
    bool hasObserver(const QString &name, const QString &object) const;

    /// Calls, in the order of their registration, the observers of this name and object.
    void deliver(const ports::Notification &notification) const;

private:
    struct Observer;
    using Observers = QList<std::shared_ptr<Observer>>;
    class Registration;

    std::shared_ptr<Observers> m_observers;
};

} // namespace tarnwell::desktop
