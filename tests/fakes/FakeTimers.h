#pragma once

#include "ports/Timers.h"

#include <QList>

#include <algorithm>
#include <memory>

namespace tarnwell::fakes {

/// What a test sees and steers of FakeTimers.
class FakeTimersControl
{
public:
    /// Lets time pass: fires every timer that falls due, in the order of their times (timers of
    /// the same time in the order of scheduling), those included that are scheduled on the way.
    void advance(double seconds)
    {
        const double end = m_now + seconds;
        while (const std::shared_ptr<Entry> entry = nextDue(end)) {
            m_now = std::max(m_now, entry->due);
            if (entry->repeats)
                entry->due += entry->interval;
            else
                m_entries.removeOne(entry);
            const std::function<void()> fire = entry->fire;
            fire();
        }
        m_now = end;
    }

    /// Seconds that have passed since the start.
    double now() const { return m_now; }

    /// The intervals of the timers that may still fire, in the order of scheduling.
    QList<double> scheduledIntervals() const
    {
        QList<double> result;
        for (const std::shared_ptr<Entry> &entry : m_entries)
            result.append(entry->interval);
        return result;
    }

private:
    friend class FakeTimers;

    struct Entry
    {
        double due = 0.0;
        double interval = 0.0;
        bool repeats = false;
        std::function<void()> fire;
    };

    std::shared_ptr<Entry> nextDue(double end) const
    {
        std::shared_ptr<Entry> next;
        for (const std::shared_ptr<Entry> &entry : m_entries) {
            // A little slack, so that ten steps of 0.1 reach a timer of 1.0.
            if (entry->due <= end + 1e-9 && (!next || entry->due < next->due))
                next = entry;
        }
        return next;
    }

    double m_now = 0.0;
    QList<std::shared_ptr<Entry>> m_entries;
};

/// Timers that fire only when a test lets time pass.
class FakeTimers final : public ports::Timers
{
public:
    FakeTimersControl &control() { return *m_control; }

    [[nodiscard]] std::unique_ptr<ports::Timer> scheduleOnce(double seconds,
                                                             std::function<void()> fire) override
    {
        return schedule(seconds, false, std::move(fire));
    }

    [[nodiscard]] std::unique_ptr<ports::Timer>
    scheduleRepeating(double seconds, std::function<void()> fire) override
    {
        // An interval of nothing would never let advance() come to its end.
        return schedule(std::max(seconds, 0.0001), true, std::move(fire));
    }

private:
    using Control = FakeTimersControl;

    class Scheduled final : public ports::Timer
    {
    public:
        Scheduled(const std::shared_ptr<Control> &control, std::shared_ptr<Control::Entry> entry)
            : m_control(control)
            , m_entry(std::move(entry))
        {}
        ~Scheduled() override { invalidate(); }
        Q_DISABLE_COPY_MOVE(Scheduled)

        bool isValid() const override
        {
            const std::shared_ptr<Control> control = m_control.lock();
            return control && control->m_entries.contains(m_entry);
        }

        void invalidate() override
        {
            if (const std::shared_ptr<Control> control = m_control.lock())
                control->m_entries.removeOne(m_entry);
        }

    private:
        std::weak_ptr<Control> m_control;
        std::shared_ptr<Control::Entry> m_entry;
    };

    std::unique_ptr<ports::Timer> schedule(double seconds, bool repeats, std::function<void()> fire)
    {
        auto entry = std::make_shared<Control::Entry>(
            Control::Entry{m_control->m_now + seconds, seconds, repeats, std::move(fire)});
        m_control->m_entries.append(entry);
        return std::make_unique<Scheduled>(m_control, std::move(entry));
    }

    std::shared_ptr<Control> m_control = std::make_shared<Control>();
};

} // namespace tarnwell::fakes
