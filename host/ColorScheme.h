#pragma once

#include "host/Options.h"

#include <QPalette>

namespace tarnwell::host {

QPalette lightPalette();
QPalette darkPalette();

/// Whether texts are lighter than what they stand on.
bool isDark(const QPalette &palette);

/// Gives the whole application the palette of a scheme. AsDesktop leaves the palette that the
/// desktop's theme provides.
void applyColorScheme(ColorScheme scheme);

} // namespace tarnwell::host
