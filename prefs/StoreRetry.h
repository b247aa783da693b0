#pragma once

#include "ports/Preferences.h"

#include <QString>

#include <functional>
#include <memory>

namespace tarnwell::ports {
class Timer;
class Timers;
} // namespace tarnwell::ports

namespace tarnwell::prefs {

/// Stores, sooner or later, what could not be stored at once: after growing pauses, or when told.
/// Looks soon again at a domain that another process is writing.
class StoreRetry
{
public:
    /// Seconds between two looks at a file that is being written.
    static constexpr double lookPause = 0.05;
    static constexpr double firstPause = 1.0;
    static constexpr double longestPause = 60.0;

    /// The services live longer. `shownIsOld` is called, from the event loop, when other values
    /// than before came to be seen without anybody's asking.
    StoreRetry(ports::Preferences &preferences, ports::Timers &timers, const QString &domain,
               std::function<void()> shownIsOld);
    ~StoreRetry();
    Q_DISABLE_COPY_MOVE(StoreRetry)

    /// To be told of every new state of the domain.
    void follow(const ports::Preferences::StoreState &state);
    const ports::Preferences::StoreState &state() const { return m_state; }

    /// Tries at once. Whether nothing waits to be stored any more.
    bool tryNow();

    /// Tries at once, and tells whether nothing waits to be stored any more: at once, or as soon as
    /// another process has written the domain, or in half a second if it does not.
    void settle(std::function<void(bool isStored)> settled);

private:
    bool attempt();
    void scheduleNext();
    void refreshSoon();

    ports::Preferences &m_preferences;
    ports::Timers &m_timers;
    QString m_domain;
    std::function<void()> m_shownIsOld;
    std::function<void(bool)> m_settled;
    ports::Preferences::StoreState m_state;
    double m_pause = firstPause;
    std::unique_ptr<ports::Timer> m_timer;
    std::unique_ptr<ports::Timer> m_refreshTimer;
};

} // namespace tarnwell::prefs
