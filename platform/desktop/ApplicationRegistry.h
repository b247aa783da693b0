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
/// the next question takes up what changed: folders that changed are listed anew, and the bundles
/// are looked at one by one only when the index has no answer. Of two applications with one
/// identifier the user's own counts, then the local one.
class ApplicationRegistry final : public ports::Applications
{
public:
    /// The cache must outlive the registry.
    ApplicationRegistry(const Places &places, const BundleCache &bundles);

    /// Counts a folder of bundles in, after all others: one that no installation puts where
    /// applications are looked for, such as the resources of a pane.
    void addFolder(const QString &path);

    QString displayName(const QString &path) const override;
    std::optional<ports::ItemInfo> itemInfo(const QString &path) const override;
    QString applicationForIdentifier(const QString &identifier) const override;
    QString applicationForCreator(quint32 creator) const override;
    QList<ports::InstalledApplication> installedApplications() const override;
    void refresh() override { m_isCurrent = false; }
    int openApplication(const QString &path, const QString &document,
                        qint64 *processId = nullptr) override;
    int openApplicationWithArguments(const QString &path, const QStringList &arguments,
                                     qint64 *processId = nullptr) override;

private:
    void update() const;
    void rebuild() const;
    void addToIndex(const QString &path) const;
    QString findIdentifier(const QString &lowerCase) const;

    Places m_places;
    const BundleCache &m_bundles;
    mutable QList<ApplicationFolder> m_folders;
    mutable bool m_isCurrent = false;      ///< the folders were looked at since the last refresh()
    mutable bool m_areBundlesRead = false; ///< so was every bundle in them
    mutable QStringList m_identifiers;     ///< lower case, in the order of the folders
    mutable QHash<QString, QStringList> m_candidates; ///< paths by such an identifier, best first
    mutable QStringList m_nameless;                   ///< bundles without an identifier
    mutable QHash<quint32, QString> m_byCreator;
};

} // namespace tarnwell::desktop
