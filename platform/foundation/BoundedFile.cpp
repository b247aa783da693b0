#include "foundation/BoundedFile.h"

#include <QFile>
#include <QFileInfo>

namespace tarnwell::foundation {

std::optional<QByteArray> readBoundedFile(const QString &path, qint64 maxSize)
{
    const QFileInfo info(path);
    if (!info.isFile() || info.size() > maxSize)
        return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    // The file may have grown since it was measured.
    QByteArray bytes = file.read(maxSize + 1);
    if (bytes.size() > maxSize || file.error() != QFileDevice::NoError)
        return std::nullopt;
    return bytes;
}

} // namespace tarnwell::foundation
