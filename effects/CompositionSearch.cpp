#include "effects/CompositionSearch.h"

#include "foundation/Bundle.h"
#include "foundation/Logging.h"
#include "foundation/StatusCodes.h"
#include "ports/FileManager.h"
#include "ports/Folders.h"

#include <QStringList>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace tarnwell::effects {

using ports::FolderDomain;
using ports::FolderKind;

namespace {

constexpr QLatin1StringView compositionEnding{".qtz"};

bool isSearched(const QString &displayName)
{
    if (displayName.isEmpty())
        return false;
    if (!displayName.contains("Log"_L1, Qt::CaseInsensitive) &&
        !displayName.contains("iChat"_L1, Qt::CaseInsensitive))
        return true;
    TARNWELL_ZOK_LOG(u"[TaWl] %1 is not an appropriate folder to search for Quartz Composer "
                     "Documents"_s.arg(displayName));
    return false;
}

bool isComposition(const QString &name)
{
    return name.size() > compositionEnding.size() &&
           name.endsWith(compositionEnding, Qt::CaseInsensitive);
}

int scanApplicationSupport(const ports::FileManager &fileManager, const ports::Folders &folders,
                           FolderDomain domain, QList<QUrl> &results)
{
    const QString folder =
        fileManager.folder(domain, FolderKind::ApplicationSupport) + "/Varnit/Tarnwell"_L1;
    return fileManager.fileExists(folder)
               ? SEScanFolderForQTZ(fileManager, folders, folder, results, 0)
               : foundation::noErr;
}

void scanScreenSavers(const ports::FileManager &fileManager, const ports::Folders &folders,
                      FolderDomain domain, QList<QUrl> &results)
{
    for (const QString &folder :
         {fileManager.folder(domain, FolderKind::ScreenSavers),
          QString(fileManager.folder(domain, FolderKind::Library) + "/Screen Savers"_L1)}) {
        if (fileManager.fileExists(folder)) {
            SEScanFolderForQTZ(fileManager, folders, folder, results, 0);
            return;
        }
    }
}

} // namespace

int SEScanFolderForQTZ(const ports::FileManager &fileManager, const ports::Folders &folders,
                       const QString &folder, QList<QUrl> &results, int depth)
{
    QList<ports::FolderItem> items;
    int status = folders.appendItems(folder, items);
    const int level = depth + 1;
    QStringList subfolders;
    for (const ports::FolderItem &item : std::as_const(items)) {
        if (item.isFolder ? level != 1 : !isComposition(item.name))
            continue;
        const QString path = folder + u'/' + item.name;
        if (!item.isFolder) {
            if (!folders.isInvisible(path))
                results.append(QUrl::fromLocalFile(path));
        } else if (isSearched(fileManager.displayNameAtPath(path))) {
            subfolders.append(path);
        }
    }
    for (const QString &subfolder : std::as_const(subfolders))
        status = SEScanFolderForQTZ(fileManager, folders, subfolder, results, level);
    return status;
}

int SECompareURLsByDisplayName(const ports::FileManager &fileManager, const QUrl &a, const QUrl &b)
{
    if (a.isEmpty() || b.isEmpty())
        return -1;
    const QString nameOfA = fileManager.displayNameAtPath(a.toLocalFile());
    if (nameOfA.isEmpty())
        return 1;
    const QString nameOfB = fileManager.displayNameAtPath(b.toLocalFile());
    return nameOfB.isEmpty() ? -1 : nameOfA.compare(nameOfB, Qt::CaseInsensitive);
}

void sortByDisplayName(QList<QUrl> &compositions)
{
    std::vector<std::pair<QString, QUrl>> named;
    named.reserve(static_cast<size_t>(compositions.size()));
    for (const QUrl &url : std::as_const(compositions))
        named.emplace_back(url.fileName().toCaseFolded(), url);
    std::stable_sort(named.begin(), named.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    std::transform(named.begin(), named.end(), compositions.begin(),
                   [](auto &entry) { return std::move(entry.second); });
}

FoundCompositions findCompositions(const ports::FileManager &fileManager,
                                   const ports::Folders &folders,
                                   const std::optional<foundation::Bundle> &bundle)
{
    FoundCompositions found;
    scanApplicationSupport(fileManager, folders, FolderDomain::User, found.applicationSupport);
    found.localStatus =
        scanApplicationSupport(fileManager, folders, FolderDomain::Local, found.applicationSupport);
    found.hasBundle = bundle.has_value();
    const QStringList resources = bundle ? bundle->resourcePaths(u"qtz"_s) : QStringList();
    for (const QString &path : resources)
        found.bundled.append(QUrl::fromLocalFile(path));
    for (const FolderDomain domain :
         {FolderDomain::System, FolderDomain::Local, FolderDomain::Network, FolderDomain::User})
        scanScreenSavers(fileManager, folders, domain, found.screenSavers);
    return found;
}

std::optional<foundation::Bundle> findSillyEffectBundle(const ports::FileManager &fileManager)
{
    for (const QLatin1StringView folder :
         {"~/Library/Hullforges"_L1, "/Library/Hullforges"_L1, "~/Library/Hullforges (disabled)"_L1,
          "/Library/Hullforges (disabled)"_L1}) {
        const QString path =
            fileManager.resolve(folder + "/Tarnwell.zok/Contents/Resources/SillyEffect.bundle"_L1);
        if (!fileManager.fileExists(path))
            continue;
        const auto bundle = foundation::Bundle::open(path);
        // One that says nothing of itself may hold compositions all the same.
        return bundle ? bundle : foundation::Bundle::ofPlainFolder(path);
    }
    return std::nullopt;
}

} // namespace tarnwell::effects
