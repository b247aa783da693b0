#pragma once

#include "compositions/model/Value.h"

namespace tarnwell::compositions {

/// Hue, saturation and luminosity from 0 to 1.
struct Hsl
{
    double hue = 0.0;
    double saturation = 0.0;
    double luminosity = 0.0;
};

/// Hues beyond 0 and 1 go around the circle.
Color colorFromHsl(const Hsl &hsl, double alpha);
Hsl hslFromColor(const Color &color);

} // namespace tarnwell::compositions
