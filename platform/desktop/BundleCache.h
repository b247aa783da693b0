#pragma once

#include "desktop/FileStamp.h"
#include "foundation/Bundle.h"

#include <QHash>

#include <optional>

namespace tarnwell::desktop {

/// The file that says what a path is: a bundle's Info.plist, else the item itself.
struct DescribingFile
{
    QString path;
    FileStamp stamp;
};

/// Nothing when nothing exists at the path.
std::optional<DescribingFile> describingFile(const QString &path);

/// The bundles that were asked for lately. One that hasn't changed on disk is not read again; to
/// find that out costs a stat() or two. Everything that asks for names and icons shares one.
class BundleCache
{
public:
    /// The bundle at a path; nothing when there is none.
    std::optional<foundation::Bundle> bundleAt(const QString &path) const;

    /// The name that a file manager shows: the bundle's own, else the last path component. Empty
    /// when nothing exists there.
    QString displayNameAt(const QString &path) const;

private:
    struct Entry
    {
        DescribingFile file;
        bool wasSettled = false; ///< when it was read; else it has to be read again
        foundation::Bundle bundle;
        QString displayName; ///< empty until it was asked for
    };

    Entry *entryAt(const QString &path) const;

    mutable QHash<QString, Entry> m_entries;
};

} // namespace tarnwell::desktop
