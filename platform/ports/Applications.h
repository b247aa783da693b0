#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tarnwell::ports {

/// What the application registry knows of one file-system item.
struct ItemInfo
{
    quint32 fileType = 0;     ///< four-character code, 0 when none is known
    quint32 creator = 0;      ///< four-character code, 0 when none is known
    bool isContainer = false; ///< a folder, a bundle or a desktop entry
};

/// One application that the user could choose.
struct InstalledApplication
{
    QString path; ///< a folder bundle or a desktop entry
    QString identifier;
    QString displayName;
};

/// The registry of applications on this machine: bundles in the application folders and desktop
/// entries. Paths are those of the machine, not the ones that FileManager::resolve() takes.
class Applications
{
public:
    virtual ~Applications() = default;

    /// The name that a file manager would show for an item; empty when the item does not exist.
    virtual QString displayName(const QString &path) const = 0;

    /// Type, creator and kind of an item; nothing when it does not exist.
    virtual std::optional<ItemInfo> itemInfo(const QString &path) const = 0;

    /// The location of the application with this identifier (compared without regard to case, as
    /// bundle identifiers are); empty when none is installed.
    virtual QString applicationForIdentifier(const QString &identifier) const = 0;

    /// The location of an application with this creator code; empty when none is installed.
    virtual QString applicationForCreator(quint32 creator) const = 0;

    /// Every application of the registry, in no order.
    virtual QList<InstalledApplication> installedApplications() const = 0;

    /// Drops what was remembered of the application folders, so that the next question looks anew.
    virtual void refresh() = 0;

    /// Starts an application, detached, with a document's path (may be empty) as its argument.
    /// Returns 0, or -43 (no such file), -10814 (not an application) or -10810 (it did not start).
    /// The last argument, which may be null, takes the number of the process that was started; 0
    /// where that is not known.
    virtual int openApplication(const QString &path, const QString &document,
                                qint64 *processId = nullptr) = 0;

    /// Likewise, with the arguments as they are given.
    virtual int openApplicationWithArguments(const QString &path, const QStringList &arguments,
                                             qint64 *processId = nullptr) = 0;
};

} // namespace tarnwell::ports
