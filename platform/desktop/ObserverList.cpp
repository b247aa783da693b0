#include "desktop/ObserverList.h"

#include <algorithm>

namespace tarnwell::desktop {

struct ObserverList::Observer
{
    QString name;
    std::optional<QString> object;
    ports::NotificationCenter::Handler handler;
    bool removed = false;

    bool hears(const QString &aName, const QString &anObject) const
    {
        return !removed && name == aName && (!object || *object == anObject);
    }
};

class ObserverList::Registration final : public ports::Observation
{
public:
    Registration(const std::shared_ptr<Observers> &observers, std::shared_ptr<Observer> observer)
        : m_observers(observers)
        , m_observer(std::move(observer))
    {}
    ~Registration() override
    {
        m_observer->removed = true;
        if (const std::shared_ptr<Observers> observers = m_observers.lock())
            observers->removeOne(m_observer);
    }
    Q_DISABLE_COPY_MOVE(Registration)

private:
    std::weak_ptr<Observers> m_observers;
    std::shared_ptr<Observer> m_observer;
};

ObserverList::ObserverList()
    : m_observers(std::make_shared<Observers>())
{}

ObserverList::~ObserverList() = default;

std::unique_ptr<ports::Observation> ObserverList::add(const QString &name,
                                                      const std::optional<QString> &object,
                                                      ports::NotificationCenter::Handler handler)
{
    auto observer = std::make_shared<Observer>(Observer{name, object, std::move(handler)});
    m_observers->append(observer);
    return std::make_unique<Registration>(m_observers, std::move(observer));
}

bool ObserverList::isEmpty() const
{
    return m_observers->isEmpty();
}

bool ObserverList::hasObserver(const QString &name, const QString &object) const
{
    return std::any_of(m_observers->cbegin(), m_observers->cend(),
                       [&](const auto &observer) { return observer->hears(name, object); });
}

void ObserverList::deliver(const ports::Notification &notification) const
{
    // The copy keeps a handler alive that removes itself while it runs.
    const Observers observers = *m_observers;
    for (const std::shared_ptr<Observer> &observer : observers) {
        if (observer->hears(notification.name, notification.object))
            observer->handler(notification);
    }
}

} // namespace tarnwell::desktop
