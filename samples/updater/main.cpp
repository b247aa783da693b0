// Stands in for the maker's updater in the demo: it reports as the real one does, but it looks for
// nothing anywhere.

#include "desktop/DistributedNotifications.h"
#include "desktop/FilePreferences.h"
#include "desktop/QtTimers.h"
#include "desktop/SystemClock.h"
#include "foundation/Bundle.h"
#include "foundation/HomeFolder.h"
#include "foundation/StandardErrorLog.h"
#include "samples/updater/Check.h"
#include "samples/updater/Options.h"
#include "update/UpdateModule.h"

#include <QCoreApplication>

#include <cstdio>

using namespace tarnwell;

int main(int argc, char **argv)
{
    // The pane that started it may be gone, and its log with it, before the check is over.
    foundation::secureStandardStreams();
    const foundation::StandardErrorLog log;
    foundation::provideHome();
    QCoreApplication application(argc, argv);
    const auto options = samples::parseOptions(QCoreApplication::arguments().mid(1),
                                               QProcessEnvironment::systemEnvironment());
    const auto bundle = options ? foundation::Bundle::open(options->bundlePath) : std::nullopt;
    const QString moduleID = bundle ? update::moduleIdentifier(*bundle) : QString();
    if (moduleID.isEmpty()) {
        std::fputs("Usage: varnit-updater BUNDLE\n"
                   "       varnit-updater -u USER --bundle BUNDLE\n",
                   stderr);
        return 2;
    }

    const desktop::SystemClock clock;
    desktop::QtTimers timers;
    desktop::FilePreferences preferences(options->home, clock);
    desktop::DistributedNotifications center(timers);
    samples::Check check(preferences, center, timers, clock, moduleID);
    check.start(options->step, [] {
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    return QCoreApplication::exec();
}
