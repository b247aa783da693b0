#pragma once

#include <QString>

namespace tarnwell::host {

class PaneWindow;

/// Draws every page of a shown window, light and dark, into PNG files of a folder, which is made
/// when missing. Returns what could not be written; empty when everything was.
QString writeShots(PaneWindow &window, const QString &folder);

/// Runs the event loop until nothing is due any more. Timers that still run are not waited for.
void settle();

} // namespace tarnwell::host
