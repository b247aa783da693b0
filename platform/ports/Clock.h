#pragma once

namespace tarnwell::ports {

/// The time of day, and the time that passes.
class Clock
{
public:
    virtual ~Clock() = default;

    /// Seconds since 1 January 2001, 00:00 UTC, the epoch of property-list dates.
    virtual double absoluteTime() const = 0;

    /// Seconds since some moment, which nobody sets forward or back.
    virtual double steadyTime() const = 0;

    /// Seconds from 1 January 1970 to 1 January 2001.
    static constexpr double absoluteTimeIntervalSince1970 = 978307200.0;
};

} // namespace tarnwell::ports
