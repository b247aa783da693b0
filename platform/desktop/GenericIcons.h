#pragma once

#include <QRectF>

class QPainter;

namespace tarnwell::desktop {

enum class GenericIcon { Application, Document, Folder };

/// Draws the picture of things that bring none of their own, where no icon theme has one either.
/// It is drawn, not stored, so that it can't be missing and is sharp at every size.
void drawGenericIcon(QPainter &painter, const QRectF &rectangle, GenericIcon kind);

} // namespace tarnwell::desktop
