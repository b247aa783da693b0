#include "desktop/FileIcon.h"

#include "desktop/IconImage.h"

#include <QPainter>

namespace tarnwell::desktop {

namespace {

constexpr qsizetype mostPixmaps = 8;

} // namespace

void FileIconEngine::paint(QPainter *painter, const QRect &rectangle, QIcon::Mode mode,
                           QIcon::State state)
{
    const qreal scale = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    QPixmap picture = scaledPixmap(rectangle.size() * scale, mode, state, scale);
    picture.setDevicePixelRatio(scale);
    QRectF target(QPointF(), picture.deviceIndependentSize());
    target.moveCenter(QRectF(rectangle).center());
    painter->drawPixmap(target.topLeft(), picture);
}

QPixmap FileIconEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state)
{
    return scaledPixmap(size, mode, state, 1.0);
}

QPixmap FileIconEngine::scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state,
                                     qreal /*scale*/)
{
    if (size.isEmpty() || size.width() > largestIconSide || size.height() > largestIconSide)
        return {};
    auto found = m_pixmaps.constFind(size);
    if (found == m_pixmaps.cend()) {
        if (m_pixmaps.size() >= mostPixmaps)
            m_pixmaps.clear();
        found = m_pixmaps.insert(size, load(size));
    }
    // The style knows how disabled and selected pictures look.
    return mode == QIcon::Normal ? *found : QIcon(*found).pixmap(size, 1.0, mode, state);
}

QSize FileIconEngine::actualSize(const QSize &size, QIcon::Mode, QIcon::State)
{
    return size; // whoever lays out must not make us load
}

QPixmap FileIconEngine::load(const QSize &size)
{
    if (!m_source)
        m_source = m_findSource();
    for (const QString &file : std::as_const(m_source->imageFiles)) {
        if (const QImage image = readIconImage(file, size); !image.isNull())
            return QPixmap::fromImage(image);
    }
    for (const QString &name : std::as_const(m_source->themeNames)) {
        const QIcon icon = QIcon::fromTheme(name);
        if (const QPixmap picture = icon.pixmap(size, 1.0); !picture.isNull())
            return picture;
    }
    if (!m_source->fallback)
        return {};
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawGenericIcon(painter, QRectF(QPointF(), QSizeF(size)), *m_source->fallback);
    return picture;
}

} // namespace tarnwell::desktop
