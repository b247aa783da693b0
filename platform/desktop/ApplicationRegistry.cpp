#include "desktop/ApplicationRegistry.h"

#include "desktop/ApplicationLauncher.h"
#include "foundation/DesktopEntry.h"
#include "foundation/StatusCodes.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QtEndian>

#include <sys/xattr.h>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;
using foundation::Bundle;
using foundation::DesktopEntry;

namespace {

/// Four question marks: the creator that applications give which have none.
constexpr quint32 unclaimedCreator = 0x3f3f3f3f;

constexpr qsizetype largestFinderInfo = 65536;

/// The type and creator that a plain file carries along as an extended attribute.
void readFinderInfo(const QString &path, ports::ItemInfo &info)
{
    static constexpr const char *attribute = "user.com.apple.FinderInfo";
    const QByteArray name = QFile::encodeName(path);
    const ssize_t size = ::getxattr(name.constData(), attribute, nullptr, 0);
    if (size < 8 || size > largestFinderInfo)
        return;
    QByteArray bytes(size, Qt::Uninitialized);
    if (::getxattr(name.constData(), attribute, bytes.data(), size_t(bytes.size())) < 8)
        return;
    info.fileType = qFromBigEndian<quint32>(bytes.constData());
    info.creator = qFromBigEndian<quint32>(bytes.constData() + 4);
}

/// Whether a program is there that the entry wants to see before it is shown.
bool isUsable(const Bundle &bundle)
{
    const QString tryExec = bundle.infoValue(u"TryExec"_s).toString();
    return tryExec.isEmpty() || !QStandardPaths::findExecutable(tryExec).isEmpty();
}

} // namespace

ApplicationRegistry::ApplicationRegistry(const Places &places, const BundleCache &bundles)
    : m_places(places)
    , m_bundles(bundles)
    , m_folders(applicationFolders(places))
{}

QString ApplicationRegistry::displayName(const QString &path) const
{
    return m_bundles.displayNameAt(path);
}

std::optional<ports::ItemInfo> ApplicationRegistry::itemInfo(const QString &path) const
{
    const QFileInfo file(path);
    if (path.isEmpty() || !file.exists())
        return std::nullopt;
    ports::ItemInfo info;
    if (const std::optional<Bundle> bundle = m_bundles.bundleAt(path)) {
        info.isContainer = true;
        info.fileType = bundle->packageType();
        info.creator = bundle->signature();
    } else if (file.isDir()) {
        info.isContainer = true;
    } else {
        readFinderInfo(path, info);
    }
    return info;
}

QString ApplicationRegistry::applicationForIdentifier(const QString &identifier) const
{
    update();
    return m_byIdentifier.value(identifier.toLower());
}

QString ApplicationRegistry::applicationForCreator(quint32 creator) const
{
    update();
    return m_byCreator.value(creator);
}

QList<ports::InstalledApplication> ApplicationRegistry::installedApplications() const
{
    update();
    QList<ports::InstalledApplication> result;
    for (const Item &item : std::as_const(m_items)) {
        const std::optional<Bundle> bundle = m_bundles.bundleAt(item.path);
        if (!bundle)
            continue;
        if (bundle->isDesktopEntry() &&
            (bundle->infoValue(u"NoDisplay"_s).toString() == "true"_L1 || !isUsable(*bundle)))
            continue;
        result.append({item.path, item.identifier, m_bundles.displayNameAt(item.path)});
    }
    return result;
}

int ApplicationRegistry::openApplication(const QString &path, const QString &document)
{
    if (!QFileInfo::exists(path) || (!document.isEmpty() && !QFileInfo::exists(document)))
        return foundation::fnfErr;
    const std::optional<Bundle> bundle = m_bundles.bundleAt(path);
    if (!bundle)
        return foundation::kLSApplicationNotFoundErr;
    return launchApplication(m_places, *bundle, document);
}

void ApplicationRegistry::update() const
{
    if (m_isCurrent)
        return;
    m_isCurrent = true;
    m_items.clear();
    m_byIdentifier.clear();
    m_byCreator.clear();
    for (ApplicationFolder &folder : m_folders) {
        folder.update();
        for (const QString &path : folder.items())
            addToIndex(path);
    }
}

void ApplicationRegistry::addToIndex(const QString &path) const
{
    const std::optional<Bundle> bundle = m_bundles.bundleAt(path);
    if (!bundle) {
        // A user deletes an application of the system by an entry that says so.
        const std::optional<DesktopEntry> entry =
            path.endsWith(".desktop"_L1) ? DesktopEntry::read(path) : std::nullopt;
        if (entry && entry->isDeleted()) {
            const QString key = DesktopEntry::identifierForPath(path).toLower();
            if (!m_byIdentifier.contains(key))
                m_byIdentifier.insert(key, QString());
        }
        return;
    }
    const QString identifier = bundle->identifier();
    if (!identifier.isEmpty()) {
        const QString key = identifier.toLower();
        if (m_byIdentifier.contains(key))
            return;
        m_byIdentifier.insert(key, path);
    }
    m_items.append({path, identifier});
    const quint32 creator = bundle->signature();
    if (creator != 0 && creator != unclaimedCreator && !m_byCreator.contains(creator))
        m_byCreator.insert(creator, path);
}

} // namespace tarnwell::desktop
