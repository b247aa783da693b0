#pragma once

#include "desktop/BundleCache.h"
#include "desktop/Places.h"
#include "ports/Bookmarks.h"

namespace tarnwell::desktop {

/// Bookmarks of applications: small property lists that remember where an application was, which
/// file it was, and which application it was. Of the three the last one counts most: another
/// application in the old place is never taken for the one that was meant.
class FileBookmarks final : public ports::Bookmarks
{
public:
    /// The cache must outlive the bookmarks.
    FileBookmarks(const Places &places, const BundleCache &bundles)
        : m_places(places)
        , m_bundles(bundles)
    {}

    QByteArray bookmarkForPath(const QString &path) const override;
    QString resolveBookmark(const QByteArray &bookmark) const override;

private:
    Places m_places;
    const BundleCache &m_bundles;
};

} // namespace tarnwell::desktop
