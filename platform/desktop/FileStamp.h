#pragma once

#include <QString>

#include <optional>

namespace tarnwell::desktop {

/// What tells one state of a file or folder from another without reading it.
struct FileStamp
{
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    qint64 modified = 0; ///< nanoseconds since 1970

    /// The stamp of what lies at a path, links followed; nothing when nothing does.
    static std::optional<FileStamp> of(const QString &path);

    /// Whether the item rested when it was looked at. The clock of a file system is coarse: a
    /// change right after another one may leave the stamp as it was.
    bool isSettled() const;

    friend bool operator==(const FileStamp &, const FileStamp &) = default;
};

} // namespace tarnwell::desktop
