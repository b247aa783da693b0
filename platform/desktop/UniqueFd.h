#pragma once

#include "foundation/UniqueFd.h"

namespace tarnwell::desktop {

using foundation::UniqueFd;

} // namespace tarnwell::desktop
