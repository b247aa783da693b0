#include "desktop/GenericIcons.h"

#include <QPainter>
#include <QPainterPath>

namespace tarnwell::desktop {

namespace {

// Everything below is drawn on a square of 16 units, half a unit inside its border.

void drawApplication(QPainter &painter)
{
    painter.setPen(QPen(QColor(0x3a, 0x4f, 0x6b), 0.75));
    QLinearGradient body(0, 1, 0, 15);
    body.setColorAt(0, QColor(0xe8, 0xf0, 0xfa));
    body.setColorAt(1, QColor(0x9d, 0xb8, 0xd9));
    painter.setBrush(body);
    painter.drawRoundedRect(QRectF(1, 2, 14, 12), 2, 2);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x3a, 0x4f, 0x6b));
    painter.drawRect(QRectF(1.5, 4.5, 13, 0.75));
    painter.drawRoundedRect(QRectF(3.5, 7, 4, 4.5), 0.75, 0.75);
    painter.drawRect(QRectF(9, 7.25, 4, 1));
    painter.drawRect(QRectF(9, 9, 4, 1));
    painter.drawRect(QRectF(9, 10.75, 2.5, 1));
}

void drawDocument(QPainter &painter)
{
    QPainterPath sheet;
    sheet.moveTo(3, 1);
    sheet.lineTo(9.5, 1);
    sheet.lineTo(13, 4.5);
    sheet.lineTo(13, 15);
    sheet.lineTo(3, 15);
    sheet.closeSubpath();
    painter.setPen(QPen(QColor(0x80, 0x80, 0x80), 0.75));
    painter.setBrush(QColor(0xfa, 0xfa, 0xfa));
    painter.drawPath(sheet);
    painter.setBrush(QColor(0xd8, 0xd8, 0xd8));
    painter.drawPolygon(QPolygonF({{9.5, 1}, {9.5, 4.5}, {13, 4.5}}));
}

void drawFolder(QPainter &painter)
{
    painter.setPen(QPen(QColor(0x4a, 0x76, 0xa8), 0.75));
    painter.setBrush(QColor(0x8f, 0xb9, 0xe3));
    painter.drawRoundedRect(QRectF(1, 2.5, 6.5, 4), 1, 1);
    painter.setBrush(QColor(0xa9, 0xcd, 0xf0));
    painter.drawRoundedRect(QRectF(1, 4.25, 14, 9.5), 1, 1);
}

} // namespace

void drawGenericIcon(QPainter &painter, const QRectF &rectangle, GenericIcon kind)
{
    const qreal side = qMin(rectangle.width(), rectangle.height());
    if (side <= 0)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rectangle.center() - QPointF(side, side) / 2);
    painter.scale(side / 16, side / 16);
    switch (kind) {
    case GenericIcon::Application:
        drawApplication(painter);
        break;
    case GenericIcon::Document:
        drawDocument(painter);
        break;
    case GenericIcon::Folder:
        drawFolder(painter);
        break;
    }
    painter.restore();
}

} // namespace tarnwell::desktop
