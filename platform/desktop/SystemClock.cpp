#include "desktop/SystemClock.h"

#include <ctime>

namespace tarnwell::desktop {

double SystemClock::absoluteTime() const
{
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return double(now.tv_sec) - absoluteTimeIntervalSince1970 + double(now.tv_nsec) / 1e9;
}

double SystemClock::steadyTime() const
{
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

} // namespace tarnwell::desktop
