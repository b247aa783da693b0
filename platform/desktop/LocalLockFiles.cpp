#include "desktop/LocalLockFiles.h"

#include "desktop/UniqueFd.h"
#include "foundation/StatusCodes.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnwell::desktop {

namespace {

int statusOfErrno(int error)
{
    switch (error) {
    case EEXIST:
        return foundation::dupFNErr;
    case ENOENT:
    case ENOTDIR:
        return foundation::dirNFErr;
    case ENAMETOOLONG:
    case EINVAL:
    case EILSEQ:
        return foundation::bdNamErr;
    case ENOSPC:
    case EDQUOT:
        return foundation::dskFulErr;
    case EROFS:
        return foundation::wPrErr;
    case EACCES:
    case EPERM:
        return foundation::afpAccessDenied;
    default:
        return foundation::ioErr;
    }
}

} // namespace

int LocalLockFiles::createFolder(const QString &path)
{
    return QDir().mkpath(path) && QFileInfo(path).isDir() ? foundation::noErr
                                                          : foundation::dirNFErr;
}

int LocalLockFiles::create(const QString &path)
{
    const UniqueFd file(::open(QFile::encodeName(path).constData(),
                               O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file)
        return statusOfErrno(errno);
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0)
        return foundation::ioErr;
    m_ours.insert(path, {status.st_dev, status.st_ino});
    return foundation::noErr;
}

int LocalLockFiles::remove(const QString &path)
{
    // Whoever tidied the folder up meanwhile made room for another's lock of the same name.
    const auto ours = m_ours.constFind(path);
    if (ours == m_ours.cend())
        return foundation::fnfErr;
    const FileNumber number = *ours;
    m_ours.erase(ours);
    const QByteArray name = QFile::encodeName(path);
    struct stat status = {};
    if (::lstat(name.constData(), &status) != 0)
        return errno == ENOENT ? foundation::fnfErr : statusOfErrno(errno);
    if (FileNumber(status.st_dev, status.st_ino) != number)
        return foundation::fnfErr;
    return ::unlink(name.constData()) == 0 ? foundation::noErr : statusOfErrno(errno);
}

} // namespace tarnwell::desktop
