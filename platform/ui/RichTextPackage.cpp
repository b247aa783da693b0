#include "ui/RichTextDocument.h"

#include "foundation/BoundedFile.h"

#include <QBuffer>
#include <QFileInfo>
#include <QHash>
#include <QImageReader>

namespace tarnwell::ui {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largestText = 8 << 20;
constexpr qint64 largestPictureFile = 8 << 20;
constexpr qint64 mostPixelsOfPackage = 32 << 20;

/// A file that lies in the folder itself, reached by no link.
std::optional<QByteArray> readOwnFile(const QString &folder, const QString &name, qint64 largest)
{
    if (name.isEmpty() || name.startsWith(u'.') || name.contains(u'/') || name.contains(QChar(0)))
        return std::nullopt;
    const QString path = folder + u'/' + name;
    if (QFileInfo(path).isSymLink())
        return std::nullopt;
    return foundation::readBoundedFile(path, largest);
}

/// Decodes the pictures of one package, each file once and all of them within one budget.
class PackagePictures
{
public:
    explicit PackagePictures(const QString &folder)
        : m_folder(folder)
    {}

    QImage operator()(const RichTextPicture &picture)
    {
        const auto known = m_images.constFind(picture.name);
        if (known != m_images.cend())
            return *known;
        const auto data = readOwnFile(m_folder, picture.name, largestPictureFile);
        return *m_images.insert(picture.name, data ? decode(*data) : QImage());
    }

private:
    QImage decode(const QByteArray &data)
    {
        QImage image = decodePicture(data, m_pixelsLeft);
        m_pixelsLeft -= qint64(image.width()) * image.height();
        return image;
    }

    QString m_folder;
    QHash<QString, QImage> m_images;
    qint64 m_pixelsLeft = mostPixelsOfPackage;
};

} // namespace

QImage decodePicture(const QByteArray &data, qint64 mostPixels)
{
    QByteArray bytes = data;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const QByteArray format = QImageReader::imageFormat(&buffer);
    if (!QList<QByteArray>{"png", "jpeg", "gif", "tiff", "bmp"}.contains(format))
        return {};
    buffer.seek(0);
    QImageReader reader(&buffer, format);
    const QSize size = reader.size();
    if (size.isEmpty() || qint64(size.width()) * size.height() > mostPixels)
        return {};
    return reader.read();
}

bool loadRichTextPackage(const QString &folder, const RichTextAppearance &appearance,
                         QTextDocument &document)
{
    const auto rtf = readOwnFile(folder, u"TXT.rtf"_s, largestText);
    if (!rtf)
        return false;
    PackagePictures pictures(folder);
    fillDocument(document, parseRichText(*rtf), appearance, std::ref(pictures));
    return true;
}

} // namespace tarnwell::ui
