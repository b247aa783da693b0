// The pane, the updater and the bus as three processes: this one is the pane's.

#include "desktop/CapturedLog.h"
#include "desktop/TestBus.h"
#include "fakes/FakeHostApplication.h"
#include "fakes/FakeSystemFacts.h"
#include "fakes/FakeTimers.h"
#include "foundation/plist/PropertyList.h"
#include "pane/PaneDesktop.h"
#include "pane/TarnwellPref.h"
#include "ports/Clock.h"
#include "ports/NotificationCenter.h"
#include "ports/Preferences.h"
#include "prefs/PreferenceKeys.h"
#include "support/TemporaryHome.h"
#include "update/UpdaterLaunch.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

ports::Desktop withTimersAndFacts(const ports::Desktop &real, ports::Timers &timers,
                                  ports::SystemFacts &facts)
{
    return {real.preferences,
            real.applications,
            real.fileManager,
            real.bookmarks,
            real.keyboardLayouts,
            real.localNotifications,
            real.distributedNotifications,
            real.workspace,
            real.clock,
            timers,
            facts,
            real.hostApplication,
            real.sheets,
            real.openPanel,
            real.httpFetcher,
            real.tasks,
            real.fileStore,
            real.session,
            real.lockFiles,
            real.globalShortcuts,
            real.folders,
            real.windowServer};
}

/// A pane as its bundle makes it, but for the timers, and for being an ordinary user's.
class OpenPane
{
public:
    explicit OpenPane(const TemporaryHome &home, bool hasRealTimers = false)
        : m_bundle(*foundation::Bundle::open(QStringLiteral(TARNWELL_PANE_BUNDLE)))
        , m_desktop({m_bundle.path(), home.home(), home.root(), m_icon})
        , m_pane(withTimersAndFacts(m_desktop.ports(),
                                    hasRealTimers ? m_desktop.ports().timers : timers, facts),
                 m_desktop.identityCache(), m_bundle)
    {
        m_desktop.setMissedNotificationsHandler([this] { m_joined = true; });
        QString error;
        m_view.reset(m_pane.loadMainView(&error));
        if (!m_view)
            qFatal("%s", qPrintable(error));
        m_pane.mainViewDidLoad();
        m_pane.willSelect();
        m_view->show();
        m_statusObserver = m_desktop.ports().distributedNotifications.addObserver(
            u"com.varnit.updater.statuschange"_s, std::nullopt,
            [this](const ports::Notification &sent) {
                statuses.append(sent.userInfo.toDictionary().value(u"Status"_s).toString());
            });
        waitUntil([this] { return m_joined; });
    }

    template <typename Widget>
    Widget *find(const QString &name) const
    {
        return m_view->findChild<Widget *>(name);
    }
    QPushButton *button() const { return find<QPushButton>(u"checkNow"_s); }
    QString status() const { return find<QLabel>(u"lastStatus"_s)->text(); }
    bool isIdle() const
    {
        return button()->property("tag") == 0 && button()->isEnabled() &&
               find<QProgressBar>(u"progessBar"_s)->isHidden();
    }
    bool isChecking() const
    {
        return button()->property("tag") == 1 && !find<QProgressBar>(u"progessBar"_s)->isHidden();
    }

    QStringList statuses; ///< every one that came over the bus
    fakes::FakeTimers timers;
    fakes::FakeSystemFacts facts;

private:
    fakes::FakeHostApplication m_icon;
    foundation::Bundle m_bundle;
    pane::PaneDesktop m_desktop;
    std::unique_ptr<QWidget> m_view; // outlives the pane
    bool m_joined = false;
    std::unique_ptr<ports::Observation> m_statusObserver;
    pane::TarnwellPref m_pane;
};

} // namespace

