#pragma once

#include <QList>
#include <QString>

namespace tarnwell::ports {

/// One item of a folder. A link is a file, wherever it leads.
struct FolderItem
{
    QString name;
    bool isFolder = false;
};

/// What lies in folders. Paths are those of the machine.
class Folders
{
public:
    virtual ~Folders() = default;

    /// Appends the files and folders right inside a folder, hidden ones too, in the order of their
    /// names. Returns 0 or one of the platform's negative status codes; items that were found
    /// before an error are appended all the same.
    virtual int appendItems(const QString &folder, QList<FolderItem> &items) const = 0;

    /// Whether a file is kept from the user's eyes, by its name or by its Finder flags.
    virtual bool isInvisible(const QString &path) const = 0;
};

} // namespace tarnwell::ports
