#pragma once

#include "shortcuts/ShortcutArchive.h"

#include <QList>
#include <QString>

namespace tarnwell::ports {
class Clock;
class FileStore;
} // namespace tarnwell::ports

namespace tarnwell::shortcuts {

/// One kept value, as the list of backups shows it.
struct ShortcutBackup
{
    QString path;
    plist::Date date;
    ShortcutCount count;
};

/// The values of the stored shortcuts that were replaced, in files of a folder.
class ShortcutBackups
{
public:
    /// How many are kept; keeping one more drops the oldest.
    static constexpr int limit = 20;

    /// Files and clock are borrowed; the folder is a path of this machine.
    ShortcutBackups(ports::FileStore &files, const ports::Clock &clock, const QString &folder);

    /// Keeps a value that is about to be replaced. False when it could not be written, with the
    /// reason in words: the value had better not be replaced then.
    bool keep(const plist::Dictionary &shortcuts, QString *errorMessage);

    /// Keeps a value of which some applications' values are about to be dropped, unless the newest
    /// backup holds just those already: what comes back again and again must not push the other
    /// backups out.
    bool keepForDropping(const plist::Dictionary &dropped, const plist::Dictionary &shortcuts,
                         QString *errorMessage);

    /// What can be brought back, the newest first. Files that hold no backup are passed over.
    QList<ShortcutBackup> list() const;

    /// A kept value; nothing when the file is gone or damaged, with the reason in words.
    std::optional<ShortcutArchive> read(const QString &path, QString *errorMessage) const;

private:
    QStringList names() const;

    ports::FileStore &m_files;
    const ports::Clock &m_clock;
    QString m_folder;
};

} // namespace tarnwell::shortcuts
