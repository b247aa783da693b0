#pragma once

#include "ports/WindowServer.h"

namespace tarnwell::desktop {

/// WindowServer::inhibitShortcuts() under Wayland; null under everything else.
///
/// The compositor is asked, and may ask its user: that the result exists does not mean that every
/// key arrives.
std::unique_ptr<ports::ShortcutInhibition> inhibitWaylandShortcuts(QWindow &window);

} // namespace tarnwell::desktop
