#pragma once

#include <QImage>
#include <QSize>
#include <QString>

namespace tarnwell::desktop {

/// No picture of an icon is larger than this, in either direction.
inline constexpr int largestIconSide = 4096;

/// The picture of an image file at a size in device pixels, never enlarged. Of a file of several
/// pictures it is the one that needs the least scaling down. Null when the file is no image, or a
/// larger one than any icon.
QImage readIconImage(const QString &path, const QSize &size);

} // namespace tarnwell::desktop
