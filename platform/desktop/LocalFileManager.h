#pragma once

#include "desktop/BundleCache.h"
#include "desktop/Places.h"
#include "ports/FileManager.h"

namespace tarnwell::desktop {

/// The files of this machine, from a home folder and a root prefix.
class LocalFileManager final : public ports::FileManager
{
public:
    /// The cache must outlive the file manager.
    LocalFileManager(const Places &places, const BundleCache &bundles)
        : m_places(places)
        , m_bundles(bundles)
    {}

    QString resolve(const QString &documentedName) const override;
    QString folder(ports::FolderDomain domain, ports::FolderKind kind) const override;
    bool fileExists(const QString &path) const override;
    QString displayNameAtPath(const QString &path) const override;
    QByteArray fileSystemRepresentation(const QString &path) const override;
    bool isOwnerExecutable(const QString &path) const override;

private:
    Places m_places;
    const BundleCache &m_bundles;
};

} // namespace tarnwell::desktop
