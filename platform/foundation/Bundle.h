#pragma once

#include "foundation/plist/Value.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace tarnwell::foundation {

/// A folder with an Info.plist (in Contents, or beside the executable), or a freedesktop desktop
/// entry: both have a location, an identifier, Info values, an executable and, the folders,
/// resources. A cheap value; two bundles of the same place are equal.
class Bundle
{
public:
    /// The bundle at a path; nothing when there is none, or only a damaged one.
    static std::optional<Bundle> open(const QString &path);

    /// Any folder, as a bundle that says nothing of itself: one without a readable Info.plist, or
    /// what a program counts as part of that lies in no bundle. Nothing when there is no such
    /// folder.
    static std::optional<Bundle> ofPlainFolder(const QString &path);

    /// The absolute path, without a slash at the end.
    QString path() const;

    /// The bundle identifier, or a desktop entry's file ID without its ending; empty when none.
    QString identifier() const;

    /// A value of Info.plist; of a desktop entry, what stands for it (CFBundleName,
    /// CFBundleIdentifier, CFBundleExecutable, CFBundleIconFile) or the entry's own key.
    /// Null when there is none.
    plist::Value infoValue(const QString &key) const;

    /// The name in the user's language: CFBundleDisplayName, else CFBundleName, else the file name
    /// without ".app"; of a desktop entry its localised Name.
    QString displayName() const;

    /// The path of the executable; empty when the bundle names none or it does not exist.
    QString executablePath() const;

    /// The four bytes of the type and creator that the bundle declares (PkgInfo, else
    /// CFBundlePackageType and CFBundleSignature); 0 where it declares none.
    quint32 packageType() const;
    quint32 signature() const;

    /// The path of a resource, the user's languages first; empty when there is none.
    QString resourcePath(const QString &name, const QString &type) const;

    /// The files of a type among the resources, sorted by name: for each name the one that
    /// resourcePath() finds. What there is only in other languages is left out.
    QStringList resourcePaths(const QString &type) const;

    bool isDesktopEntry() const;

    friend bool operator==(const Bundle &a, const Bundle &b) { return a.path() == b.path(); }
    friend size_t qHash(const Bundle &bundle, size_t seed = 0)
    {
        return qHash(bundle.path(), seed);
    }

private:
    struct Data;
    explicit Bundle(std::shared_ptr<const Data> data);

    std::shared_ptr<const Data> d;
};

} // namespace tarnwell::foundation
