#include "compositions/maths/Curve.h"

#include <algorithm>
#include <cmath>

namespace tarnwell::compositions {

Curve::Curve(std::vector<CurvePoint> points)
{
    std::erase_if(points, [](const CurvePoint &point) {
        return !std::isfinite(point.time) || !std::isfinite(point.value);
    });
    std::ranges::stable_sort(points, {}, &CurvePoint::time);
    for (const CurvePoint &point : points) {
        if (!m_points.empty() && m_points.back().time == point.time) {
            m_points.back() = point;
        } else {
            m_points.push_back(point);
        }
    }
    const auto secant = [this](size_t i) {
        return (m_points[i + 1].value - m_points[i].value) /
               (m_points[i + 1].time - m_points[i].time);
    };
    m_slopes.resize(m_points.size());
    for (size_t i = 1; i + 1 < m_points.size(); ++i) {
        const double before = secant(i - 1);
        const double after = secant(i);
        // The harmonic mean keeps the course monotone; at a turning point it is level.
        m_slopes[i] = before * after > 0.0 ? 2.0 * before * after / (before + after) : 0.0;
    }
    if (m_points.size() >= 2) {
        m_slopes.front() = secant(0);
        m_slopes.back() = secant(m_points.size() - 2);
    }
}

double Curve::valueAt(double time) const
{
    if (!(time > m_points.front().time)) {
        return m_points.front().value;
    }
    if (time >= m_points.back().time) {
        return m_points.back().value;
    }
    const auto next = std::ranges::upper_bound(m_points, time, {}, &CurvePoint::time);
    const auto i = size_t(next - m_points.begin()) - 1;
    const CurvePoint &from = m_points[i];
    const CurvePoint &to = m_points[i + 1];
    const double width = to.time - from.time;
    const double t = (time - from.time) / width;
    const double t2 = t * t;
    const double t3 = t2 * t;
    return from.value * (2.0 * t3 - 3.0 * t2 + 1.0) + m_slopes[i] * width * (t3 - 2.0 * t2 + t) +
           to.value * (3.0 * t2 - 2.0 * t3) + m_slopes[i + 1] * width * (t3 - t2);
}

} // namespace tarnwell::compositions
