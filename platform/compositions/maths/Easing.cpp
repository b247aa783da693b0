#include "compositions/maths/Easing.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tarnwell::compositions {

namespace {

/// How steep the exponential curves are: they begin at 2 to the power of minus this.
constexpr double exponentialFactor = 10.0;

double easeIn(qint64 family, double x)
{
    switch (family) {
    case 0:
        return x * x;
    case 1:
        return x * x * x;
    case 2:
        return x <= 0.0 ? 0.0 : std::exp2(exponentialFactor * (x - 1.0));
    default:
        return 1.0 - std::cos(x * std::numbers::pi / 2.0);
    }
}

} // namespace

double ease(qint64 curve, double x)
{
    constexpr qint64 lastCurve = 12;
    if (curve <= 0 || curve > lastCurve) {
        return x;
    }
    // Exact at both ends, whatever the formula leaves over there.
    if (x <= 0.0 || x >= 1.0) {
        return x <= 0.0 ? 0.0 : 1.0;
    }
    const qint64 family = (curve - 1) / 3;
    switch ((curve - 1) % 3) {
    case 0:
        return easeIn(family, x);
    case 1:
        return 1.0 - easeIn(family, 1.0 - x);
    default:
        return x < 0.5 ? easeIn(family, 2.0 * x) / 2.0
                       : 1.0 - easeIn(family, 2.0 * (1.0 - x)) / 2.0;
    }
}

double repeated(qint64 repeat, double time, double duration)
{
    if (!(duration > 0.0) || !std::isfinite(time)) {
        return 1.0;
    }
    const double x = std::max(time, 0.0) / duration;
    switch (repeat) {
    case 1:
        return x - std::floor(x);
    case 2: {
        const double phase = std::fmod(x, 2.0);
        return phase <= 1.0 ? phase : 2.0 - phase;
    }
    case 3:
        return x <= 1.0 ? x : std::max(2.0 - x, 0.0);
    default:
        return std::min(x, 1.0);
    }
}

} // namespace tarnwell::compositions
