#include "update/UpdateSchedule.h"

#include "foundation/Logging.h"
#include "foundation/StatusCodes.h"
#include "ports/Clock.h"
#include "ports/Preferences.h"
#include "ports/Session.h"
#include "ports/SystemFacts.h"
#include "prefs/PreferenceKeys.h"
#include "update/HostingFramework.h"
#include "update/SystemVersion.h"
#include "update/UpdateModule.h"
#include "update/UpdaterLaunch.h"

#include <cerrno>
#include <cstdio>

namespace tarnwell::update {

using namespace Qt::StringLiterals;
namespace keys = prefs::keys;

namespace {

constexpr double graceAfterLogin = 600.0; // seconds

QStringList makeExcludedHosts()
{
    return {
        u"com.apple.Dock"_s,           u"com.apple.Finder"_s,   u"com.apple.systempreferences"_s,
        u"com.apple.systemuiserver"_s, u"com.varnit.updater"_s, u"com.varnit.installer"_s};
}

bool isExcludedHost(const UpdateContext &context)
{
    if (context.state.excludedHosts.isEmpty())
        context.state.excludedHosts = makeExcludedHosts();
    const auto host = foundation::Bundle::open(context.systemFacts.mainBundlePath());
    return host && context.state.excludedHosts.contains(host->identifier(), Qt::CaseInsensitive);
}

double checkInterval(const UpdateContext &context, const foundation::Bundle &bundle,
                     const QString &moduleID, const QString &name)
{
    const plist::Value stored = context.preferences.copyAppValue(keys::suCheckInterval, moduleID);
    if (stored.isNumber())
        return stored.toDouble();
    const QString version = shortVersion(bundle);
    if (isBetaVersion(version)) {
        TARNWELL_ZOK_LOG(
            u"[%1] Because the version string of \"%2\" contains an indicator it is a beta "
            "release, we are defaulting to checking for updates daily. If you wish to change it "
            "to a longer time, open the %3 prefpane in System Preferences."_s.arg(name, version,
                                                                                  name));
    }
    return defaultCheckInterval(bundle);
}

bool hasElapsed(const UpdateContext &context, double interval, const QString &moduleID, double now)
{
    if (interval < 0.0)
        return false;
    const plist::Value last = context.preferences.copyAppValue(keys::suLastCheckDate, moduleID);
    return !last.isDate() || now - last.toDate().absoluteTime >= interval;
}

/// The version is kept in 32 bits, whatever another program stored.
quint32 systemVersionOfLastCheck(const UpdateContext &context, const QString &moduleID)
{
    const plist::Value stored =
        context.preferences.copyAppValue(keys::suLastRunSystemVersion, moduleID);
    return stored.isNumber() ? quint32(stored.toInteger()) : 0;
}

bool isSystemUpdated(const UpdateContext &context, const QString &moduleID, const QString &name)
{
    const quint32 current = QXSystemVersionBCD(context.systemFacts, context.state);
    const quint32 stored = systemVersionOfLastCheck(context, moduleID);
    if (current == stored)
        return false;
    TARNWELL_ZOK_LOG(
        u"[%1] An update check for %2 needs to be performed. You have updated Mac OS X since the "
        "last %3 update check. Updates were last checked on 0x%4 but you're now running 0x%5"_s.arg(
            name, name, name, QString::number(stored, 16).toUpper(),
            QString::number(current, 16).toUpper()));
    return true;
}

} // namespace

int QXCheckForUpdatesIfDue(const UpdateContext &context,
                           const std::optional<foundation::Bundle> &bundle, bool automatic,
                           QString *launchedUpdater)
{
    if (hostingFrameworkUpdatesItself())
        return foundation::noErr;
    if (automatic && isExcludedHost(context))
        return foundation::noErr;
    if (!bundle)
        return foundation::paramErr;
    const QString moduleID = moduleIdentifier(*bundle);
    const QString name = productName(*bundle).toString();
    if (moduleID.isEmpty() || name.isEmpty())
        return foundation::noErr;
    context.state.productName = name;

    bool isValid = false;
    const bool checksAtAll =
        context.preferences.appBooleanValue(keys::suCheckForUpdates, moduleID, &isValid);
    if (!isValid)
        context.preferences.setAppValue(keys::suCheckForUpdates, true, moduleID);
    else if (!checksAtAll)
        return foundation::noErr;

    const double now = context.clock.absoluteTime();
    if (automatic) {
        const auto login = QXCopyLoginTime(context, moduleID);
        if (login && now - login->absoluteTime < graceAfterLogin)
            return foundation::noErr;
    }
    const double interval = checkInterval(context, *bundle, moduleID, name);
    if (!hasElapsed(context, interval, moduleID, now) && !isSystemUpdated(context, moduleID, name))
        return foundation::noErr;
    // Noted first: an updater that cannot start must not be tried again and again.
    QXRecordUpdateCheck(context, moduleID);
    return QXLaunchUpdater(context, bundle, moduleID, launchedUpdater);
}

void QXRecordUpdateCheck(const UpdateContext &context, const QString &moduleID)
{
    const auto version = qint32(QXSystemVersionBCD(context.systemFacts, context.state));
    context.preferences.setAppValue(keys::suLastCheckDate,
                                    plist::Date{context.clock.absoluteTime()}, moduleID);
    context.preferences.setAppValue(keys::suLastRunSystemVersion, version, moduleID);
}

std::optional<plist::Date> QXCopyLoginTime(const UpdateContext &context, const QString &moduleID)
{
    if (moduleID.compare("com.varnit.zok"_L1, Qt::CaseInsensitive) != 0) {
        const auto login = context.session.loginTime();
        return login ? std::optional(plist::Date{*login}) : std::nullopt;
    }
    // The framework comes with a process, whose beginning is what it counts from.
    TARNWELL_ZOK_LOG(u"[QXVC] pid is %1"_s.arg(context.session.processId()));
    int error = 0;
    const auto start = context.session.processStartTime(&error);
    if (error != 0) {
        errno = error;
        std::perror("sysctl");
    }
    if (!start)
        return std::nullopt;
    TARNWELL_ZOK_LOG(u"[QXVC] Start time: %1"_s.arg(qint64(*start)));
    const plist::Date date{double(qint64(*start)) - ports::Clock::absoluteTimeIntervalSince1970};
    TARNWELL_ZOK_LOG(plist::description(date));
    return date;
}

} // namespace tarnwell::update
