#include "pane/AboutScroller.h"

namespace tarnwell::pane {

float nextAboutOffset(float offset, float maximum, bool backwards)
{
    const float next = backwards ? offset - 1.0F : offset + 1.0F;
    if (backwards)
        return next > 0.0F ? next : maximum;
    return next >= maximum ? 0.0F : next;
}

} // namespace tarnwell::pane
