#pragma once

#include "desktop/UniqueFd.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

namespace tarnwell::desktop {

/// The right to replace one file, taken for one write and given back on destruction.
///
/// The right is an advisory lock on a file of its own beside the target, because the target itself
/// is another inode after every write. A target that is a symbolic link is replaced where the link
/// points to, and stays a link.
class LockedFile
{
public:
    /// Waits for the lock, looking again after a millisecond at most, up to this many times: a
    /// writer holds it for one write, so whoever holds it longer is stopped or stuck. Counted and
    /// not timed, so that a machine under load waits longer. Nothing, with a description, when the
    /// lock cannot be had.
    static std::optional<LockedFile> acquire(const QString &path, int attempts, QString *error);

    LockedFile(LockedFile &&) = default;
    LockedFile &operator=(LockedFile &&) = delete;
    ~LockedFile();

    /// Puts a new file with these bytes, mode 0600, in the target's place: wholly or not at all,
    /// and on the disk before it returns. The new file, open, or nothing and a description.
    UniqueFd replace(QByteArrayView bytes, QString *error);

    /// Renames the target to its name with an ending, and a number where that name is taken.
    /// The new name; empty, with a description, when it could not be done.
    QString setAside(const QString &ending, QString *error);

    /// Removes what writers that died in the middle left behind.
    void removeAbandonedTemporaries();

private:
    LockedFile(UniqueFd folder, UniqueFd lock, QByteArray name);

    QByteArray temporaryPrefix() const;

    UniqueFd m_folder;
    UniqueFd m_lock;
    QByteArray m_name; ///< of the target, in m_folder
};

/// "Cannot <what>: <the system's message>".
QString systemError(const QString &what, int code);

} // namespace tarnwell::desktop
