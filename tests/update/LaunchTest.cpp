#include "update/UpdaterLaunch.h"

#include "UpdateFixture.h"

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

using Launch = UpdateFixture;
using Opened = fakes::FakeApplicationsControl::Opened;

TEST_F(Launch, OpensTheUpdaterWithThePlugin)
{
    const foundation::Bundle bundle = plugin();
    QString launched;
    CapturedLog log;
    EXPECT_EQ(update::QXLaunchUpdater(context(), bundle, moduleID, &launched), 0);
    EXPECT_EQ(opened(), (QList<Opened>{{updaterPath(), bundle.path()}}));
    EXPECT_EQ(launched, updaterPath());
    EXPECT_EQ(lockFiles.control().everCreated, QStringList{lockPath});
    EXPECT_TRUE(lockFiles.control().existing.isEmpty()) << "the lock lasts as long as the launch";
    EXPECT_TRUE(preferences.control().synchronizedDomains().contains(moduleID));
    EXPECT_EQ(log.lines(),
              (QStringList{
                  u"[Tarnwell] Checking for updated versions of Tarnwell (com.varnit.tarnwell)"_s,
                  u"[Tarnwell] Launched the updater at file://"_s + updaterPath() + u"/"_s}));
}

TEST_F(Launch, DependsOnWhoAsks)
{
    const foundation::Bundle bundle = plugin();
    struct Row
    {
        const char *name;
        quint32 real, effective;
        QList<Opened> opened;
    };
    const Row rows[] = {
        {"a user", 501, 501, {{updaterPath(), bundle.path()}}},
        {"a user with root's rights", 501, 0, {{updaterPath(), bundle.path()}}},
        {"root", 0, 0, {}},
        {"root for a user",
         0,
         501,
         {{updaterPath(), {}, {u"-u"_s, u"501"_s, u"--bundle"_s, bundle.path()}}}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        applications.control().opened.clear();
        systemFacts.control().realUserId = row.real;
        systemFacts.control().effectiveUserId = row.effective;
        CapturedLog log;
        EXPECT_EQ(update::QXLaunchUpdater(context(), bundle, moduleID, nullptr), 0);
        EXPECT_EQ(opened(), row.opened);
        EXPECT_EQ(log.lines().size(), row.opened.isEmpty() ? 1 : 2);
        EXPECT_TRUE(lockFiles.control().existing.isEmpty());
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
};

class LaunchFaults : public UpdateFixture, public testing::WithParamInterface<LaunchFault>
{};

TEST_P(LaunchFaults, AreReported)
{
    const LaunchFault &fault = GetParam();
    const foundation::Bundle bundle = plugin();
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

const LaunchFault launchFaults[] = {
    {"somebody_else_is_updating",
     [](Locks &locks, Apps &) {
         locks.existing.append(u"/tmp/com.varnit.tarnwell.updater.lock"_s);
     },
     u"com.varnit.tarnwell"_s, 0,
     u"[Tarnwell] Could not run the updater as the updater lock file "
     "(/tmp/com.varnit.tarnwell.updater.lock) is already in existence. Someone else is updating. "
     "no error"_s,
     true},
    {"no_folder_for_the_lock", [](Locks &locks, Apps &) { locks.folderStatus = -120; },
     u"com.varnit.tarnwell"_s, -120, checking},
    {"a_folder_nobody_may_write_in", [](Locks &locks, Apps &) { locks.createStatus = -5000; },
     u"com.varnit.tarnwell"_s, -5000,
     u"[Tarnwell] Could not create the updater lock file "
     "(/tmp/com.varnit.tarnwell.updater.lock) due to error -5000. permission denied"_s},
    {"a_lock_that_stays", [](Locks &locks, Apps &) { locks.removeStatus = -5000; },
     u"com.varnit.tarnwell"_s, -5000,
     u"[Tarnwell] Could not delete the updater lock file "
     "(/tmp/com.varnit.tarnwell.updater.lock) due to error -5000. permission denied"_s,
     true, true},
    {"an_updater_that_does_not_start", [](Locks &, Apps &apps) { apps.openStatus = -10810; },
     u"com.varnit.tarnwell"_s, 0, u"[Tarnwell] Could not launch the updater (file://"_s},
    {"a_module_elsewhere", [](Locks &, Apps &) {}, u"../../home/somebody/file"_s, -37, checking},
    {"a_module_of_a_long_name", [](Locks &, Apps &) {}, QString(300, u'x'), -37, checking},
    {"a_module_with_a_nul", [](Locks &, Apps &) {}, u"com.varnit"_s + QChar(0), -37, checking},
    {"a_module_without_a_name", [](Locks &, Apps &) {}, u""_s, -50, {}},
};

INSTANTIATE_TEST_SUITE_P(Rows, LaunchFaults, testing::ValuesIn(launchFaults),
                         [](const auto &row) { return std::string(row.param.name); });

TEST_F(Launch, NothingStartsWithoutAnUpdaterInTheBundle)
{
    const foundation::Bundle bundle = plugin();
    disk.remove(updaterName());
    CapturedLog log;
    EXPECT_EQ(update::QXLaunchUpdater(context(), bundle, moduleID, nullptr), 0);
    EXPECT_TRUE(opened().isEmpty());
    EXPECT_EQ(log.lines().size(), 1) << "no line about a launch";
    EXPECT_TRUE(lockFiles.control().existing.isEmpty());
}

TEST_F(Launch, NeedsABundle)
{
    EXPECT_EQ(update::QXLaunchUpdater(context(), std::nullopt, moduleID, nullptr), -50);
}

TEST_F(Launch, KeepsTheNameOfTheProcess)
{
    state.productName = u"Hullforge"_s;
    CapturedLog log;
    update::QXLaunchUpdater(context(), plugin(), moduleID, nullptr);
    EXPECT_TRUE(log.lines().first().startsWith("[Hullforge] Checking for "_L1));
}

} // namespace tarnwell::tests
