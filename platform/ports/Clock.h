#pragma once

namespace tarnwell::ports {

/// The time of day.
class Clock
{
public:
    virtual ~Clock() = default;

    /// Seconds since 1 January 2001, 00:00 UTC, the epoch of property-list dates.
    virtual double absoluteTime() const = 0;

    /// Seconds from 1 January 1970 to 1 January 2001.
    static constexpr double absoluteTimeIntervalSince1970 = 978307200.0;
};

} // namespace tarnwell::ports
