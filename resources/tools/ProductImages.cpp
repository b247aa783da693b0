// Draws the pane's images and writes them in the formats that the bundle holds. Run at build time:
//     product_images <output folder>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QImageWriter>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QtEndian>

#include <array>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int designSize = 128;

/// An image of one size, drawn with a painter that is set up for a square of designSize units.
template <typename Draw>
QImage drawn(int size, Draw draw)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(qreal(size) / designSize, qreal(size) / designSize);
    painter.setPen(Qt::NoPen);
    draw(painter);
    return image;
}

void drawBox(QPainter &painter, const QRectF &rect, qreal radius, const QBrush &brush)
{
    painter.setBrush(brush);
    painter.drawRoundedRect(rect, radius, radius);
}

/// A mountain lake, and above it an open menu whose chosen item carries a key.
void drawProductIcon(QPainter &painter)
{
    const QRectF tile(6, 6, 116, 116);
    QLinearGradient sky(0, 6, 0, 122);
    sky.setColorAt(0.0, QColor(0x2b, 0x6f, 0x9c));
    sky.setColorAt(0.6, QColor(0x7f, 0xb8, 0xc9));
    sky.setColorAt(1.0, QColor(0xa9, 0xd3, 0xd6));
    drawBox(painter, tile, 26, sky);

    QPainterPath clip;
    clip.addRoundedRect(tile, 26, 26);
    painter.save();
    painter.setClipPath(clip);
    painter.setBrush(QColor(0x3d, 0x5a, 0x66));
    painter.drawPolygon(QPolygonF{{-4, 98}, {34, 48}, {60, 80}, {88, 36}, {134, 98}});
    painter.setBrush(QColor(0xf2, 0xf7, 0xf8));
    painter.drawPolygon(QPolygonF{{88, 36}, {76, 55}, {84, 52}, {90, 58}, {97, 52}, {101, 54}});
    QLinearGradient water(0, 92, 0, 122);
    water.setColorAt(0.0, QColor(0x1f, 0x7a, 0x86));
    water.setColorAt(1.0, QColor(0x0e, 0x4c, 0x5c));
    painter.setBrush(water);
    painter.drawRect(QRectF(0, 92, 128, 36));
    painter.restore();

    drawBox(painter, QRectF(25, 29, 82, 70), 9, QColor(0, 0, 0, 50));
    drawBox(painter, QRectF(24, 26, 80, 70), 9, QColor(0xfb, 0xfc, 0xfc));
    drawBox(painter, QRectF(33, 36, 38, 8), 4, QColor(0x9a, 0xa7, 0xad));
    drawBox(painter, QRectF(28, 51, 72, 20), 6, QColor(0x1c, 0x86, 0x93));
    drawBox(painter, QRectF(33, 57, 32, 8), 4, Qt::white);
    drawBox(painter, QRectF(78, 54, 18, 14), 4, Qt::white);
    drawBox(painter, QRectF(83, 59, 8, 4), 2, QColor(0x1c, 0x86, 0x93));
    drawBox(painter, QRectF(33, 78, 46, 8), 4, QColor(0x9a, 0xa7, 0xad));
}

/// Any application, with a lock on it: one that the maker has put on the exclude list.
void drawPredefinedApplication(QPainter &painter)
{
    drawBox(painter, QRectF(10, 14, 100, 100), 18, QColor(0x8b, 0x97, 0xa1));
    drawBox(painter, QRectF(16, 20, 88, 88), 13, QColor(0xe8, 0xec, 0xee));
    drawBox(painter, QRectF(16, 20, 88, 18), 13, QColor(0xb4, 0xbe, 0xc5));
    for (const int row : {48, 76}) {
        for (const int column : {28, 56})
            drawBox(painter, QRectF(column, row, 20, 20), 5, QColor(0x1c, 0x86, 0x93));
    }
    drawBox(painter, QRectF(72, 74, 50, 44), 10, Qt::white);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(0x5a, 0x46, 0x14), 7));
    painter.drawArc(QRectF(84, 58, 26, 34), 0, 180 * 16);
    painter.setPen(Qt::NoPen);
    drawBox(painter, QRectF(76, 78, 42, 36), 7, QColor(0xd9, 0x9e, 0x2b));
    drawBox(painter, QRectF(94, 88, 6, 16), 3, QColor(0x5a, 0x46, 0x14));
}

QByteArray png(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter(&buffer, "png").write(image);
    return bytes;
}

void appendBigEndian(QByteArray &bytes, qsizetype number)
{
    const quint32 stored = qToBigEndian(quint32(number));
    bytes.append(reinterpret_cast<const char *>(&stored), sizeof stored);
}

/// An icon container: a header, then one entry a size, each with its type, its length and a PNG.
QByteArray iconContainer()
{
    struct Entry
    {
        const char *type;
        int size;
    };
    constexpr std::array entries{Entry{"icp4", 16},  Entry{"icp5", 32},  Entry{"icp6", 64},
                                 Entry{"ic07", 128}, Entry{"ic08", 256}, Entry{"ic09", 512}};
    constexpr qsizetype headerSize = 8;
    QByteArray body;
    for (const Entry &entry : entries) {
        const QByteArray picture = png(drawn(entry.size, drawProductIcon));
        body.append(entry.type);
        appendBigEndian(body, headerSize + picture.size());
        body.append(picture);
    }
    QByteArray container("icns");
    appendBigEndian(container, headerSize + body.size());
    return container + body;
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return !bytes.isEmpty() && file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 2) {
        std::fputs("usage: product_images <output folder>\n", stderr);
        return 2;
    }
    const QDir folder(arguments.at(1));
    QImageWriter tiff(folder.filePath(u"HardcodedApp.tiff"_s), "tiff");
    if (!folder.mkpath(u"."_s) ||
        !writeFile(folder.filePath(u"Tarnwell.icns"_s), iconContainer()) ||
        !writeFile(folder.filePath(u"Tarnwell.png"_s), png(drawn(192, drawProductIcon))) ||
        !tiff.write(drawn(64, drawPredefinedApplication))) {
        std::fprintf(stderr, "Cannot write the images: %s\n", qPrintable(tiff.errorString()));
        return 1;
    }
    return 0;
}
