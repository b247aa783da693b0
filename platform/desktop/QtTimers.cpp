#include "desktop/QtTimers.h"

#include <QTimer>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnwell::desktop {

namespace {

int milliseconds(double seconds)
{
    // Written so that not-a-number, too, becomes zero.
    if (!(seconds > 0.0))
        return 0;
    return int(std::min(std::round(seconds * 1000.0), double(std::numeric_limits<int>::max())));
}

class ScheduledTimer final : public ports::Timer
{
public:
    ScheduledTimer(double seconds, bool once, std::function<void()> fire)
    {
        m_timer.setSingleShot(once);
        m_timer.setTimerType(Qt::PreciseTimer);
        // Without a context object: the function may destroy this timer while it runs.
        QObject::connect(&m_timer, &QTimer::timeout, std::move(fire));
        m_timer.start(milliseconds(seconds));
    }

    bool isValid() const override { return m_timer.isActive(); }
    void invalidate() override { m_timer.stop(); }

private:
    QTimer m_timer;
};

} // namespace

std::unique_ptr<ports::Timer> QtTimers::scheduleOnce(double seconds, std::function<void()> fire)
{
    return std::make_unique<ScheduledTimer>(seconds, true, std::move(fire));
}

std::unique_ptr<ports::Timer> QtTimers::scheduleRepeating(double seconds,
                                                          std::function<void()> fire)
{
    return std::make_unique<ScheduledTimer>(seconds, false, std::move(fire));
}

} // namespace tarnwell::desktop
