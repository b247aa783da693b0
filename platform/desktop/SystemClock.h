#pragma once

#include "ports/Clock.h"

namespace tarnwell::desktop {

/// The system's clock.
class SystemClock final : public ports::Clock
{
public:
    double absoluteTime() const override;
    double steadyTime() const override;
};

} // namespace tarnwell::desktop
