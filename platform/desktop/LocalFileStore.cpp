#include "desktop/LocalFileStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace tarnwell::desktop {

namespace {

QString text(const char *source)
{
    return QCoreApplication::translate("LocalFileStore", source);
}

} // namespace

QStringList LocalFileStore::filesInFolder(const QString &folder) const
{
    return QDir(folder).entryList(QDir::Files, QDir::Name);
}

std::optional<QByteArray> LocalFileStore::readFile(const QString &path, qint64 sizeLimit,
                                                   QString *errorMessage) const
{
    QFile file(path);
    if (QFileInfo(path).isDir() || !file.open(QIODevice::ReadOnly)) {
        *errorMessage = QFileInfo(path).isDir() ? text("It is a folder.") : file.errorString();
        return std::nullopt;
    }
    // One byte more than allowed shows that there is more, whatever the file says of its size.
    QByteArray bytes = file.read(sizeLimit + 1);
    if (bytes.size() > sizeLimit) {
        *errorMessage = text("It is larger than %1 MB.").arg(sizeLimit / 1'000'000);
        return std::nullopt;
    }
    if (file.error() != QFileDevice::NoError) {
        *errorMessage = file.errorString();
        return std::nullopt;
    }
    return bytes;
}

bool LocalFileStore::writeFile(const QString &path, const QByteArray &bytes, QString *errorMessage)
{
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder)) {
        *errorMessage = text("The folder \"%1\" cannot be made.").arg(folder);
        return false;
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        *errorMessage = file.errorString();
        return false;
    }
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    if (!file.commit()) {
        *errorMessage = file.errorString();
        return false;
    }
    return true;
}

bool LocalFileStore::removeFile(const QString &path)
{
    return QFile::remove(path);
}

} // namespace tarnwell::desktop
