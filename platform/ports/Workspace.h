#pragma once

#include <QIcon>
#include <QString>
#include <QUrl>

namespace tarnwell::ports {

/// Icons, and opening things the way the desktop opens them.
class Workspace
{
public:
    virtual ~Workspace() = default;

    /// The icon of a file, an application or a folder. The picture is loaded when it is first
    /// painted; a null icon when nothing exists there.
    virtual QIcon iconForFile(const QString &path) const = 0;

    /// The icon of files of a type, named by its extension without the dot.
    virtual QIcon iconForFileType(const QString &extension) const = 0;

    /// The picture in an image file as an icon, loaded when it is first painted. Of a damaged file
    /// nothing is painted.
    virtual QIcon iconFromImageFile(const QString &path) const = 0;

    /// Opens a file with its default application. False when there is none.
    virtual bool openFile(const QString &path) = 0;

    /// Opens an address in the user's browser. False when there is none.
    virtual bool openUrl(const QUrl &url) = 0;
};

} // namespace tarnwell::ports
