#pragma once

#include "ports/Timers.h"

namespace tarnwell::desktop {

/// Timers of Qt's event loop. An interval below zero counts as zero, one above 24 days as 24 days.
class QtTimers final : public ports::Timers
{
public:
    [[nodiscard]] std::unique_ptr<ports::Timer> scheduleOnce(double seconds,
                                                             std::function<void()> fire) override;
    [[nodiscard]] std::unique_ptr<ports::Timer>
    scheduleRepeating(double seconds, std::function<void()> fire) override;
};

} // namespace tarnwell::desktop
