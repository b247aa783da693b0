#pragma once

#include "desktop/GlobalShortcutKeys.h"
#include "ports/GlobalShortcuts.h"

#include <optional>

namespace tarnwell::desktop {

/// The holder of a combination in the settings of GNOME and its relatives; nothing where none of
/// them runs or its settings are not installed. Reads the settings' own cache, and waits for
/// nobody.
std::optional<ports::GlobalShortcutHolder>
holderFromGnome(const ports::KeyCombination &combination);

} // namespace tarnwell::desktop
