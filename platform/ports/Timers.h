#pragma once

#include <functional>
#include <memory>

namespace tarnwell::ports {

/// A scheduled timer. Destroying it cancels it.
class Timer
{
public:
    virtual ~Timer() = default;

    /// Whether it may still fire.
    virtual bool isValid() const = 0;
    virtual void invalidate() = 0;
};

/// Timers of the main run loop.
class Timers
{
public:
    virtual ~Timers() = default;

    /// Fires once, after an interval in seconds.
    [[nodiscard]] virtual std::unique_ptr<Timer> scheduleOnce(double seconds,
                                                              std::function<void()> fire) = 0;

    /// Fires each time an interval in seconds has passed, also while a sheet is up.
    [[nodiscard]] virtual std::unique_ptr<Timer> scheduleRepeating(double seconds,
                                                                   std::function<void()> fire) = 0;
};

} // namespace tarnwell::ports
