#include "effects/CompositionLists.h"

#include "effects/CompositionSearch.h"
#include "foundation/Logging.h"
#include "foundation/StatusCodes.h"
#include "ports/Clock.h"
#include "ports/Preferences.h"
#include "prefs/PreferenceKeys.h"

#include <QStringMatcher>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace tarnwell::effects {

namespace {

/// Only a stored false is a no; whatever else somebody put there isn't.
bool isSwitchedOff(const plist::Dictionary &statusList, const QString &path)
{
    const plist::Value &status = statusList.value(path);
    return status.isBoolean() && !status.toBool();
}

CompositionGroups groupsOf(const FoundCompositions &found)
{
    CompositionGroups groups;
    QList<QUrl> waiting;
    const auto makeGroup = [&](QLatin1StringView name) {
        if (waiting.isEmpty())
            return;
        sortByDisplayName(waiting);
        groups.insert(name, std::exchange(waiting, {}));
    };
    // Compositions of a folder that could not be read to its end go to the next group.
    waiting += found.applicationSupport;
    if (found.localStatus == foundation::noErr)
        makeGroup(applicationSupportGroup);
    waiting += found.bundled;
    if (found.hasBundle)
        makeGroup(bundledGroup);
    waiting += found.screenSavers;
    makeGroup(screenSaversGroup);
    return groups;
}

struct Enabled
{
    EnabledCompositions compositions;
    bool hasNewScreenSavers = false; ///< they were added to the status list
};

Enabled enabledOf(const FoundCompositions &found, plist::Dictionary &statusList)
{
    Enabled enabled;
    const QStringMatcher screenSavers(u"Screen Savers"_s, Qt::CaseInsensitive);
    const auto take = [&](const QUrl &url, const QString &path) {
        if (screenSavers.indexIn(path) >= 0) {
            if (!statusList.contains(path)) {
                statusList.insert(path, false);
                enabled.hasNewScreenSavers = true;
                return;
            }
            if (isSwitchedOff(statusList, path))
                return;
        }
        enabled.compositions.append(url);
    };
    for (const QUrl &url : found.applicationSupport) {
        const QString path = url.toLocalFile();
        if (isSwitchedOff(statusList, path))
            TARNWELL_ZOK_LOG(u"[SE] Removing %1"_s.arg(path));
        else
            take(url, path);
    }
    for (const QUrl &url : found.bundled) {
        const QString path = url.toLocalFile();
        if (!isSwitchedOff(statusList, path))
            take(url, path);
    }
    for (const QUrl &url : found.screenSavers)
        take(url, url.toLocalFile());
    return enabled;
}

FoundCompositions find(const DiscoveryContext &context,
                       const std::optional<foundation::Bundle> &bundle)
{
    // What plays in this process may draw numbers from the C library, others on every day.
    ::srandom(static_cast<unsigned>(context.clock.absoluteTime() +
                                    ports::Clock::absoluteTimeIntervalSince1970));
    return findCompositions(context.fileManager, context.folders, bundle);
}

EnabledCompositions enabledOf(const DiscoveryContext &context, const FoundCompositions &found,
                              NewScreenSavers newOnes)
{
    plist::Dictionary statusList = copyStatusList(context.preferences, context.domain);
    Enabled enabled = enabledOf(found, statusList);
    if (enabled.hasNewScreenSavers && newOnes == NewScreenSavers::Record) {
        context.preferences.setAppValue(prefs::keys::seQTZStatusList, plist::Value(statusList),
                                        context.domain);
        context.preferences.appSynchronize(context.domain);
    }
    return enabled.compositions;
}

} // namespace

plist::Dictionary copyStatusList(ports::Preferences &preferences, const QString &domain)
{
    preferences.appSynchronize(domain);
    return preferences.copyAppValue(prefs::keys::seQTZStatusList, domain).toDictionary();
}

void storeStatus(ports::Preferences &preferences, const QString &domain,
                 const QList<QUrl> &compositions, bool enabled)
{
    preferences.updateAppValue(prefs::keys::seQTZStatusList, domain,
                               [&](const plist::Value &present) -> std::optional<plist::Value> {
                                   plist::Dictionary statusList = present.toDictionary();
                                   for (const QUrl &composition : compositions)
                                       statusList.insert(composition.toLocalFile(), enabled);
                                   return statusList;
                               });
}

CompositionLists copyCompositionLists(const DiscoveryContext &context,
                                      const std::optional<foundation::Bundle> &bundle,
                                      NewScreenSavers newOnes)
{
    const FoundCompositions found = find(context, bundle);
    return {groupsOf(found), enabledOf(context, found, newOnes)};
}

std::variant<CompositionGroups, EnabledCompositions>
SECopyQTZList(const DiscoveryContext &context, const std::optional<foundation::Bundle> &bundle,
              bool grouped)
{
    const FoundCompositions found = find(context, bundle);
    if (grouped)
        return groupsOf(found);
    return enabledOf(context, found, NewScreenSavers::Record);
}

} // namespace tarnwell::effects
