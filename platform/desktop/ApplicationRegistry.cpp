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

/// Whether menus show a desktop entry: it doesn't hide, and the program is there that it wants to
/// see before it is shown.
bool isForMenus(const Bundle &entry)
{
    if (entry.infoValue(u"NoDisplay"_s).toString() == "true"_L1)
        return false;
    const QString tryExec = entry.infoValue(u"TryExec"_s).toString();
    return tryExec.isEmpty() || !QStandardPaths::findExecutable(tryExec).isEmpty();
}

} // namespace

ApplicationRegistry::ApplicationRegistry(const Places &places, const BundleCache &bundles)
    : m_places(places)
    , m_bundles(bundles)
    , m_folders(applicationFolders(places))
{}

void ApplicationRegistry::addFolder(const QString &path)
{
    m_folders.append({path, ApplicationFolder::Kind::Bundles});
    m_isCurrent = false;
}

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
    const QString key = identifier.toLower();
    QString path = findIdentifier(key);
    if (path.isEmpty() && !m_areBundlesRead) {
        rebuild();
        path = findIdentifier(key);
    }
    return path;
}

QString ApplicationRegistry::applicationForCreator(quint32 creator) const
{
    update();
    const auto isStill = [&](const QString &path) {
        const std::optional<Bundle> bundle = m_bundles.bundleAt(path);
        return bundle && bundle->signature() == creator;
    };
    if (!m_areBundlesRead && !isStill(m_byCreator.value(creator)))
        rebuild();
    return m_byCreator.value(creator);
}

QList<ports::InstalledApplication> ApplicationRegistry::installedApplications() const
{
    update();
    if (!m_areBundlesRead)
        rebuild();
    QStringList paths = m_nameless;
    for (const QString &identifier : std::as_const(m_identifiers)) {
        if (const QString path = findIdentifier(identifier); !path.isEmpty())
            paths.append(path);
    }
    QList<ports::InstalledApplication> result;
    for (const QString &path : std::as_const(paths)) {
        const std::optional<Bundle> bundle = m_bundles.bundleAt(path);
        if (!bundle || (bundle->isDesktopEntry() && !isForMenus(*bundle)))
            continue;
        result.append({path, bundle->identifier(), m_bundles.displayNameAt(path)});
    }
    return result;
}

int ApplicationRegistry::openApplication(const QString &path, const QString &document,
                                         qint64 *processId)
{
    if (!QFileInfo::exists(path) || (!document.isEmpty() && !QFileInfo::exists(document)))
        return foundation::fnfErr;
    const std::optional<Bundle> bundle = m_bundles.bundleAt(path);
    if (!bundle)
        return foundation::kLSApplicationNotFoundErr;
    return launchApplication(m_places, *bundle, document, processId);
}

int ApplicationRegistry::openApplicationWithArguments(const QString &path,
                                                      const QStringList &arguments,
                                                      qint64 *processId)
{
    if (!QFileInfo::exists(path))
        return foundation::fnfErr;
    const std::optional<Bundle> bundle = m_bundles.bundleAt(path);
    if (!bundle)
        return foundation::kLSApplicationNotFoundErr;
    return launchApplicationWithArguments(m_places, *bundle, arguments, processId);
}

void ApplicationRegistry::update() const
{
    if (m_isCurrent)
        return;
    m_isCurrent = true;
    m_areBundlesRead = false;
    int listed = 0;
    for (ApplicationFolder &folder : m_folders)
        listed += folder.update();
    if (listed > 0)
        rebuild();
}

void ApplicationRegistry::rebuild() const
{
    m_areBundlesRead = true;
    m_identifiers.clear();
    m_candidates.clear();
    m_nameless.clear();
    m_byCreator.clear();
    for (const ApplicationFolder &folder : std::as_const(m_folders)) {
        for (const QString &path : folder.items())
            addToIndex(path);
    }
}

void ApplicationRegistry::addToIndex(const QString &path) const
{
    QString identifier;
    if (path.endsWith(".desktop"_L1)) {
        // Its place says how it is called; there are hundreds, so they are read when asked for.
        identifier = DesktopEntry::identifierForPath(path);
    } else {
        const std::optional<Bundle> bundle = m_bundles.bundleAt(path);
        if (!bundle)
            return;
        identifier = bundle->identifier();
        const quint32 creator = bundle->signature();
        if (creator != 0 && creator != unclaimedCreator && !m_byCreator.contains(creator))
            m_byCreator.insert(creator, path);
    }
    if (identifier.isEmpty()) {
        m_nameless.append(path);
        return;
    }
    const QString key = identifier.toLower();
    QStringList &candidates = m_candidates[key];
    if (candidates.isEmpty())
        m_identifiers.append(key);
    candidates.append(path);
}

QString ApplicationRegistry::findIdentifier(const QString &lowerCase) const
{
    for (const QString &path : m_candidates.value(lowerCase)) {
        if (const std::optional<Bundle> bundle = m_bundles.bundleAt(path)) {
            if (bundle->identifier().toLower() == lowerCase)
                return path;
        } else if (path.endsWith(".desktop"_L1)) {
            // A user deletes an application of the system by an entry that says so.
            const std::optional<DesktopEntry> entry = DesktopEntry::read(path);
            if (entry && entry->isDeleted())
                return {};
        }
    }
    return {};
}

} // namespace tarnwell::desktop
