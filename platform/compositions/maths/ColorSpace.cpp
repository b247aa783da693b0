#include "compositions/maths/ColorSpace.h"

#include <algorithm>
#include <cmath>

namespace tarnwell::compositions {

Color colorFromHsl(const Hsl &hsl, double alpha)
{
    const double saturation = std::clamp(hsl.saturation, 0.0, 1.0);
    const double luminosity = std::clamp(hsl.luminosity, 0.0, 1.0);
    const double reach = saturation * std::min(luminosity, 1.0 - luminosity);
    const auto component = [&](double offset) {
        // How far the hue is from the component's own, in twelfths of the circle.
        const double turned = offset + hsl.hue * 12.0;
        const double distance = turned - 12.0 * std::floor(turned / 12.0);
        return luminosity - reach * std::max(-1.0, std::min({distance - 3.0, 9.0 - distance, 1.0}));
    };
    return {component(0.0), component(8.0), component(4.0), alpha};
}

Hsl hslFromColor(const Color &color)
{
    const double most = std::max({color.red, color.green, color.blue});
    const double least = std::min({color.red, color.green, color.blue});
    const double range = most - least;
    Hsl hsl{0.0, 0.0, (most + least) / 2.0};
    if (!(range > 0.0)) {
        return hsl;
    }
    const double room = 1.0 - std::abs(2.0 * hsl.luminosity - 1.0);
    hsl.saturation = room > 0.0 ? std::clamp(range / room, 0.0, 1.0) : 0.0;
    double sixth = 0.0;
    if (most == color.red) {
        sixth = (color.green - color.blue) / range;
    } else if (most == color.green) {
        sixth = 2.0 + (color.blue - color.red) / range;
    } else {
        sixth = 4.0 + (color.red - color.green) / range;
    }
    hsl.hue = sixth < 0.0 ? sixth / 6.0 + 1.0 : sixth / 6.0;
    return hsl;
}

} // namespace tarnwell::compositions
