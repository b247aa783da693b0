#include "prefs/StoreRetry.h"

#include "ports/Timers.h"

#include <algorithm>
#include <utility>

namespace tarnwell::prefs {

StoreRetry::StoreRetry(ports::Preferences &preferences, ports::Timers &timers,
                       const QString &domain, std::function<void()> shownIsOld)
    : m_preferences(preferences)
    , m_timers(timers)
    , m_domain(domain)
    , m_shownIsOld(std::move(shownIsOld))
{}

StoreRetry::~StoreRetry() = default;

void StoreRetry::follow(const ports::Preferences::StoreState &state)
{
    const ports::Preferences::StoreState before = std::exchange(m_state, state);
    const bool isReadAgain = before.isBeingWritten && !state.isBeingWritten;
    if (isReadAgain || (state.isOvertaken && !before.isOvertaken))
        refreshSoon();
    const bool isTroubled = !state.problem.isEmpty();
    if (state.isBeingWritten != before.isBeingWritten || isTroubled == before.problem.isEmpty()) {
        m_pause = firstPause;
        scheduleNext();
    }
}

bool StoreRetry::tryNow()
{
    m_pause = firstPause;
    return attempt();
}

void StoreRetry::settle(std::function<void(bool)> settled)
{
    m_settled = std::move(settled);
    tryNow();
}

bool StoreRetry::attempt()
{
    // Something is left when it fails; but what was given up isn't, and then there is no problem.
    const bool isStored = m_preferences.appStorePending(m_domain) ||
                          (m_state.problem.isEmpty() && !m_state.isBeingWritten);
    scheduleNext();
    if (m_settled && (isStored || !m_state.isBeingWritten))
        std::exchange(m_settled, nullptr)(isStored);
    return isStored;
}

void StoreRetry::scheduleNext()
{
    m_timer.reset();
    if (m_state.isBeingWritten) {
        m_timer = m_timers.scheduleOnce(lookPause, [this] { attempt(); });
    } else if (!m_state.problem.isEmpty()) {
        m_timer = m_timers.scheduleOnce(m_pause, [this] {
            m_pause = std::min(2 * m_pause, longestPause);
            attempt();
        });
    }
}

/// Later, because whoever brought this state about may be about to show something itself.
void StoreRetry::refreshSoon()
{
    m_refreshTimer = m_timers.scheduleOnce(0.0, [this] { m_shownIsOld(); });
}

} // namespace tarnwell::prefs
