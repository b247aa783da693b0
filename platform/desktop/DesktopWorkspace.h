#pragma once

#include "desktop/BundleCache.h"
#include "desktop/Places.h"
#include "ports/Workspace.h"

#include <QHash>

namespace tarnwell::desktop {

/// Icons from bundles, desktop entries and the icon theme; files and addresses are opened by the
/// desktop's default applications.
class DesktopWorkspace final : public ports::Workspace
{
public:
    explicit DesktopWorkspace(const Places &places)
        : m_places(places)
    {}

    QIcon iconForFile(const QString &path) const override;
    QIcon iconForFileType(const QString &extension) const override;
    QIcon iconFromImageFile(const QString &path) const override;
    bool openFile(const QString &path) override;
    bool openUrl(const QUrl &url) override;

private:
    struct KnownIcon
    {
        DescribingFile file;
        bool wasSettled = false;
        QIcon icon;
    };

    Places m_places;
    mutable QHash<QString, KnownIcon> m_icons;
};

} // namespace tarnwell::desktop
