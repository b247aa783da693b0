#include "desktop/ObserverList.h"

#include <utility>

namespace tarnwell::desktop {

namespace {

bool hears(const Interests::Subject &subject, const QString &name, const QString &object)
{
    return subject.name == name && (!subject.object || *subject.object == object);
}

} // namespace

Interest Interests::in(const QString &name, const QString &object) const
{
    Interest interest = Interest::None;
    for (const Subject &subject : m_subjects) {
        if (!hears(subject, name, object))
            continue;
        if (!subject.merges)
            return Interest::Each;
        interest = Interest::Merged;
    }
    return interest;
}

struct ObserverList::Observer
{
    Interests::Subject subject;
    ports::NotificationCenter::Handler handler;
    bool removed = false;
};

struct ObserverList::State
{
    QList<std::shared_ptr<Observer>> observers;
    std::function<void()> changed;

    void noteChange() const
    {
        if (changed)
            changed();
    }
};

class ObserverList::Registration final : public ports::Observation
{
public:
    Registration(const std::shared_ptr<State> &state, std::shared_ptr<Observer> observer)
        : m_state(state)
        , m_observer(std::move(observer))
    {}
    ~Registration() override
    {
        m_observer->removed = true;
        const std::shared_ptr<State> state = m_state.lock();
        if (!state)
            return;
        state->observers.removeOne(m_observer);
        state->noteChange();
    }
    Q_DISABLE_COPY_MOVE(Registration)

private:
    std::weak_ptr<State> m_state;
    std::shared_ptr<Observer> m_observer;
};

ObserverList::ObserverList()
    : m_state(std::make_shared<State>())
{}

ObserverList::~ObserverList() = default;

std::unique_ptr<ports::Observation> ObserverList::add(const QString &name,
                                                      const std::optional<QString> &object,
                                                      ports::NotificationCenter::Handler handler)
{
    return add(std::make_shared<Observer>(Observer{{name, object, false}, std::move(handler)}));
}

std::unique_ptr<ports::Observation> ObserverList::addMerging(const QString &name,
                                                             std::function<void()> handler)
{
    return add(std::make_shared<Observer>(
        Observer{{name, std::nullopt, true},
                 [handler = std::move(handler)](const ports::Notification &) { handler(); }}));
}

std::unique_ptr<ports::Observation> ObserverList::add(std::shared_ptr<Observer> observer)
{
    m_state->observers.append(observer);
    m_state->noteChange();
    return std::make_unique<Registration>(m_state, std::move(observer));
}

bool ObserverList::isEmpty() const
{
    return m_state->observers.isEmpty();
}

Interests ObserverList::interests() const
{
    QList<Interests::Subject> subjects;
    for (const std::shared_ptr<Observer> &observer : std::as_const(m_state->observers))
        subjects.append(observer->subject);
    return Interests(subjects);
}

void ObserverList::setChangeHandler(std::function<void()> handler)
{
    m_state->changed = std::move(handler);
}

void ObserverList::deliver(const ports::Notification &notification) const
{
    // The copy keeps a handler alive that removes itself while it runs.
    const QList<std::shared_ptr<Observer>> observers = m_state->observers;
    for (const std::shared_ptr<Observer> &observer : observers) {
        if (!observer->removed && hears(observer->subject, notification.name, notification.object))
            observer->handler(notification);
    }
}

} // namespace tarnwell::desktop
