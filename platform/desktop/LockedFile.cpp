#include "desktop/LockedFile.h"

#include "desktop/LinkTarget.h"

#include <QFile>
#include <QRandomGenerator>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>
#include <thread>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int maximumDamagedOfOneSecond = 1000;

template <typename Call>
auto restarting(Call call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

/// Whether an open file is still the one that a name stands for.
bool isFileOfName(int fd, int folder, const QByteArray &name)
{
    struct stat opened, named;
    return ::fstat(fd, &opened) == 0 &&
           ::fstatat(folder, name.constData(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

foundation::UniqueFd lockedFile(int folder, const QByteArray &name,
                                std::chrono::milliseconds patience, QString *error)
{
    using std::chrono::steady_clock;
    const steady_clock::time_point end = steady_clock::now() + patience;
    // Most writers are done in no time.
    std::chrono::microseconds pause{100};
    for (;;) {
        foundation::UniqueFd fd(::openat(
            folder, name.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NOCTTY, 0600));
        if (!fd) {
            *error = systemError(u"open the lock file"_s, errno);
            return {};
        }
        while (restarting([&] { return ::flock(fd.get(), LOCK_EX | LOCK_NB); }) != 0) {
            if (errno != EWOULDBLOCK) {
                *error = systemError(u"lock"_s, errno);
                return {};
            }
            if (steady_clock::now() + pause > end) {
                *error = u"Cannot lock: another process holds the lock and does not let it go."_s;
                return {};
            }
            std::this_thread::sleep_for(pause);
            pause = std::min<std::chrono::microseconds>(2 * pause, 2ms);
        }
        // Somebody may have removed the file while we waited for it, and then another writer
        // waits for another file.
        if (isFileOfName(fd.get(), folder, name))
            return fd;
        if (steady_clock::now() > end) {
            *error = u"Cannot lock: the lock file does not stay."_s;
            return {};
        }
    }
}

bool writeAll(int fd, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written =
            restarting([&] { return ::write(fd, bytes.data(), size_t(bytes.size())); });
        if (written < 0)
            return false;
        bytes = bytes.sliced(written);
    }
    return true;
}

} // namespace

QString systemError(const QString &what, int code)
{
    return u"Cannot %1: %2."_s.arg(what,
                                   QString::fromStdString(std::generic_category().message(code)));
}

std::optional<LockedFile> LockedFile::acquire(const QString &path,
                                              std::chrono::milliseconds patience, Links links,
                                              QString *error)
{
    const QByteArray given = QFile::encodeName(path);
    const auto target = links == Links::Follow ? linkTarget(given) : LinkTarget{given};
    if (!target) {
        *error = systemError(u"follow the link"_s, ELOOP);
        return std::nullopt;
    }
    foundation::UniqueFd folder(
        ::open(folderOf(target->path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOCTTY));
    if (!folder) {
        *error = systemError(u"open the folder"_s, errno);
        return std::nullopt;
    }
    const QByteArray name = target->path.sliced(target->path.lastIndexOf('/') + 1);
    foundation::UniqueFd lock = lockedFile(folder.get(), '.' + name + ".lock", patience, error);
    if (!lock)
        return std::nullopt;
    return LockedFile(std::move(folder), std::move(lock), target->path, target->path != given);
}

LockedFile::LockedFile(foundation::UniqueFd folder, foundation::UniqueFd lock, QByteArray path,
                       bool isBehindLink)
    : m_folder(std::move(folder))
    , m_lock(std::move(lock))
    , m_path(std::move(path))
    , m_name(m_path.sliced(m_path.lastIndexOf('/') + 1))
    , m_isBehindLink(isBehindLink)
{}

LockedFile::~LockedFile()
{
    // Said aloud: closing alone would leave the lock to a child forked at this instant.
    if (m_lock)
        ::flock(m_lock.get(), LOCK_UN);
}

QString LockedFile::target() const
{
    return QFile::decodeName(m_path);
}

QByteArray LockedFile::temporaryPrefix() const
{
    return '.' + m_name + ".tmp-";
}

foundation::UniqueFd LockedFile::replace(QByteArrayView bytes,
                                         const std::function<bool()> &mayReplace, QString *error)
{
    const QByteArray temporary = temporaryPrefix() + QByteArray::number(::getpid()) + '-' +
                                 QByteArray::number(QRandomGenerator::global()->generate(), 16);
    foundation::UniqueFd fd(::openat(m_folder.get(), temporary.constData(),
                                     O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!fd) {
        *error = systemError(u"make a temporary file"_s, errno);
        return {};
    }

    const auto abandon = [&](const QString &what) -> foundation::UniqueFd {
        *error = systemError(what, errno);
        ::unlinkat(m_folder.get(), temporary.constData(), 0);
        return {};
    };
    if (::fchmod(fd.get(), 0600) != 0 || !writeAll(fd.get(), bytes))
        return abandon(u"write"_s);
    if (restarting([&] { return ::fsync(fd.get()); }) != 0)
        return abandon(u"write to the disk"_s);
    if (!mayReplace()) {
        ::unlinkat(m_folder.get(), temporary.constData(), 0);
        return {};
    }
    if (::renameat(m_folder.get(), temporary.constData(), m_folder.get(), m_name.constData()) != 0)
        return abandon(u"rename the temporary file"_s);

    // From here on the new file is what everybody reads. Should the folder not reach the disk, the
    // caller keeps its writes and tries again. Some file systems cannot flush folders at all.
    if (restarting([&] { return ::fsync(m_folder.get()); }) != 0 && errno != EINVAL) {
        *error = systemError(u"write the folder to the disk"_s, errno);
        return {};
    }
    return fd;
}

QString LockedFile::setAside(const QString &ending, QString *error)
{
    const QByteArray wanted = m_name + QFile::encodeName(ending);
    for (int i = 1; i <= maximumDamagedOfOneSecond; ++i) {
        const QByteArray name = i == 1 ? wanted : wanted + '-' + QByteArray::number(i);
        int result = ::renameat2(m_folder.get(), m_name.constData(), m_folder.get(),
                                 name.constData(), RENAME_NOREPLACE);
        if (result != 0 && (errno == EINVAL || errno == ENOSYS)) {
            // The file system has no such rename; a link never replaces anything either.
            result =
                ::linkat(m_folder.get(), m_name.constData(), m_folder.get(), name.constData(), 0);
            if (result == 0)
                result = ::unlinkat(m_folder.get(), m_name.constData(), 0);
        }
        if (result == 0)
            return QFile::decodeName(name);
        if (errno != EEXIST)
            break;
    }
    *error = systemError(u"set the damaged file aside"_s, errno);
    return {};
}

void LockedFile::removeAbandonedTemporaries()
{
    const int fd = ::openat(m_folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    const std::unique_ptr<DIR, int (*)(DIR *)> folder(::fdopendir(fd), ::closedir);
    if (!folder) {
        ::close(fd);
        return;
    }
    // Only the holder of the lock has a temporary file, and that is us, before we make ours.
    const QByteArray prefix = temporaryPrefix();
    while (const dirent *entry = ::readdir(folder.get())) {
        if (QByteArrayView(entry->d_name).startsWith(prefix))
            ::unlinkat(m_folder.get(), entry->d_name, 0);
    }
}

} // namespace tarnwell::desktop
