#pragma once

#include "ports/NotificationCenter.h"

#include <QList>

#include <memory>

namespace tarnwell::fakes {

/// What a test sees and steers of FakeNotificationCenter.
class FakeNotificationCenterControl
{
public:
    struct Observer
    {
        QString name;
        std::optional<QString> object;
    };

    /// Calls the observers, as for a notification that somebody else posted.
    void deliver(const ports::Notification &notification)
    {
        // A handler may remove observers, itself among them, and add others.
        const QList<std::shared_ptr<Entry>> entries = m_entries;
        for (const std::shared_ptr<Entry> &entry : entries) {
            if (entry->handler && entry->observer.name == notification.name &&
                (!entry->observer.object || *entry->observer.object == notification.object)) {
                const ports::NotificationCenter::Handler handler = entry->handler;
                handler(notification);
            }
        }
    }

    /// Everything that went through post(), oldest first.
    const QList<ports::Notification> &posted() const { return m_posted; }
    void clearPosted() { m_posted.clear(); }

    /// Who observes now, in the order of registration.
    QList<Observer> observers() const
    {
        QList<Observer> result;
        for (const std::shared_ptr<Entry> &entry : m_entries)
            result.append(entry->observer);
        return result;
    }

private:
    friend class FakeNotificationCenter;

    struct Entry
    {
        Observer observer;
        ports::NotificationCenter::Handler handler; ///< empty once removed
    };

    QList<std::shared_ptr<Entry>> m_entries;
    QList<ports::Notification> m_posted;
};

/// A centre that delivers at once and remembers what was posted; serves as the local and as the
/// distributed one.
class FakeNotificationCenter final : public ports::NotificationCenter
{
public:
    FakeNotificationCenterControl &control() { return *m_control; }

    [[nodiscard]] std::unique_ptr<ports::Observation>
    addObserver(const QString &name, const std::optional<QString> &object, Handler handler) override
    {
        auto entry = std::make_shared<Control::Entry>(
            Control::Entry{Control::Observer{name, object}, std::move(handler)});
        m_control->m_entries.append(entry);
        return std::make_unique<Registration>(m_control, std::move(entry));
    }

    [[nodiscard]] std::unique_ptr<ports::Observation>
    addMergingObserver(const QString &name, std::function<void()> handler) override
    {
        return addObserver(name, std::nullopt,
                           [handler](const ports::Notification &) { handler(); });
    }

    void post(const ports::Notification &notification) override
    {
        m_control->m_posted.append(notification);
        m_control->deliver(notification);
    }

private:
    using Control = FakeNotificationCenterControl;

    class Registration final : public ports::Observation
    {
    public:
        Registration(const std::shared_ptr<Control> &control, std::shared_ptr<Control::Entry> entry)
            : m_control(control)
            , m_entry(std::move(entry))
        {}
        ~Registration() override
        {
            m_entry->handler = nullptr;
            if (const std::shared_ptr<Control> control = m_control.lock())
                control->m_entries.removeOne(m_entry);
        }
        Q_DISABLE_COPY_MOVE(Registration)

    private:
        std::weak_ptr<Control> m_control;
        std::shared_ptr<Control::Entry> m_entry;
    };

    std::shared_ptr<Control> m_control = std::make_shared<Control>();
};

} // namespace tarnwell::fakes
