#pragma once

#include "foundation/Bundle.h"
#include "update/UpdateContext.h"

#include <QString>

#include <optional>

namespace tarnwell::update {

/// Starts the updater that a plug-in's bundle brings along, for one module.
///
/// A lock file that exists while the updater is being started keeps others from starting it, too;
/// a lock that is there already is another's business and no error. Returns -50 without a bundle
/// or a module, the error of finding the lock's folder or of making the lock, or else that of
/// removing it; whether the updater really started is only logged. Its location is stored in the
/// last argument, which may be null.
int QXLaunchUpdater(const UpdateContext &context, const std::optional<foundation::Bundle> &bundle,
                    const QString &moduleID, QString *launchedUpdater);

} // namespace tarnwell::update
