#pragma once

#include <QString>

namespace tarnwell::desktop {

/// The address of the user's session bus; empty where there is none.
QString sessionBusAddress();

} // namespace tarnwell::desktop
