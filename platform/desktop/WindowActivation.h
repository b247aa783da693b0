#pragma once

#include <QByteArray>

namespace tarnwell::desktop {

/// Has the desktop take the next activation of a window of ours for what the user wants now, who
/// asked for it in another program. The token is what the desktop gave that program to pass on;
/// without one Wayland only marks the window.
void expectActivation(const QByteArray &token);

} // namespace tarnwell::desktop
