#pragma once

#include "foundation/Bundle.h"
#include "ports/LockFiles.h"
#include "update/UpdateContext.h"

#include <QString>

#include <memory>
#include <optional>

namespace tarnwell::update {

/// What came of a launch.
struct UpdaterLaunch
{
    int status = 0;       ///< as QXLaunchUpdater() returns it
    QString updater;      ///< where the one is that was started; empty when none was
    qint64 processId = 0; ///< of that one; 0 where it is not known
    std::unique_ptr<ports::StandingLock> lock; ///< another's, which kept it from starting
};

/// Does what QXLaunchUpdater() does, and tells more.
UpdaterLaunch launchUpdater(const UpdateContext &context,
                            const std::optional<foundation::Bundle> &bundle,
                            const QString &moduleID);

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
