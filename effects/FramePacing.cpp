#include "effects/FramePacing.h"

#include <algorithm>
#include <utility>

namespace tarnwell::effects {

namespace {

/// The weight of the newest frame.
constexpr double newest = 0.25;
constexpr double longestTimeStep = 1.0;

} // namespace

void FramePacing::frameTook(double seconds)
{
    if (std::exchange(m_hasBegun, true))
        m_cost += (std::max(seconds, 0.0) - m_cost) * newest;
}

double FramePacing::interval() const
{
    return m_cost <= shortestInterval ? shortestInterval : 2.0 * m_cost;
}

double FramePacing::timeStep(double sinceLastFrame)
{
    return std::clamp(sinceLastFrame, 0.0, longestTimeStep);
}

} // namespace tarnwell::effects
