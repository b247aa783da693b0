#include "desktop/FileIcon.h"

#include <QFileInfo>
#include <QImageReader>
#include <QPainter>

namespace tarnwell::desktop {

namespace {

constexpr qint64 largestFile = 32 * 1024 * 1024;
constexpr int largestSide = 4096;
constexpr int mostImages = 64;
constexpr qsizetype mostPixmaps = 8;

bool isReasonable(const QSize &size)
{
    return !size.isEmpty() && size.width() <= largestSide && size.height() <= largestSide;
}

/// The image of a file of several that needs the least scaling down; else the largest one.
int bestImage(QImageReader &reader, const QSize &wanted)
{
    const int count = qMin(reader.imageCount(), mostImages);
    int best = -1;
    QSize bestSize;
    for (int i = 0; i < count; ++i) {
        if (!reader.jumpToImage(i))
            break;
        const QSize size = reader.size();
        if (!isReasonable(size))
            continue;
        const bool fits = size.width() >= wanted.width();
        const bool bestFits = bestSize.width() >= wanted.width();
        if (best < 0 || (fits && (!bestFits || size.width() < bestSize.width())) ||
            (!bestFits && size.width() > bestSize.width())) {
            best = i;
            bestSize = size;
        }
    }
    return best;
}

} // namespace

QImage readIconImage(const QString &path, const QSize &size)
{
    const QFileInfo file(path);
    if (!file.isFile() || file.size() > largestFile)
        return {};
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    if (reader.imageCount() > 1) {
        const int best = bestImage(reader, size);
        if (best < 0 || !reader.jumpToImage(best))
            return {};
    } else if (const QSize stored = reader.size(); stored.isValid() && !isReasonable(stored)) {
        return {};
    }
    const QImage image = reader.read();
    if (image.isNull() || !isReasonable(image.size()))
        return {};
    if (image.width() <= size.width() && image.height() <= size.height())
        return image;
    return image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

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
    if (!isReasonable(size))
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
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawGenericIcon(painter, QRectF(QPointF(), QSizeF(size)), m_source->fallback);
    return picture;
}

} // namespace tarnwell::desktop
