#pragma once

#include "foundation/Bundle.h"
#include "foundation/plist/Value.h"

#include <QList>

#include <optional>

namespace tarnwell::ports {
class Preferences;
}

namespace tarnwell::update {

/// What is stored of a module's settings; nothing where that is absent or of another type.
struct StoredUpdateSettings
{
    std::optional<bool> checksAutomatically;
    std::optional<double> interval; ///< seconds, at least 1: less counts as a week
};

StoredUpdateSettings storedSettings(const ports::Preferences &preferences, const QString &moduleID);

/// The two settings of a module's checks.
struct UpdateSettings
{
    bool checksAutomatically = true;
    double interval = 0.0; ///< seconds between two checks, at least 1
    bool wroteDefaults = false;
};

/// Reads a module's settings, and writes a default for each that is absent or of another type.
/// Does not synchronise.
UpdateSettings settingsWithDefaults(ports::Preferences &preferences, const QString &moduleID,
                                    const foundation::Bundle &bundle);

/// Whether a check is due at a time, in seconds since 2001.
bool isCheckDue(const plist::Value &lastCheckDate, double interval, double now);

/// Which of the intervals on offer, in seconds, stands for the one in force: the last one that is
/// not longer, and no zero; the first when there is none.
int indexOfInterval(const QList<qint64> &offered, double interval);

} // namespace tarnwell::update
