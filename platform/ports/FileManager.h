#pragma once

#include <QByteArray>
#include <QString>

namespace tarnwell::ports {

enum class FolderDomain { System, Local, Network, User };
enum class FolderKind {
    Library,
    ApplicationSupport,
    ScreenSavers,
    TemporaryItems,
    State, ///< what programs remember for themselves; each user has one, whatever the domain
};

/// Names and places of files.
///
/// The pane knows its folders by the names they are documented with ("~/Library/...",
/// "/Library/..."). resolve() turns such a name into a path of this machine; every other function
/// takes and returns paths of this machine.
class FileManager
{
public:
    virtual ~FileManager() = default;

    /// Expands a leading tilde to the home folder and puts other absolute names under the root
    /// prefix. Nothing is tested for existence.
    virtual QString resolve(const QString &documentedName) const = 0;

    /// The standard folder of a domain, whether it exists or not.
    virtual QString folder(FolderDomain domain, FolderKind kind) const = 0;

    virtual bool fileExists(const QString &path) const = 0;

    /// The name to show for a path: an application's own name, else the last path component.
    /// Empty when nothing exists there.
    virtual QString displayNameAtPath(const QString &path) const = 0;

    /// The bytes by which the file system knows a path.
    virtual QByteArray fileSystemRepresentation(const QString &path) const = 0;

    /// Whether the owner may execute a file. False when it does not exist.
    virtual bool isOwnerExecutable(const QString &path) const = 0;
};

} // namespace tarnwell::ports
