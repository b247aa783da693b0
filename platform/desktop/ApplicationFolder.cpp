#include "desktop/ApplicationFolder.h"

#include <QDirIterator>
#include <QStandardPaths>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

/// Nobody installs more; somebody may well link a folder of a million pictures.
constexpr int mostEntries = 20000;

} // namespace

int ApplicationFolder::update()
{
    int listed = updateListing(m_path, m_listing);
    std::erase_if(m_subfolders, [this](const auto &entry) {
        return !m_listing.subfolders.contains(entry.first);
    });
    for (const QString &subfolder : std::as_const(m_listing.subfolders))
        listed += updateListing(subfolder, m_subfolders[subfolder]);
    return listed;
}

QStringList ApplicationFolder::items() const
{
    QStringList result = m_listing.items;
    for (const auto &[path, listing] : m_subfolders)
        result += listing.items;
    return result;
}

int ApplicationFolder::updateListing(const QString &path, Listing &listing) const
{
    const std::optional<FileStamp> stamp = FileStamp::of(path);
    if (!stamp) {
        const bool wasThere = listing.stamp.has_value();
        listing = {};
        return wasThere ? 1 : 0;
    }
    if (listing.wasSettled && listing.stamp == stamp)
        return 0;

    listing = {stamp, stamp->isSettled(), {}, {}};
    const QLatin1StringView ending = m_kind == Kind::Bundles ? ".app"_L1 : ".desktop"_L1;
    QDirIterator entries(path, QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot);
    for (int count = 0; entries.hasNext() && count < mostEntries; ++count) {
        const QString entry = entries.next();
        const bool isFolder = entries.fileInfo().isDir();
        if (entry.endsWith(ending, Qt::CaseInsensitive) && isFolder == (m_kind == Kind::Bundles))
            listing.items.append(entry);
        else if (isFolder)
            listing.subfolders.append(entry);
    }
    listing.items.sort();
    listing.subfolders.sort();
    return 1;
}

QList<ApplicationFolder> applicationFolders(const Places &places)
{
    using Kind = ApplicationFolder::Kind;
    QStringList entryFolders;
    if (places.areReal()) {
        // They follow the environment, as those of every other program do.
        entryFolders = QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
    } else {
        entryFolders << places.home + "/.local/share/applications"_L1
                     << places.root + "/usr/local/share/applications"_L1
                     << places.root + "/usr/share/applications"_L1;
    }

    QList<ApplicationFolder> folders{
        {places.home + "/Applications"_L1, Kind::Bundles},
        {places.home + "/GNUstep/Applications"_L1, Kind::Bundles},
    };
    if (!entryFolders.isEmpty())
        folders.append({entryFolders.takeFirst(), Kind::DesktopEntries});
    folders.append({places.root + "/Applications"_L1, Kind::Bundles});
    folders.append({places.root + "/usr/local/lib/GNUstep/Applications"_L1, Kind::Bundles});
    folders.append({places.root + "/usr/lib/GNUstep/Applications"_L1, Kind::Bundles});
    for (const QString &folder : std::as_const(entryFolders))
        folders.append({folder, Kind::DesktopEntries});
    return folders;
}

} // namespace tarnwell::desktop
