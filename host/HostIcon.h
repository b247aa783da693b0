#pragma once

#include <QIcon>

namespace tarnwell::host {

/// The settings program's own icon. It is drawn when somebody asks for a picture, so it costs no
/// file, no icon theme and no time at start.
QIcon hostIcon();

} // namespace tarnwell::host
