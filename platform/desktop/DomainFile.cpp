#include "desktop/DomainFile.h"

#include "foundation/plist/PropertyList.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 maximumSize = 256 * 1024 * 1024;

/// How often a file is read again that somebody rewrites in place meanwhile.
constexpr int maximumReads = 3;

bool meansMissing(int code)
{
    return code == ENOENT || code == ENOTDIR;
}

qint64 nanoseconds(const timespec &time)
{
    return qint64(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

bool readAll(int fd, QByteArray *bytes, qint64 expected)
{
    bytes->resize(qsizetype(expected) + 1);
    qsizetype length = 0;
    for (;;) {
        if (length == bytes->size()) {
            if (length > maximumSize)
                break;
            bytes->resize(length * 2);
        }
        const ssize_t got = ::read(fd, bytes->data() + length, size_t(bytes->size() - length));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return false;
        if (got == 0)
            break;
        length += got;
    }
    bytes->truncate(length);
    return true;
}

} // namespace

DomainFile::State DomainFile::State::of(const struct stat &facts)
{
    return {true,
            facts.st_dev,
            facts.st_ino,
            facts.st_size,
            nanoseconds(facts.st_mtim),
            nanoseconds(facts.st_ctim)};
}

DomainFile::DomainFile(const QString &path)
    : m_path(path)
    , m_nativePath(QFile::encodeName(path))
{}

std::optional<bool> DomainFile::hasChanged(QString *error) const
{
    if (!m_seen)
        return true;
    struct stat facts;
    if (::stat(m_nativePath.constData(), &facts) == 0)
        return State::of(facts) != *m_seen;
    if (meansMissing(errno))
        return m_seen->exists;
    *error = systemError(u"look at the file"_s, errno);
    return std::nullopt;
}

DomainFile::Content DomainFile::readOpened(int fd, QByteArray *bytes, QString *error)
{
    for (int i = 0; i < maximumReads; ++i) {
        struct stat before, after;
        if (::fstat(fd, &before) != 0) {
            *error = systemError(u"look at the file"_s, errno);
            return Content::Unavailable;
        }
        if (!S_ISREG(before.st_mode) || before.st_size > maximumSize) {
            *error = S_ISREG(before.st_mode) ? u"The file is too large."_s
                                             : u"There is something else than a file."_s;
            return Content::Unavailable;
        }
        if (::lseek(fd, 0, SEEK_SET) != 0 || !readAll(fd, bytes, before.st_size) ||
            ::fstat(fd, &after) != 0) {
            *error = systemError(u"read the file"_s, errno);
            return Content::Unavailable;
        }
        // Size and time of modification alone: the time of change also moves when another writer
        // replaces the file, and what was read of the old one is whole all the same.
        if (before.st_size == after.st_size &&
            nanoseconds(before.st_mtim) == nanoseconds(after.st_mtim)) {
            m_seen = State::of(before);
            return Content::Readable;
        }
    }
    *error = u"The file is being written."_s;
    return Content::Unavailable;
}

DomainFile::Content DomainFile::read(plist::Dictionary *values, QString *error)
{
    // Without O_NONBLOCK a pipe of this name would hold us for ever.
    UniqueFd fd(::open(m_nativePath.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!fd) {
        if (meansMissing(errno)) {
            m_seen = State();
            m_seenFile = UniqueFd();
            *values = plist::Dictionary();
            return Content::Missing;
        }
        *error = systemError(u"open the file"_s, errno);
        return Content::Unavailable;
    }

    QByteArray bytes;
    const Content content = readOpened(fd.get(), &bytes, error);
    if (content != Content::Readable)
        return content;
    m_seenFile = std::move(fd);

    plist::ReadError readError;
    const plist::Value root = plist::read(bytes, &readError);
    if (!root.isDictionary()) {
        *error = root.isNull() ? readError.message : u"The root is not a dictionary."_s;
        return Content::Damaged;
    }
    *values = root.toDictionary();
    return Content::Readable;
}

bool DomainFile::replace(LockedFile &locked, const plist::Dictionary &values, QString *error)
{
    const QByteArray bytes = plist::write(values, plist::Format::Binary);
    if (bytes.isEmpty() || bytes.size() > maximumSize) {
        *error = u"The values make no property list that can be stored."_s;
        return false;
    }
    UniqueFd fd = locked.replace(bytes, error);
    if (!fd)
        return false;
    struct stat facts;
    if (::fstat(fd.get(), &facts) == 0)
        m_seen = State::of(facts);
    else
        m_seen.reset();
    m_seenFile = std::move(fd);
    return true;
}

} // namespace tarnwell::desktop
