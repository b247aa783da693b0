#pragma once

#include "desktop/ApplicationFolder.h"
#include "desktop/BundleCache.h"
#include "desktop/Places.h"
#include "ports/Applications.h"

#include <QHash>

namespace tarnwell::desktop {

/// The applications of this machine: bundles in the application folders, and desktop entries.
///
/// Nothing is read before the first question. Then an index is kept until refresh(), after which
/// the next question takes up what changed; of two applications with one identifier the user's own
/// counts, then the local one.
class ApplicationRegistry final : public ports::Applications
{
public:
    /// The cache must outlive the registry.
    ApplicationRegistry(const Places &places, const BundleCache &bundles);

    QString displayName(const QString &path) const override;
    std::optional<ports::ItemInfo> itemInfo(const QString &path) const override;
    QString applicationForIdentifier(const QString &identifier) const override;
    QString applicationForCreator(quint32 creator) const override;
    QList<ports::InstalledApplication> installedApplications() const override;
    void refresh() override { m_isCurrent = false; }
    int openApplication(const QString &path, const QString &document) override;

private:
    struct Item
    {
        QString path;
        QString identifier;
    };

    void update() const;
    void addToIndex(const QString &path) const;

    Places m_places;
    const BundleCache &m_bundles;
    mutable QList<ApplicationFolder> m_folders;
    mutable bool m_isCurrent = false;
    mutable QList<Item> m_items;                    ///< each with an identifier of its own, or none
    mutable QHash<QString, QString> m_byIdentifier; ///< lower case; an empty path for a deleted one
    mutable QHash<quint32, QString> m_byCreator;
};

} // namespace tarnwell::desktop
