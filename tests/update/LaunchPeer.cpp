// One of several processes that want to start the updater at once. For each line that it is given
// it tries; it says "launching" when it got as far as that, and then waits for another line.

#include "desktop/BundleCache.h"
#include "desktop/LocalFileManager.h"
#include "desktop/LocalLockFiles.h"
#include "fakes/FakeApplications.h"
#include "fakes/FakeClock.h"
#include "fakes/FakePreferences.h"
#include "fakes/FakeSession.h"
#include "fakes/FakeSystemFacts.h"
#include "foundation/Logging.h"
#include "update/UpdaterLaunch.h"

#include <QCoreApplication>

#include <iostream>
#include <string>

using namespace tarnwell;

namespace {

bool readLine()
{
    std::string line;
    return bool(std::getline(std::cin, line));
}

/// Takes as long over a start as whoever reads our output wants it to.
class SlowApplications final : public fakes::FakeApplications
{
public:
    using fakes::FakeApplications::FakeApplications;

    int openApplication(const QString &, const QString &, qint64 *) override
    {
        std::cout << "launching" << std::endl;
        readLine();
        return 0;
    }
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc != 3)
        return 2;
    QLoggingCategory::setFilterRules(QStringLiteral("tarnwell.*=false"));
    const auto bundle = foundation::Bundle::open(QFile::decodeName(argv[2]));
    const desktop::BundleCache bundles;
    desktop::LocalFileManager fileManager({{}, QFile::decodeName(argv[1])}, bundles);
    desktop::LocalLockFiles lockFiles;
    const fakes::FakeHome home;
    SlowApplications applications(home);
    fakes::FakePreferences preferences;
    fakes::FakeClock clock;
    fakes::FakeSystemFacts systemFacts;
    fakes::FakeSession session;
    update::UpdateProcessState state;
    const update::UpdateContext context{preferences, applications, fileManager, clock,
                                        systemFacts, session,      lockFiles,   state};
    while (readLine()) {
        QString launched;
        const int status = update::QXLaunchUpdater(
            context, bundle, QStringLiteral("com.varnit.tarnwell"), &launched);
        std::cout << (launched.isEmpty() ? "refused " : "launched ") << status << std::endl;
    }
    return 0;
}
