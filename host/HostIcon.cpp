#include "host/HostIcon.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

namespace tarnwell::host {

namespace {

/// Three sliders on a tile.
class HostIconEngine final : public QIconEngine
{
public:
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / 64.0, rect.height() / 64.0);
        painter->setOpacity(mode == QIcon::Disabled ? 0.5 : 1.0);
        painter->setPen(Qt::NoPen);
        painter->setBrush(QColor(0x45, 0x51, 0x5c));
        painter->drawRoundedRect(QRectF(3, 3, 58, 58), 13, 13);
        int knob = 22;
        for (const int y : {18, 32, 46}) {
            painter->setBrush(QColor(0x9f, 0xac, 0xb7));
            painter->drawRoundedRect(QRectF(12, y - 2, 40, 4), 2, 2);
            painter->setBrush(Qt::white);
            painter->drawEllipse(QPointF(knob, y), 6, 6);
            knob = (knob + 20 - 12) % 40 + 12;
        }
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return picture;
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        return {QSize(16, 16), QSize(32, 32), QSize(48, 48), QSize(128, 128)};
    }

    QIconEngine *clone() const override { return new HostIconEngine(*this); }
};

} // namespace

QIcon hostIcon()
{
    return QIcon(new HostIconEngine);
}

} // namespace tarnwell::host
