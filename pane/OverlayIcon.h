#pragma once

#include <QIcon>

namespace tarnwell::pane {

/// The base icon with the product's over its lower right quarter. The product icon alone where
/// there is no base icon, the base icon as it is where there is no product icon.
QIcon overlaidIcon(const QIcon &base, const QIcon &product);

} // namespace tarnwell::pane
