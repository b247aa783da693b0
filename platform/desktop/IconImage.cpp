#include "desktop/IconImage.h"

#include "foundation/BoundedFile.h"

#include <QBuffer>
#include <QByteArrayView>
#include <QImageReader>
#include <QtEndian>

#include <optional>

namespace tarnwell::desktop {

namespace {

constexpr qint64 largestFile = 32 * 1024 * 1024;
constexpr int mostImages = 64;
constexpr QByteArrayView pngSignature("\x89PNG\r\n\x1a\n", 8);

bool isReasonable(const QSize &size)
{
    return !size.isEmpty() && size.width() <= largestIconSide && size.height() <= largestIconSide;
}

/// Whether a picture of one width serves better than that of another.
bool isBetter(int width, int than, int wanted)
{
    if (width >= wanted && than >= wanted)
        return width < than;
    return width > than;
}

/// The best PNG picture of an icns file; empty when it has none. The image reader could find it
/// too, but it tells the sizes only by decoding every picture up to the largest.
QByteArray bestPngOfIcns(QByteArrayView file, int wanted)
{
    QByteArrayView best;
    int bestWidth = 0;
    QByteArrayView rest = file.sliced(8);
    while (rest.size() >= 8) {
        const quint32 length = qFromBigEndian<quint32>(rest.data() + 4);
        if (length < 8 || length > size_t(rest.size()))
            break;
        const QByteArrayView picture = rest.first(length).sliced(8);
        rest = rest.sliced(length);
        if (picture.size() < 24 || !picture.startsWith(pngSignature))
            continue;
        const QSize size(qFromBigEndian<qint32>(picture.data() + 16),
                         qFromBigEndian<qint32>(picture.data() + 20));
        if (isReasonable(size) && isBetter(size.width(), bestWidth, wanted)) {
            best = picture;
            bestWidth = size.width();
        }
    }
    return best.toByteArray();
}

QImage readBestImage(const QByteArray &bytes, int wanted)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    QImage best;
    const int count = qBound(1, reader.imageCount(), mostImages);
    for (int i = 0; i < count; ++i) {
        if (i > 0 && !reader.jumpToImage(i))
            break;
        const QSize stored = reader.size();
        if (stored.isValid() &&
            (!isReasonable(stored) ||
             (!best.isNull() && !isBetter(stored.width(), best.width(), wanted))))
            continue;
        const QImage image = reader.read();
        if (isReasonable(image.size()) &&
            (best.isNull() || isBetter(image.width(), best.width(), wanted)))
            best = image;
    }
    return best;
}

} // namespace

QImage readIconImage(const QString &path, const QSize &size)
{
    std::optional<QByteArray> bytes = foundation::readBoundedFile(path, largestFile);
    if (!bytes)
        return {};
    if (bytes->startsWith("icns") && bytes->size() >= 8) {
        if (const QByteArray picture = bestPngOfIcns(*bytes, size.width()); !picture.isEmpty())
            bytes = picture;
    }
    const QImage image = readBestImage(*bytes, size.width());
    if (image.isNull() || (image.width() <= size.width() && image.height() <= size.height()))
        return image;
    return image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace tarnwell::desktop
