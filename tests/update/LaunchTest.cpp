#include "update/UpdaterLaunch.h"

#include "UpdateFixture.h"
#include "support/RowName.h"

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

using Launch = UpdateFixture;
using Opened = fakes::FakeApplicationsControl::Opened;

TEST_F(Launch, DependsOnWhoAsks)
{
    const foundation::Bundle bundle = plugin();
    const Opened withPlugin{updaterPath(), bundle.path()};
    struct Row
    {
        const char *name;
        quint32 real, effective;
        QList<Opened> opened;
    };
    const Row rows[] = {
        {"a user", 501, 501, {withPlugin}},
        {"a user with root's rights", 501, 0, {withPlugin}},
        {"root", 0, 0, {}},
        {"root for a user",
         0,
         501,
         {{updaterPath(), {}, {u"-u"_s, u"501"_s, u"--bundle"_s, bundle.path()}}}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        applications.control().opened.clear();
        lockFiles.control().everCreated.clear();
        systemFacts.control().realUserId = row.real;
        systemFacts.control().effectiveUserId = row.effective;
        QString launched;
        const CapturedLog log;
        EXPECT_EQ(update::QXLaunchUpdater(context(), bundle, moduleID, &launched), 0);
        EXPECT_EQ(log.containing(u"Resources/Varnit%20Updater.app/"_s).size(), row.opened.size());
        EXPECT_EQ(opened(), row.opened);
        EXPECT_EQ(launched, row.opened.isEmpty() ? QString() : updaterPath());
        EXPECT_EQ(lockFiles.control().everCreated, QStringList{lockPath});
        EXPECT_TRUE(lockFiles.control().existing.isEmpty())
            << "the lock lasts as long as the launch";
    }
}

/// What goes wrong, what the caller learns of it, and the last line of the log.
struct LaunchFault
{
    const char *name;
    std::function<void(fakes::FakeLockFilesControl &, fakes::FakeApplicationsControl &)> arrange;
    QString moduleID;
    int status;
    QString lastLine;
    bool leavesLock = false;
    bool mayHaveStarted = false;
    bool hasUpdater = true;
};

class LaunchFaults : public UpdateFixture, public testing::WithParamInterface<LaunchFault>
{};

TEST_P(LaunchFaults, AreReported)
{
    const LaunchFault &fault = GetParam();
    const foundation::Bundle bundle = plugin();
    if (!fault.hasUpdater)
        disk.remove(updaterName());
    fault.arrange(lockFiles.control(), applications.control());
    QString launched;
    CapturedLog log;
    EXPECT_EQ(update::QXLaunchUpdater(context(), bundle, fault.moduleID, &launched), fault.status);
    EXPECT_EQ(!opened().isEmpty(), fault.mayHaveStarted);
    EXPECT_EQ(launched.isEmpty(), !fault.mayHaveStarted);
    EXPECT_EQ(!lockFiles.control().existing.isEmpty(), fault.leavesLock);
    const QString line = log.lines().isEmpty() ? QString() : log.lines().last();
    EXPECT_TRUE(line.startsWith(fault.lastLine)) << qPrintable(line);
    EXPECT_TRUE(preferences.control().writes().isEmpty());
}

using Locks = fakes::FakeLockFilesControl;
using Apps = fakes::FakeApplicationsControl;

const QString checking = u"[Tarnwell] Checking for updated versions of Tarnwell ("_s;

const QString notRun = u"[Tarnwell] Could not run the updater as the updater lock file ("_s;
const QString notMade = u"[Tarnwell] Could not create the updater lock file ("_s;
const QString notRemoved = u"[Tarnwell] Could not delete the updater lock file ("_s;
const QString notLaunched = u"[Tarnwell] Could not launch the updater (file://"_s;
const QString module = u"com.varnit.tarnwell"_s;

const auto nothing = [](Locks &, Apps &) {};

const LaunchFault launchFaults[] = {
    {"somebody_else_is_updating",
     [](Locks &locks, Apps &) {
         locks.existing.append(u"/tmp/com.varnit.tarnwell.updater.lock"_s);
     },
     module, 0, notRun, true},
    {"no_folder_for_the_lock", [](Locks &locks, Apps &) { locks.folderStatus = -120; }, module,
     -120, checking},
    {"a_folder_nobody_may_write_in", [](Locks &locks, Apps &) { locks.createStatus = -5000; },
     module, -5000, notMade},
    {"a_lock_that_stays", [](Locks &locks, Apps &) { locks.removeStatus = -5000; }, module, -5000,
     notRemoved, true, true},
    {"an_updater_that_does_not_start", [](Locks &, Apps &apps) { apps.openStatus = -10810; },
     module, 0, notLaunched},
    {"no_updater", nothing, module, 0, checking, false, false, false},
    {"a_module_elsewhere", nothing, u"../../home/somebody/file"_s, -37, checking},
    {"a_module_of_a_long_name", nothing, QString(300, u'x'), -37, checking},
    {"a_module_with_a_nul", nothing, u"com.varnit"_s + QChar(0), -37, checking},
    {"a_module_without_a_name", nothing, u""_s, -50, {}},
};

INSTANTIATE_TEST_SUITE_P(Rows, LaunchFaults, testing::ValuesIn(launchFaults), RowName());

} // namespace tarnwell::tests
