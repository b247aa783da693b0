#pragma once

#include "foundation/Bundle.h"
#include "foundation/plist/Value.h"
#include "update/UpdateContext.h"

#include <QString>

#include <optional>

namespace tarnwell::update {

/// Starts the updater for a plug-in if a check is due.
///
/// A check that is automatic, made without the user asking from inside some application, is left
/// out in applications that are always there and in the first ten minutes after login. Returns 0
/// when nothing was to be done or the updater was started, -50 without a bundle, or the error of
/// QXLaunchUpdater(). The location of the started updater is stored in the last argument, which
/// may be null.
int QXCheckForUpdatesIfDue(const UpdateContext &context,
                           const std::optional<foundation::Bundle> &bundle, bool automatic,
                           QString *launchedUpdater);

/// Notes that a check begins now, under the system's present version. Does not synchronise.
void QXRecordUpdateCheck(const UpdateContext &context, const QString &moduleID);

/// When the user logged in, or, for the hosting framework itself, when this process began; nothing
/// when that is not known.
std::optional<plist::Date> QXCopyLoginTime(const UpdateContext &context, const QString &moduleID);

} // namespace tarnwell::update
