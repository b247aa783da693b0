#include "desktop/DomainFile.h"

#include "desktop/LinkTarget.h"
#include "foundation/BoundedFile.h"
#include "foundation/Logging.h"
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

QString reasonOf(const foundation::FileReadError &error)
{
    using foundation::FileReadError;
    if (error.reason == FileReadError::TooLarge)
        return u"The file is too large."_s;
    return error.reason == FileReadError::System ? systemError(u"read the file"_s, error.systemCode)
                                                 : u"There is something else than a file."_s;
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

bool DomainFile::isAsSeen() const
{
    QString error;
    return hasChanged(&error) == false;
}

DomainFile::Content DomainFile::readOpened(int fd, QByteArray *bytes, QString *error)
{
    for (int i = 0; i < maximumReads; ++i) {
        struct stat before, after;
        if (::fstat(fd, &before) != 0) {
            *error = systemError(u"look at the file"_s, errno);
            return Content::Unavailable;
        }
        foundation::FileReadError readError;
        auto got = foundation::readBoundedFile(fd, maximumSize, &readError);
        if (!got) {
            *error = reasonOf(readError);
            return Content::Unavailable;
        }
        if (::fstat(fd, &after) != 0) {
            *error = systemError(u"look at the file"_s, errno);
            return Content::Unavailable;
        }
        // Size and time of modification alone: the time of change also moves when another writer
        // replaces the file, and what was read of the old one is whole all the same.
        if (before.st_size == after.st_size &&
            nanoseconds(before.st_mtim) == nanoseconds(after.st_mtim)) {
            *bytes = std::move(*got);
            m_seen = State::of(before);
            return Content::Readable;
        }
    }
    m_seen.reset();
    *error = u"The file is being written."_s;
    return Content::Damaged;
}

DomainFile::Content DomainFile::read(plist::Dictionary *values, QString *error)
{
    const std::optional<LinkTarget> target = linkTarget(m_nativePath);
    if (!target) {
        *error = systemError(u"follow the link"_s, ELOOP);
        return Content::Unavailable;
    }
    if (target->isRefusedLink) {
        TARNWELL_SYSTEM_LOG(u"The link %1 is not followed: others can write in its folder, and its "
                            "owner is one of them."_s.arg(QFile::decodeName(target->path)));
        struct stat facts;
        m_seen = ::stat(m_nativePath.constData(), &facts) == 0 ? State::of(facts) : State();
        m_seenFile = foundation::UniqueFd();
        *values = plist::Dictionary();
        return Content::Missing;
    }
    // Without O_NONBLOCK a pipe of this name would hold us for ever.
    foundation::UniqueFd fd(::open(target->path.constData(),
                                   O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW));
    if (!fd) {
        if (meansMissing(errno)) {
            m_seen = State();
            m_seenFile = foundation::UniqueFd();
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

DomainFile::Replaced DomainFile::replace(LockedFile &locked, const plist::Dictionary &values,
                                         QString *error)
{
    const QByteArray bytes = plist::write(values, plist::Format::Binary);
    if (bytes.isEmpty() || bytes.size() > maximumSize) {
        *error = u"The values make no property list that can be stored."_s;
        return Replaced::Failed;
    }
    // Programs that take no lock store, too.
    bool isOvertaken = false;
    foundation::UniqueFd fd = locked.replace(
        bytes,
        [this, &isOvertaken] {
            isOvertaken = !isAsSeen();
            return !isOvertaken;
        },
        error);
    if (!fd)
        return isOvertaken ? Replaced::Overtaken : Replaced::Failed;
    struct stat facts;
    if (::fstat(fd.get(), &facts) == 0)
        m_seen = State::of(facts);
    else
        m_seen.reset();
    m_seenFile = std::move(fd);
    return Replaced::Done;
}

QString DomainFile::setAside(LockedFile &locked, const QString &ending, QString *error)
{
    if (!isAsSeen())
        return {};
    const QString name = locked.setAside(ending, error);
    if (name.isEmpty())
        return {};
    m_seen = State();
    m_seenFile = foundation::UniqueFd();
    return QFile::decodeName(folderOf(QFile::encodeName(locked.target()))) + u'/' + name;
}

} // namespace tarnwell::desktop
