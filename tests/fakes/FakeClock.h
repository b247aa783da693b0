#pragma once

#include "ports/Clock.h"

namespace tarnwell::fakes {

/// What a test sets of FakeClock, in seconds since 1 January 2001, 00:00 UTC.
struct FakeClockControl
{
    double absoluteTime = 700000000.0; ///< in March 2023

    double steadyTime = 0.0;

    void advance(double seconds)
    {
        absoluteTime += seconds;
        steadyTime += seconds;
    }
};

/// A clock that stands still unless a test moves it.
class FakeClock final : public ports::Clock
{
public:
    FakeClockControl &control() { return m_control; }

    double absoluteTime() const override { return m_control.absoluteTime; }
    double steadyTime() const override { return m_control.steadyTime; }

private:
    FakeClockControl m_control;
};

} // namespace tarnwell::fakes
