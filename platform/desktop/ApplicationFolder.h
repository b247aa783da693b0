#pragma once

#include "desktop/FileStamp.h"
#include "desktop/Places.h"

#include <QList>
#include <QStringList>

#include <map>
#include <optional>

namespace tarnwell::desktop {

/// What one application folder holds, its sub-folders included. A folder that hasn't changed since
/// it was listed is not listed again.
class ApplicationFolder
{
public:
    enum class Kind { Bundles, DesktopEntries };

    ApplicationFolder(const QString &path, Kind kind)
        : m_kind(kind)
        , m_path(path)
    {}

    /// Takes up what happened since the last time. Returns how many folders had to be listed; with
    /// none, the items are what they were.
    int update();

    /// The paths of the applications: those of the folder itself first, then those of each
    /// sub-folder, by name.
    QStringList items() const;

    QString path() const { return m_path; }

private:
    struct Listing
    {
        std::optional<FileStamp> stamp;
        bool wasSettled = false;
        QStringList items;
        QStringList subfolders;
    };

    int updateListing(const QString &path, Listing &listing) const;

    Kind m_kind;
    QString m_path;
    Listing m_listing;
    std::map<QString, Listing> m_subfolders;
};

/// The application folders of a machine, the user's own first, then the local ones, then those of
/// the distribution.
QList<ApplicationFolder> applicationFolders(const Places &places);

} // namespace tarnwell::desktop
