#include "desktop/LocalLockFiles.h"

#include "foundation/StatusCodes.h"
#include "ports/Clock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>

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

/// Removes the file of a name if it is still the open one: whoever tidied the folder up meanwhile
/// made room for another's lock of the same name.
int removeIfSame(const QByteArray &name, const foundation::UniqueFd &file)
{
    struct stat opened = {};
    struct stat present = {};
    if (::fstat(file.get(), &opened) != 0)
        return foundation::ioErr;
    if (::lstat(name.constData(), &present) != 0)
        return errno == ENOENT ? foundation::fnfErr : statusOfErrno(errno);
    if (opened.st_dev != present.st_dev || opened.st_ino != present.st_ino)
        return foundation::fnfErr;
    return ::unlink(name.constData()) == 0 ? foundation::noErr : statusOfErrno(errno);
}

class FoundLock final : public ports::StandingLock
{
public:
    FoundLock(QByteArray name, foundation::UniqueFd file, const struct stat &status)
        : m_name(std::move(name))
        , m_file(std::move(file))
        , m_status(status)
    {}

    double madeAt() const override
    {
        constexpr double nanosecond = 1e-9;
        return double(m_status.st_mtim.tv_sec) + double(m_status.st_mtim.tv_nsec) * nanosecond -
               ports::Clock::absoluteTimeIntervalSince1970;
    }

    QString owner() const override
    {
        std::array<char, 4096> texts{};
        passwd entry{};
        passwd *found = nullptr;
        ::getpwuid_r(m_status.st_uid, &entry, texts.data(), texts.size(), &found);
        return found ? QString::fromLocal8Bit(found->pw_name) : QString::number(m_status.st_uid);
    }

    bool isOurs() const override { return m_status.st_uid == ::geteuid(); }

    int remove() override { return removeIfSame(m_name, m_file); }

private:
    QByteArray m_name;
    foundation::UniqueFd m_file; ///< held open, so that no other file is given its number
    struct stat m_status;
};

} // namespace

int LocalLockFiles::createFolder(const QString &path)
{
    return QDir().mkpath(path) && QFileInfo(path).isDir() ? foundation::noErr
                                                          : foundation::dirNFErr;
}

int LocalLockFiles::create(const QString &path)
{
    foundation::UniqueFd file(::open(QFile::encodeName(path).constData(),
                                     O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file)
        return statusOfErrno(errno);
    m_ours.insert_or_assign(path, std::move(file));
    return foundation::noErr;
}

int LocalLockFiles::remove(const QString &path)
{
    auto ours = m_ours.extract(path);
    return ours ? removeIfSame(QFile::encodeName(path), ours.mapped()) : foundation::fnfErr;
}

std::unique_ptr<ports::StandingLock> LocalLockFiles::find(const QString &path)
{
    // Only looked at: opening a pipe would wait, and opening a link would lead elsewhere.
    const QByteArray name = QFile::encodeName(path);
    foundation::UniqueFd file(::open(name.constData(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat status = {};
    if (!file || ::fstat(file.get(), &status) != 0 || S_ISDIR(status.st_mode))
        return nullptr;
    return std::make_unique<FoundLock>(name, std::move(file), status);
}

} // namespace tarnwell::desktop
