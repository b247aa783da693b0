#include "pane/OverlayIcon.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

#include <cmath>

namespace tarnwell::pane {

namespace {

/// Draws the two icons when somebody asks for the picture: the window shows without waiting for
/// either to be decoded, and every size and scale is sharp.
class OverlayIconEngine : public QIconEngine
{
public:
    OverlayIconEngine(const QIcon &base, const QIcon &product)
        : m_base(base)
        , m_product(product)
    {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        m_base.paint(painter, rect, Qt::AlignCenter, mode, state);
        const int half = static_cast<int>(std::floor(0.5F * static_cast<float>(rect.width())));
        const QRect quarter(rect.right() + 1 - half, rect.bottom() + 1 - half, half, half);
        m_product.paint(painter, quarter, Qt::AlignCenter, mode, state);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override
    {
        return m_base.availableSizes(mode, state);
    }

    QIconEngine *clone() const override { return new OverlayIconEngine(m_base, m_product); }

private:
    QIcon m_base;
    QIcon m_product;
};

} // namespace

QIcon overlaidIcon(const QIcon &base, const QIcon &product)
{
    if (product.isNull())
        return base;
    if (base.isNull())
        return product;
    return QIcon(new OverlayIconEngine(base, product));
}

} // namespace tarnwell::pane
