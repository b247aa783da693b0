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

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include <gtest/gtest.h>

#include <sys/wait.h>

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
    explicit OpenPane(const TemporaryHome &home)
        : m_bundle(*foundation::Bundle::open(QStringLiteral(TARNWELL_PANE_BUNDLE)))
        , m_desktop({m_bundle.path(), home.home(), home.root(), m_icon})
        , m_pane(withTimersAndFacts(m_desktop.ports(), timers, facts), m_desktop.identityCache(),
                 m_bundle)
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
    void checkedAMomentAgo() const
    {
        disk.writeInfo(
            domainName,
            {{u"SUCheckForUpdates"_s, true},
             {u"SUCheckInterval"_s, 604800.0},
             {u"SULastCheckDate"_s, plist::Date{desktop::SystemClock().absoluteTime() - 60.0}}},
            plist::Format::Binary);
    }
    plist::Value stored(const QString &key) const
    {
        QFile file(disk.path(domainName));
        return file.open(QIODevice::ReadOnly)
                   ? plist::read(file.readAll()).toDictionary().value(key)
                   : plist::Value();
    }

    /// Posts as a client of the bus that the pane knows nothing of.
    void post(const QString &object, const plist::Value &status) const
    {
        const plist::Dictionary userInfo{{u"Date"_s, plist::Date{0}}, {u"Status"_s, status}};
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
    const std::pair<const char *, quint32> users[] = {{"a user", 501}, {"root for a user", 0}};
    for (const auto &[name, realUserId] : users) {
        SCOPED_TRACE(name);
        checkedAMomentAgo();
        OpenPane pane(disk);
        pane.facts.control().realUserId = realUserId;
        ASSERT_TRUE(pane.isIdle());
        pane.button()->click();
        EXPECT_TRUE(pane.isChecking());
        ASSERT_TRUE(waitUntil([&] { return pane.isIdle(); }));
        EXPECT_EQ(pane.statuses.size(), 4) << qPrintable(pane.statuses.join(u'|'));
        EXPECT_TRUE(pane.status().endsWith(": No newer version is available."_L1))
            << qPrintable(pane.status());
        EXPECT_EQ(stored(u"SULastCheckStatus"_s),
                  plist::Value(u"No newer version is available."_s));
        EXPECT_LT(desktop::SystemClock().absoluteTime() -
                      stored(u"SULastCheckDate"_s).toDate().absoluteTime,
                  60.0);
    }
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

TEST_F(UpdaterProcess, EndsWithoutAWord)
{
    checkedAMomentAgo();
    disk.writeInfo(updater() + u"/Contents/Info.plist"_s, {{u"CFBundleExecutable"_s, u"run"_s}});
    disk.write(updater() + u"/Contents/Linux/run"_s, "#!/bin/sh\nexit 1\n", true);
    OpenPane pane(disk);
    pane.button()->click();
    EXPECT_TRUE(pane.isChecking());
    // The kernel tells of the end; from then on the pane waits as long as after a cancel.
    ASSERT_TRUE(
        waitUntil([&] { return pane.timers.control().scheduledIntervals().contains(2.0); }));
    pane.timers.control().advance(2.0);
    EXPECT_TRUE(pane.isIdle());
    EXPECT_TRUE(pane.status().endsWith(": The updater ended without a result."_L1))
        << qPrintable(pane.status());
    EXPECT_LE(::waitpid(-1, nullptr, WNOHANG), 0) << "nobody waits to be buried";
}

TEST_F(UpdaterProcess, StrangersOnTheBusDoNoHarm)
{
    useDemoUpdater("0.01");
    checkedAMomentAgo();
    OpenPane pane(disk);
    const QString before = pane.status();
    const QString module = u"com.varnit.tarnwell"_s;
    post(module, 7);
    post(u"com.varnit.other"_s, u"other"_s);
    post(module, QString(5'000'000, u'x'));
    ASSERT_TRUE(waitUntil([&] {
        return pane.statuses.size() >= 2 && !log.containing(u"it is too large"_s).isEmpty();
    }));
    EXPECT_EQ(pane.status(), before);
    post(module, QString(50'000, u'y'));
    ASSERT_TRUE(waitUntil([&] { return pane.status() != before; }));
    EXPECT_LE(pane.status().size(), 300);
}

} // namespace tarnwell::tests
