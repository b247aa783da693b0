#include "update/UpdaterLaunch.h"

#include "foundation/Logging.h"
#include "foundation/StatusCodes.h"
#include "ports/Applications.h"
#include "ports/FileManager.h"
#include "ports/LockFiles.h"
#include "ports/Preferences.h"
#include "ports/SystemFacts.h"
#include "update/UpdateModule.h"

#include <QUrl>

namespace tarnwell::update {

using namespace Qt::StringLiterals;
using foundation::GetMacOSStatusCommentString;

namespace {

constexpr qsizetype longestName = 255; // bytes, of one file
constexpr qsizetype pathBufferSize = 1024;

/// The lock of a module, in the folder of the whole system's temporary items.
struct Lock
{
    QString folder;
    QString name;
    int pathStatus = 0; ///< of making the folder's path for a log line

    QString path() const { return folder + u'/' + name; }
};

QString comment(int status)
{
    return QString::fromLatin1(GetMacOSStatusCommentString(status));
}

/// Whether the name is that of a file in a folder, and no way into another one.
bool isFileName(const QString &name, const ports::FileManager &fileManager)
{
    return !name.contains(u'/') && !name.contains(QChar(0)) &&
           fileManager.fileSystemRepresentation(name).size() <= longestName;
}

/// Starts the updater at a location for a user; false when there is nobody to start it for.
bool launch(const UpdateContext &context, const QString &updater, const QString &bundlePath,
            int *status, qint64 *processId)
{
    if (context.systemFacts.realUserId() != 0) {
        *status = context.applications.openApplication(updater, bundlePath, processId);
        return true;
    }
    const quint32 user = context.systemFacts.effectiveUserId();
    if (user == 0)
        return false;
    // A helper with root's rights that acts for a user: the updater is told for whom.
    *status = context.applications.openApplicationWithArguments(
        updater, {u"-u"_s, QString::number(qint32(user)), u"--bundle"_s, bundlePath}, processId);
    return true;
}

void launchAndReport(const UpdateContext &context, const foundation::Bundle &bundle,
                     const QString &moduleID, UpdaterLaunch &result)
{
    const QString updater = bundle.resourcePath(u"Varnit Updater"_s, u"app"_s);
    int status = foundation::noErr;
    if (updater.isEmpty() || !launch(context, updater, bundle.path(), &status, &result.processId))
        return;
    const QString name = context.state.productName;
    const QString location = QUrl::fromLocalFile(updater + u'/').toString(QUrl::FullyEncoded);
    if (status != foundation::noErr) {
        TARNWELL_ZOK_LOG(
            u"[%1] Could not launch the updater (%2) due to error %3 occurring. %4"_s.arg(
                name, location, QString::number(status), comment(status)));
        return;
    }
    result.updater = updater;
    TARNWELL_ZOK_LOG(u"[%1] Launched the updater at %2"_s.arg(name, location));
    context.preferences.appSynchronize(moduleID);
}

} // namespace

UpdaterLaunch launchUpdater(const UpdateContext &context,
                            const std::optional<foundation::Bundle> &bundle,
                            const QString &moduleID)
{
    UpdaterLaunch result;
    const auto ended = [&result](int status) {
        result.status = status;
        return std::move(result);
    };
    if (!bundle || moduleID.isEmpty())
        return ended(foundation::paramErr);
    if (context.state.productName.isEmpty())
        context.state.productName = productName(*bundle).toString();
    const QString name = context.state.productName;
    TARNWELL_ZOK_LOG(u"[%1] Checking for updated versions of %2 (%3)"_s.arg(name, name, moduleID));

    Lock lock;
    lock.folder =
        context.fileManager.folder(ports::FolderDomain::System, ports::FolderKind::TemporaryItems);
    if (const int status = context.lockFiles.createFolder(lock.folder))
        return ended(status);
    lock.name = moduleID + ".updater.lock"_L1;
    if (!isFileName(lock.name, context.fileManager))
        return ended(foundation::bdNamErr);
    if (context.fileManager.fileSystemRepresentation(lock.folder).size() >= pathBufferSize)
        lock.pathStatus = foundation::pathTooLongErr;

    const int created = context.lockFiles.create(lock.path());
    if (created == foundation::dupFNErr) {
        TARNWELL_ZOK_LOG(u"[%1] Could not run the updater as the updater lock file (%2/%3) is "
                         "already in existence. Someone else is updating. %4"_s.arg(
                             name, lock.folder, lock.name, comment(lock.pathStatus)));
        result.lock = context.lockFiles.find(lock.path());
        return ended(lock.pathStatus);
    }
    if (created != foundation::noErr) {
        // Nobody else is at work, so that to call this a success would have the user wait.
        TARNWELL_ZOK_LOG(
            u"[%1] Could not create the updater lock file (%2/%3) due to error %4. %5"_s.arg(
                name, lock.folder, lock.name, QString::number(created), comment(created)));
        return ended(created);
    }
    launchAndReport(context, *bundle, moduleID, result);
    const int removed = context.lockFiles.remove(lock.path());
    if (removed != foundation::noErr) {
        TARNWELL_ZOK_LOG(
            u"[%1] Could not delete the updater lock file (%2/%3) due to error %4. %5"_s.arg(
                name, lock.folder, lock.name, QString::number(removed), comment(removed)));
    }
    return ended(removed);
}

int QXLaunchUpdater(const UpdateContext &context, const std::optional<foundation::Bundle> &bundle,
                    const QString &moduleID, QString *launchedUpdater)
{
    const UpdaterLaunch result = launchUpdater(context, bundle, moduleID);
    if (launchedUpdater && !result.updater.isEmpty())
        *launchedUpdater = result.updater;
    return result.status;
}

} // namespace tarnwell::update