class UpdaterProcess : public testing::Test
{
protected:
    void SetUp() override
    {
        qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toUtf8());
        disk.writeInfo(
            plugin + u"/Contents/Info.plist"_s,
            {{u"CFBundleName"_s, u"Tarnwell"_s}, {u"ZOKModuleID"_s, u"com.varnit.tarnwell"_s}});
        disk.makeFolder(plugin + u"/Contents/Resources"_s);
        disk.makeFolder(u"~/Library/Preferences"_s);
    }
    void TearDown() override
    {
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        qunsetenv("VARNIT_UPDATER_STEP");
    }

    QString updater() const { return plugin + u"/Contents/Resources/Varnit Updater.app"_s; }

    /// The updater of the demo, each step of which takes so many seconds.
    void useDemoUpdater(const QByteArray &step) const
    {
        qputenv("VARNIT_UPDATER_STEP", step);
        ASSERT_TRUE(QFile::link(QStringLiteral(TARNWELL_DEMO_UPDATER), disk.path(updater())));
    }
    void useScript(const QByteArray &script, bool executable = true) const
    {
        disk.writeInfo(updater() + u"/Contents/Info.plist"_s,
                       {{u"CFBundleExecutable"_s, u"run"_s}});
        disk.write(updater() + u"/Contents/Linux/run"_s, "#!/bin/sh\n" + script, executable);
    }

    void writeDomain(const plist::Dictionary &domain) const
    {
        disk.writeInfo(domainName, domain, plist::Format::Binary);
    }
    void checkedAMomentAgo() const
    {
        writeDomain(
            {{u"SUCheckForUpdates"_s, true},
             {u"SUCheckInterval"_s, 604800.0},
             {u"SULastCheckDate"_s, plist::Date{desktop::SystemClock().absoluteTime() - 60.0}}});
    }
    plist::Value stored(const QString &key) const
    {
        QFile file(disk.path(domainName));
        return file.open(QIODevice::ReadOnly)
                   ? plist::read(file.readAll()).toDictionary().value(key)
                   : plist::Value();
    }

    /// Posts as a client of the bus that the pane knows nothing of.
    void post(const QString &object, const plist::Value &userInfo) const
    {
        auto client = QDBusConnection::connectToBus(bus.address(), u"stranger"_s);
        auto signal =
            QDBusMessage::createSignal(u"/com/varnit/DistributedNotifications"_s,
                                       u"com.varnit.DistributedNotifications"_s, u"Posted"_s);
        signal << u"com.varnit.updater.statuschange"_s << object
               << QString::fromUtf8(plist::write(userInfo, plist::Format::Xml));
        ASSERT_TRUE(client.send(signal));
        client.interface()->isServiceRegistered(u"org.freedesktop.DBus"_s);
        QDBusConnection::disconnectFromBus(u"stranger"_s);
    }

    const QString plugin = u"~/Library/Hullforges/Tarnwell.zok"_s;
    const QString domainName = u"~/Library/Preferences/com.varnit.tarnwell.plist"_s;
    TestBus bus;
    TemporaryHome disk;
    CapturedLog log;
};

TEST_F(UpdaterProcess, ReportsToThePaneUntilItIsDone)
{
    useDemoUpdater("0.01");
    checkedAMomentAgo();
    OpenPane pane(disk);
    ASSERT_TRUE(pane.isIdle());
    pane.button()->click();
    EXPECT_TRUE(pane.isChecking());
    ASSERT_TRUE(waitUntil([&] { return pane.isIdle(); }));
    EXPECT_EQ(pane.statuses,
              (QStringList{u"Looking for the server…"_s, u"Asking for the newest version…"_s,
                           u"Comparing versions…"_s, u"No newer version is available."_s}));
    EXPECT_TRUE(pane.status().endsWith(": No newer version is available."_L1))
        << qPrintable(pane.status());
    EXPECT_EQ(stored(u"SULastCheckStatus"_s), plist::Value(u"No newer version is available."_s));
    EXPECT_LT(desktop::SystemClock().absoluteTime() -
                  stored(u"SULastCheckDate"_s).toDate().absoluteTime,
              60.0);
}

TEST_F(UpdaterProcess, StopsWhenTheUserCancels)
{
    useDemoUpdater("60");
    checkedAMomentAgo();
    OpenPane pane(disk);
    pane.button()->click();
    ASSERT_TRUE(waitUntil([&] { return !pane.statuses.isEmpty(); }));
    pane.button()->click();
    EXPECT_FALSE(pane.button()->isEnabled());
    // No timer fires here: it is the updater that says it is over.
    ASSERT_TRUE(waitUntil([&] { return pane.isIdle(); }));
    EXPECT_EQ(pane.statuses.last(), u"The check was cancelled."_s);
    EXPECT_EQ(stored(u"SULastCheckStatus"_s), plist::Value(u"The check was cancelled."_s));
}

TEST_F(UpdaterProcess, IsToldForWhomRootActs)
{
    useDemoUpdater("0.01");
    checkedAMomentAgo();
    OpenPane pane(disk);
    pane.facts.control().realUserId = 0;
    pane.button()->click();
    ASSERT_TRUE(waitUntil([&] { return pane.isIdle(); }));
    EXPECT_EQ(pane.statuses.size(), 4);
}

/// The one test that lets real time pass.
TEST_F(UpdaterProcess, IsNotWaitedForLongAfterACancel)
{
    useScript("kill -9 $$\n");
    checkedAMomentAgo();
    OpenPane pane(disk, true);
    pane.button()->click();
    ASSERT_TRUE(pane.isChecking());
    pane.button()->click();
    QElapsedTimer time;
    time.start();
    ASSERT_TRUE(waitUntil([&] { return pane.isIdle(); }));
    EXPECT_GE(time.elapsed(), 1950);
}

TEST_F(UpdaterProcess, IsStartedByItselfWhenACheckIsDue)
{
    useDemoUpdater("0.01");
    writeDomain({{u"SULastCheckDate"_s, plist::Date{0}}});
    OpenPane pane(disk);
    EXPECT_TRUE(pane.isChecking());
    EXPECT_TRUE(pane.status().endsWith(": Checking..."_L1)) << qPrintable(pane.status());
    pane.timers.control().advance(9.9);
    EXPECT_TRUE(pane.statuses.isEmpty());
    pane.timers.control().advance(0.1);
    ASSERT_TRUE(waitUntil([&] { return pane.isIdle(); }));
    EXPECT_EQ(pane.statuses.size(), 4);
    EXPECT_EQ(stored(u"SUCheckInterval"_s), plist::Value(604800.0));
}

