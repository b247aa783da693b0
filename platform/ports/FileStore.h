#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace tarnwell::ports {

/// The pane's own files: backups, exports. Paths are those of the machine.
class FileStore
{
public:
    virtual ~FileStore() = default;

    /// The names of the files in a folder, sorted; empty when there is no such folder.
    virtual QStringList filesInFolder(const QString &folder) const = 0;

    /// A whole file; nothing when it cannot be read or is larger than the limit, in bytes. The
    /// reason is then given in words.
    virtual std::optional<QByteArray> readFile(const QString &path, qint64 sizeLimit,
                                               QString *errorMessage) const = 0;

    /// Replaces a file, or makes one that only the user may read, and its folder if need be. What
    /// was written has reached the disk, so that what it secures may be given up. When the file
    /// cannot be written, one that was there is as before, and the reason is given in words.
    virtual bool writeFile(const QString &path, const QByteArray &bytes, QString *errorMessage) = 0;

    virtual bool removeFile(const QString &path) = 0;
};

} // namespace tarnwell::ports
