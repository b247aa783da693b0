#pragma once

#include "ports/NotificationCenter.h"

#include <QList>

#include <functional>
#include <memory>

namespace tarnwell::desktop {

/// How much of a notification somebody wants to hear.
enum class Interest {
    None,
    Merged, ///< that there was one
    Each
};

/// What is observed, apart from who observes it. A value, for other threads too.
class Interests
{
public:
    struct Subject
    {
        QString name;
        std::optional<QString> object;
        bool merges = false;
    };

    Interests() = default;
    explicit Interests(const QList<Subject> &subjects)
        : m_subjects(subjects)
    {}

    Interest in(const QString &name, const QString &object) const;

private:
    QList<Subject> m_subjects;
};

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

    /// The same for an observer that takes all that wait for one.
    [[nodiscard]] std::unique_ptr<ports::Observation> addMerging(const QString &name,
                                                                 std::function<void()> handler);

    bool isEmpty() const;
    Interests interests() const;

    /// Called each time when an observer came or went.
    void setChangeHandler(std::function<void()> handler);

    /// Calls, in the order of their registration, the observers of this name and object.
    void deliver(const ports::Notification &notification) const;

private:
    struct Observer;
    struct State;
    class Registration;

    std::unique_ptr<ports::Observation> add(std::shared_ptr<Observer> observer);

    std::shared_ptr<State> m_state;
};

} // namespace tarnwell::desktop