TEST_F(UpdaterProcess, StrangersOnTheBusDoNoHarm)
{
    useDemoUpdater("0.01");
    checkedAMomentAgo();
    OpenPane pane(disk);
    const QString before = pane.status();
    const QString module = u"com.varnit.tarnwell"_s;
    const plist::Date date{0};
    post(module, plist::Dictionary{{u"Status"_s, u"no date"_s}});
    post(module, plist::Dictionary{{u"Date"_s, date}, {u"Status"_s, 7}});
    post(u"com.varnit.other"_s, plist::Dictionary{{u"Date"_s, date}, {u"Status"_s, u"other"_s}});
    post(module, plist::Dictionary{{u"Date"_s, date}, {u"Status"_s, QString(5'000'000, u'x')}});
    ASSERT_TRUE(waitUntil([&] {
        return pane.statuses.size() >= 3 && !log.containing(u"it is too large"_s).isEmpty();
    }));
    EXPECT_EQ(pane.status(), before);
    post(module, plist::Dictionary{{u"Date"_s, date}, {u"Status"_s, QString(900'000, u'y')}});
    ASSERT_TRUE(waitUntil([&] { return pane.status() != before; }));
    EXPECT_LE(pane.status().size(), 300);
}

/// What may stand in the way of a launch, on a real disk.
struct DiskFault
{
    const char *name;
    std::function<void(const TemporaryHome &)> arrange;
    QString script; ///< of the updater; a null one for no updater at all
    bool isExecutable;
    int status;
    QString logs;
};

class DiskFaults : public UpdaterProcess, public testing::WithParamInterface<DiskFault>
{};

const QString lockName = u"/tmp/com.varnit.tarnwell.updater.lock"_s;

TEST_P(DiskFaults, HarmNobodysFile)
{
    const DiskFault &fault = GetParam();
    disk.write(u"/precious"_s, "precious");
    fault.arrange(disk);
    const bool hadLock =
        QFileInfo(disk.path(lockName)).isSymLink() || QFileInfo::exists(disk.path(lockName));
    if (!fault.script.isNull())
        useScript(fault.script.toUtf8(), fault.isExecutable);

    fakes::FakeHostApplication icon;
    pane::PaneDesktop desktop(
        {QStringLiteral(TARNWELL_PANE_BUNDLE), disk.home(), disk.root(), icon});
    const ports::Desktop ports = desktop.ports();
    fakes::FakeSystemFacts facts;
    update::UpdateProcessState state;
    const update::UpdateContext context{ports.preferences,
                                        ports.applications,
                                        ports.fileManager,
                                        ports.clock,
                                        facts,
                                        ports.session,
                                        ports.lockFiles,
                                        state};
    EXPECT_EQ(update::QXLaunchUpdater(context, foundation::Bundle::open(disk.path(plugin)),
                                      u"com.varnit.tarnwell"_s, nullptr),
              fault.status);
    EXPECT_FALSE(log.containing(fault.logs).isEmpty()) << qPrintable(log.lines().join(u'\n'));
    QFile precious(disk.path(u"/precious"_s));
    ASSERT_TRUE(precious.open(QIODevice::ReadOnly));
    EXPECT_EQ(precious.readAll(), "precious");
    const QFileInfo lock(disk.path(lockName));
    EXPECT_EQ(lock.isSymLink() || lock.exists(), hadLock)
        << "somebody's lock, and only that, stays";
}

const DiskFault diskFaults[] = {
    {"nothing", [](const TemporaryHome &) {}, u"exit 0\n"_s, true, 0, u"Launched the updater at"_s},
    {"crashes_at_once", [](const TemporaryHome &) {}, u"kill -9 $$\n"_s, true, 0,
     u"Launched the updater at"_s},
    {"updater_is_missing",
     [](const TemporaryHome &) {},
     {},
     true,
     0,
     u"Checking for updated versions of Tarnwell"_s},
    {"updater_is_not_executable", [](const TemporaryHome &) {}, u"exit 0\n"_s, false, 0,
     u"error -10810 occurring"_s},
    {"lock_left_by_a_crash", [](const TemporaryHome &disk) { disk.write(lockName, {}); },
     u"exit 0\n"_s, true, 0, u"Someone else is updating"_s},
    {"lock_is_a_link",
     [](const TemporaryHome &disk) {
         disk.makeFolder(u"/tmp"_s);
         QFile::link(disk.path(u"/precious"_s), disk.path(lockName));
     },
     u"exit 0\n"_s, true, 0, u"Someone else is updating"_s},
    {"folder_is_a_file", [](const TemporaryHome &disk) { disk.write(u"/tmp"_s, {}); },
     u"exit 0\n"_s, true, -120, u"Checking for updated versions of Tarnwell"_s},
};

INSTANTIATE_TEST_SUITE_P(Rows, DiskFaults, testing::ValuesIn(diskFaults),
                         [](const auto &row) { return std::string(row.param.name); });

} // namespace tarnwell::tests
