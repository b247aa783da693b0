#pragma once

#include "foundation/UniqueFd.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace tarnwell::desktop {

/// The right to replace one file, taken for one write and given back on destruction.
///
/// The right is an advisory lock on a file of its own beside the target, because the target itself
/// is another inode after every write.
class LockedFile
{
public:
    /// What becomes of a symbolic link.
    enum class Links {
        Follow, ///< it stays, and the file is replaced that it leads to, if it may be followed
        Replace
    };

    /// Waits for the lock, but not longer than told. Nothing, with a description, when the lock
    /// cannot be had.
    static std::optional<LockedFile>
    acquire(const QString &path, std::chrono::milliseconds patience, Links links, QString *error);

    LockedFile(LockedFile &&) = default;
    LockedFile &operator=(LockedFile &&) = delete;
    ~LockedFile();

    /// Whether the target is not the path that was given but what links lead to.
    bool isBehindLink() const { return m_isBehindLink; }

    /// The path of the target.
    QString target() const;

    /// Puts a new file with these bytes, mode 0600, in the target's place: wholly or not at all,
    /// and on the disk before it returns. `mayReplace` is asked when nothing but the renaming is
    /// left to do. The new file, open; nothing when that says no; or nothing and a description.
    foundation::UniqueFd replace(QByteArrayView bytes, const std::function<bool()> &mayReplace,
                                 QString *error);

    /// Renames the target to its name with an ending, and a number where that name is taken.
    /// The new name; empty, with a description, when it could not be done.
    QString setAside(const QString &ending, QString *error);

    /// Removes what writers that died in the middle left behind.
    void removeAbandonedTemporaries();

private:
    LockedFile(foundation::UniqueFd folder, foundation::UniqueFd lock, QByteArray path,
               bool isBehindLink);

    QByteArray temporaryPrefix() const;

    foundation::UniqueFd m_folder;
    foundation::UniqueFd m_lock;
    QByteArray m_path; ///< of the target
    QByteArray m_name; ///< of the target, in m_folder
    bool m_isBehindLink;
};

/// "Cannot <what>: <the system's message>".
QString systemError(const QString &what, int code);

} // namespace tarnwell::desktop
