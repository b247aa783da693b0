#pragma once

#include <vector>

namespace tarnwell::compositions {

struct CurvePoint
{
    double time = 0.0;
    double value = 0.0;
};

/// A smooth course through points that never overshoots them: between two points it stays between
/// their values. Before the first and after the last it is level.
class Curve
{
public:
    Curve() = default;
    /// Points in any order; of those at one time the last counts, and those that are no finite
    /// numbers do not.
    explicit Curve(std::vector<CurvePoint> points);

    bool isEmpty() const { return m_points.empty(); }
    /// Only for a curve that is not empty.
    double valueAt(double time) const;

private:
    std::vector<CurvePoint> m_points;
    std::vector<double> m_slopes;
};

} // namespace tarnwell::compositions
