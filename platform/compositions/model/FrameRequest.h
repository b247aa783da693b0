#pragma once

#include <QSize>

namespace tarnwell::compositions {

/// What one frame is asked for.
struct FrameRequest
{
    double time = 0.0;       ///< seconds since the composition started; never negative
    double systemTime = 0.0; ///< seconds since 1 January 2001, 00:00 UTC
    QSize pixels{640, 480};  ///< of the destination
};

} // namespace tarnwell::compositions
