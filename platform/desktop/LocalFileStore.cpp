#include "desktop/LocalFileStore.h"

#include "foundation/BoundedFile.h"
#include "foundation/UniqueFd.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <fcntl.h>

namespace tarnwell::desktop {

namespace {

QString text(const char *source)
{
    return QCoreApplication::translate("LocalFileStore", source);
}

QString notFlushed(int code)
{
    return text("It did not reach the disk: %1.").arg(qt_error_string(code));
}

bool flushToDisk(int descriptor)
{
    int result = ::fsync(descriptor);
    while (result != 0 && errno == EINTR)
        result = ::fsync(descriptor);
    // Some file systems cannot flush folders at all.
    return result == 0 || errno == EINVAL;
}

/// A folder that a file is to be made in, and those that get a new folder for that.
QStringList foldersToFlush(const QString &folder)
{
    QStringList folders(folder);
    while (!QFileInfo::exists(folders.last()) && QFileInfo(folders.last()).path() != folders.last())
        folders.append(QFileInfo(folders.last()).path());
    return folders;
}

} // namespace

QStringList LocalFileStore::filesInFolder(const QString &folder) const
{
    QStringList names = QDir(folder).entryList(QDir::Files, QDir::Name);
    names.removeIf([&](const QString &name) { return !QFileInfo(folder + u'/' + name).isFile(); });
    return names;
}

std::optional<QByteArray> LocalFileStore::readFile(const QString &path, qint64 sizeLimit,
                                                   QString *errorMessage) const
{
    foundation::FileReadError error;
    std::optional<QByteArray> bytes = foundation::readBoundedFile(path, sizeLimit, &error);
    if (!bytes)
        *errorMessage = error.inWords(sizeLimit);
    return bytes;
}

bool LocalFileStore::writeFile(const QString &path, const QByteArray &bytes, QString *errorMessage)
{
    const QString folder = QFileInfo(path).path();
    const QStringList changedFolders = foldersToFlush(folder);
    if (!QDir().mkpath(folder)) {
        *errorMessage = text("The folder \"%1\" cannot be made.").arg(folder);
        return false;
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        !file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner) ||
        file.write(bytes) != bytes.size() || !file.flush()) {
        *errorMessage = file.errorString();
        return false;
    }
    if (!flushToDisk(file.handle())) {
        *errorMessage = notFlushed(errno);
        return false;
    }
    if (!file.commit()) {
        *errorMessage = file.errorString();
        return false;
    }
    for (const QString &changed : changedFolders) {
        const foundation::UniqueFd opened(
            ::open(QFile::encodeName(changed).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        // What may be written but not listed cannot be opened either.
        if (opened && !flushToDisk(opened.get())) {
            *errorMessage = notFlushed(errno);
            return false;
        }
    }
    return true;
}

bool LocalFileStore::removeFile(const QString &path)
{
    return QFile::remove(path);
}

} // namespace tarnwell::desktop
