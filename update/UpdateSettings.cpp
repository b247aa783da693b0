#include "update/UpdateSettings.h"

#include "foundation/Logging.h"
#include "ports/Preferences.h"
#include "prefs/PreferenceKeys.h"
#include "update/UpdateModule.h"

#include <QFileInfo>

namespace tarnwell::update {

using namespace Qt::StringLiterals;
namespace keys = prefs::keys;

StoredUpdateSettings storedSettings(const ports::Preferences &preferences, const QString &moduleID)
{
    StoredUpdateSettings stored;
    bool isValid = false;
    const bool automatically =
        preferences.appBooleanValue(keys::suCheckForUpdates, moduleID, &isValid);
    if (isValid)
        stored.checksAutomatically = automatically;
    const plist::Value interval = preferences.copyAppValue(keys::suCheckInterval, moduleID);
    if (interval.isNumber()) // not-a-number included
        stored.interval = interval.toDouble() >= 1.0 ? interval.toDouble() : oneWeek;
    return stored;
}

UpdateSettings settingsWithDefaults(ports::Preferences &preferences, const QString &moduleID,
                                    const foundation::Bundle &bundle)
{
    const StoredUpdateSettings stored = storedSettings(preferences, moduleID);
    UpdateSettings settings;
    settings.checksAutomatically = stored.checksAutomatically.value_or(true);
    if (!stored.checksAutomatically) {
        settings.wroteDefaults = true;
        preferences.setAppValue(keys::suCheckForUpdates, true, moduleID);
    }

    if (stored.interval) {
        settings.interval = *stored.interval;
        return settings;
    }
    const QString version = shortVersion(bundle);
    if (isBetaVersion(version)) {
        const QString executable = bundle.infoValue(u"CFBundleExecutable"_s).toString();
        TARNWELL_SYSTEM_LOG(
            u"[%1] Because the version stirng of \"%2\" contains an indicator it is a beta "
            "release, we are defaulting to checking for updates daily."_s.arg(
                executable.isEmpty() ? QFileInfo(bundle.path()).fileName() : executable, version));
    }
    settings.interval = defaultCheckInterval(bundle);
    settings.wroteDefaults = true;
    preferences.setAppValue(keys::suCheckInterval, settings.interval, moduleID);
    return settings;
}

bool isCheckDue(const plist::Value &lastCheckDate, double interval, double now)
{
    return !lastCheckDate.isDate() || lastCheckDate.toDate().absoluteTime + interval < now;
}

int indexOfInterval(const QList<qint64> &offered, double interval)
{
    const qint64 seconds = plist::Value(interval).toInteger();
    int index = 0;
    for (int i = 0; i < offered.size(); ++i) {
        if (offered.at(i) != 0 && offered.at(i) <= seconds)
            index = i;
    }
    return index;
}

} // namespace tarnwell::update
