#pragma once

#include <QRect>

class QWidget;

namespace tarnwell::update {

/// A view of a size on the centre of a placeholder's frame, the edges moved outward to whole
/// points.
QRect centredOver(const QRectF &frame, const QSizeF &size);

/// Takes a view out of its window and puts it where the placeholder is, which is hidden: in the
/// layout that holds the placeholder, or else centred over it. Its controls follow in the order of
/// tabs where they are seen. Nothing happens to a placeholder that stands in no other view.
void putInPlaceOf(QWidget *placeholder, QWidget *view);

} // namespace tarnwell::update
