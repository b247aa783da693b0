#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <optional>

namespace tarnwell::samples {

/// What the updater is asked to do.
struct UpdaterOptions
{
    QString bundlePath; ///< the plug-in whose updates are looked for
    QString home;       ///< whose settings the result goes to
    double step = 1.0;  ///< seconds that each part of the check takes
};

/// Reads "BUNDLE" or "-u USER --bundle BUNDLE". The environment's TARNWELL_HOME names another home
/// than the user's own, and VARNIT_UPDATER_STEP another pace. Nothing for any other command line.
std::optional<UpdaterOptions> parseOptions(const QStringList &arguments,
                                           const QProcessEnvironment &environment);

} // namespace tarnwell::samples
