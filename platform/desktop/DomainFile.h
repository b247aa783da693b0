#pragma once

#include "desktop/LockedFile.h"
#include "foundation/plist/Dictionary.h"
#include "foundation/plist/Value.h"

#include <optional>

struct stat;

namespace tarnwell::desktop {

/// The file of one preference domain, and what this process last saw of it.
class DomainFile
{
public:
    enum class Content {
        Missing, ///< there is no file that may be read, which is an empty domain
        Readable,
        Damaged,    ///< a file that holds no dictionary, perhaps because it is being written
        Unavailable ///< nobody can tell: no permission, an error of the disk, not a file
    };

    explicit DomainFile(const QString &path);

    /// Looks whether the file is another one than at the last read() or replace(). Costs one
    /// stat(). Nothing, with a description, when the system does not tell.
    std::optional<bool> hasChanged(QString *error) const;

    /// Reads the file into the values. They stay as they were when it is damaged or unavailable;
    /// the error then says why.
    Content read(plist::Dictionary *values, QString *error);

    enum class Replaced {
        Done,
        Overtaken, ///< somebody without the lock changed the file since it was read
        Failed
    };

    /// Stores the values in the file's place.
    Replaced replace(LockedFile &locked, const plist::Dictionary &values, QString *error);

    /// Renames a damaged file, as LockedFile::setAside() does. Its new path; empty when somebody
    /// without the lock changed it since it was read, or, with a description, when it failed.
    QString setAside(LockedFile &locked, const QString &ending, QString *error);

    QString path() const { return m_path; }

private:
    /// What tells a replaced or rewritten file from the one that was seen.
    struct State
    {
        bool exists = false;
        quint64 device = 0;
        quint64 inode = 0;
        qint64 size = 0;
        qint64 modified = 0; ///< nanoseconds since 1970
        qint64 changed = 0;  ///< nanoseconds since 1970

        static State of(const struct ::stat &facts);
        friend bool operator==(const State &, const State &) = default;
    };

    bool isAsSeen() const;
    Content readOpened(int fd, QByteArray *bytes, QString *error);

    QString m_path;
    QByteArray m_nativePath;
    std::optional<State> m_seen;
    /// Kept open, so that the inode is not given to a later file: two writes within one tick of
    /// the file system's clock could look the same otherwise.
    foundation::UniqueFd m_seenFile;
};

} // namespace tarnwell::desktop
