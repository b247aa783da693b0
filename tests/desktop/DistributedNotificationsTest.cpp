#include "desktop/DistributedNotifications.h"

#include "desktop/CapturedLog.h"
#include "desktop/SessionBus.h"
#include "desktop/SilentBus.h"
#include "desktop/TestBus.h"
#include "fakes/FakeTimers.h"
#include "foundation/plist/Array.h"
#include "foundation/plist/Dictionary.h"
#include "foundation/plist/PropertyList.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QProcess>

#include <gtest/gtest.h>

using namespace tarnwell;
using namespace Qt::StringLiterals;
using desktop::DistributedNotifications;
using ports::Notification;
using tests::CapturedLog;
using tests::ChildProcess;
using tests::SilentBus;
using tests::TestBus;
using tests::waitUntil;

namespace {

constexpr double longEnoughToJoin = 0.1;

/// Somebody else on the bus, who can also send what a notification centre would not.
class Stranger
{
public:
    explicit Stranger(const QString &address)
        : m_connection(QDBusConnection::connectToBus(address, connectionName()))
    {}
    ~Stranger() { QDBusConnection::disconnectFromBus(connectionName()); }
    Q_DISABLE_COPY_MOVE(Stranger)

    void send(const QVariantList &arguments)
    {
        QDBusMessage message =
            QDBusMessage::createSignal(u"/com/varnit/DistributedNotifications"_s,
                                       u"com.varnit.DistributedNotifications"_s, u"Posted"_s);
        message.setArguments(arguments);
        ASSERT_TRUE(m_connection.send(message));
    }

    /// Returns when the bus has passed on all that was sent.
    void flush()
    {
        m_connection.call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s,
                                                         u"/org/freedesktop/DBus"_s,
                                                         u"org.freedesktop.DBus"_s, u"GetId"_s));
    }

    /// Lets a centre hear all that was sent: the bus keeps the order, so that a last notification
    /// comes after all the others.
    void settle(DistributedNotifications &centre)
    {
        bool heard = false;
        const QString name = u"last %1"_s.arg(++m_settled);
        const auto last = centre.addObserver(name, {}, [&](auto &) { heard = true; });
        send({name, u""_s, u""_s});
        ASSERT_TRUE(waitUntil([&] { return heard; }));
    }

private:
    static QString connectionName() { return u"stranger"_s; }

    QDBusConnection m_connection;
    int m_settled = 0;
};

class DistributedNotificationsTest : public testing::Test
{
protected:
    DistributedNotificationsTest()
    {
        centre.setMissedNotificationsHandler([this] { ++joins; });
    }

    void SetUp() override { ASSERT_TRUE(bus.isRunning()); }

    void join()
    {
        const int before = joins;
        timers.control().advance(longEnoughToJoin);
        ASSERT_TRUE(waitUntil([&] { return joins > before; }));
    }

    auto observe(const QString &name, const std::optional<QString> &object = {})
    {
        return centre.addObserver(name, object,
                                  [this](const Notification &heard) { received.append(heard); });
    }

    QStringList receivedNames() const
    {
        QStringList names;
        for (const Notification &notification : received)
            names.append(notification.name + u'/' + notification.object);
        return names;
    }

    TestBus bus;
    fakes::FakeTimers timers;
    DistributedNotifications centre{timers, bus.address()};
    QList<Notification> received;
    int joins = 0;
};

plist::Dictionary richUserInfo()
{
    return {{u"When"_s, plist::Date{760000000.0}},
            {u"Status"_s, u"Zoë <&> 😀"_s},
            {u"Data"_s, QByteArray("\0\xff", 2)},
            {u"List"_s, plist::Array{1, 2.5, true}}};
}

} // namespace

TEST_F(DistributedNotificationsTest, TalksWithAnotherProcess)
{
    ChildProcess peer({TARNWELL_NOTIFICATION_PEER, bus.address().toLocal8Bit()});
    ASSERT_EQ(peer.readLine(), "joined");
    const auto pong = observe(u"pong"_s);
    join();
    centre.post({u"ping"_s, u"com.varnit.tarnwell"_s, richUserInfo()});
    ASSERT_TRUE(waitUntil([&] { return !received.isEmpty(); }));
    EXPECT_EQ(received.first().object, u"com.varnit.tarnwell"_s);
    EXPECT_EQ(received.first().userInfo, plist::Value(richUserInfo()));
}

TEST_F(DistributedNotificationsTest, HearsOtherPrograms)
{
    const auto status = observe(u"status"_s);
    join();
    QProcess gdbus;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address());
    gdbus.setProcessEnvironment(environment);
    gdbus.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    gdbus.start(u"gdbus"_s,
                {u"emit"_s, u"--session"_s, u"--object-path"_s,
                 u"/com/varnit/DistributedNotifications"_s, u"--signal"_s,
                 u"com.varnit.DistributedNotifications.Posted"_s, u"'status'"_s, u"''"_s,
                 u"'<plist version=\"1.0\"><dict><key>D</key><date>2001-01-01T00:01:00Z</date>"
                 "</dict></plist>'"_s});
    ASSERT_TRUE(waitUntil([&] { return !received.isEmpty(); }));
    EXPECT_EQ(received.first().userInfo,
              plist::Value(plist::Dictionary{{u"D"_s, plist::Date{60.0}}}));
    ASSERT_TRUE(waitUntil([&] { return gdbus.state() == QProcess::NotRunning; }));
    EXPECT_EQ(gdbus.exitCode(), 0);
}

TEST_F(DistributedNotificationsTest, TouchesNoBusBeforeTheEventLoop)
{
    const auto refresh = observe(u"refresh"_s);
    for (int i = 0; i < 10; ++i)
        QCoreApplication::processEvents();
    EXPECT_EQ(joins, 0);
    EXPECT_EQ(timers.control().scheduledIntervals().size(), 1);
}

TEST_F(DistributedNotificationsTest, FiltersByNameAndObject)
{
    const auto named = observe(u"status"_s, u"ours"_s);
    const auto unnamed = observe(u"refresh"_s);
    join();
    Stranger stranger(bus.address());
    for (const QString &name : {u"status"_s, u"refresh"_s, u"other"_s}) {
        for (const QString &object : {u"ours"_s, u"theirs"_s, u""_s})
            stranger.send({name, object, u""_s});
    }
    stranger.settle(centre);
    EXPECT_EQ(receivedNames(), (QStringList{u"status/ours"_s, u"refresh/ours"_s,
                                            u"refresh/theirs"_s, u"refresh/"_s}));
}

TEST_F(DistributedNotificationsTest, DeliversItsOwnPostOnceAndFromTheEventLoop)
{
    const auto refresh = observe(u"refresh"_s);
    join();
    centre.post({u"refresh"_s, u"a"_s, richUserInfo()});
    EXPECT_TRUE(received.isEmpty());
    Stranger(bus.address()).settle(centre); // The echo has been here by then.
    ASSERT_EQ(received.size(), 1);
    EXPECT_EQ(received.first().userInfo, plist::Value(richUserInfo()));
}

TEST_F(DistributedNotificationsTest, DeliversABurstOnce)
{
    const auto refresh = observe(u"refresh"_s);
    join();
    Stranger stranger(bus.address());
    for (int i = 0; i < 100; ++i)
        stranger.send({u"refresh"_s, u""_s, u""_s});
    // The bus has sent us all of them before it answers our own call.
    stranger.flush();
    centre.post({u"other"_s, {}, {}});
    stranger.settle(centre);
    EXPECT_GE(received.size(), 1);
    EXPECT_LE(received.size(), 5);
}

TEST_F(DistributedNotificationsTest, LosesNothingThatFindsNoRoom)
{
    const auto status = observe(u"status"_s);
    int refreshes = 0;
    const auto refresh = centre.addMergingObserver(u"refresh"_s, [&] { ++refreshes; });
    join();
    Stranger stranger(bus.address());
    QStringList sent;
    for (int i = 0; i < 3000; ++i) {
        sent.append(u"status/%1"_s.arg(i));
        stranger.send({u"refresh"_s, QString::number(i), u""_s});
        stranger.send({u"status"_s, QString::number(i), u""_s});
    }
    stranger.flush();
    stranger.settle(centre);
    EXPECT_EQ(receivedNames(), sent);
    EXPECT_GE(refreshes, 1);
}

TEST_F(DistributedNotificationsTest, TheBusHasWhatWasPostedBeforeTheEnd)
{
    const auto refresh = observe(u"refresh"_s);
    join();
    {
        DistributedNotifications other(timers, bus.address());
        for (const QString &object : {u"1"_s, u"2"_s})
            other.post({u"refresh"_s, object, {}});
    }
    Stranger(bus.address()).settle(centre);
    EXPECT_EQ(receivedNames(), (QStringList{u"refresh/1"_s, u"refresh/2"_s}));
}

TEST_F(DistributedNotificationsTest, DropsMalformedSignals)
{
    const auto refresh = observe(u"refresh"_s);
    join();
    Stranger stranger(bus.address());
    struct Row
    {
        const char *name;
        QVariantList arguments;
        QString logged;
    };
    const QString name = u"refresh"_s;
    const Row rows[] = {
        {"nothing", {}, u"three strings"_s},
        {"too few", {name, u""_s}, u"three strings"_s},
        {"too many", {name, u""_s, u""_s, u""_s}, u"three strings"_s},
        {"a number", {name, 1, u""_s}, u"three strings"_s},
        {"an object path",
         {name, QVariant::fromValue(QDBusObjectPath(u"/a"_s)), u""_s},
         u"three strings"_s},
        {"bytes", {name, u""_s, QByteArray("<plist/>")}, u"three strings"_s},
        {"no XML", {name, u""_s, u"hello"_s}, u"user info"_s},
        {"cut XML", {name, u""_s, u"<plist><dict>"_s}, u"user info"_s},
        {"an array", {name, u""_s, u"<plist><array/></plist>"_s}, u"user info"_s},
        {"too large", {name, u""_s, u"x"_s.repeated(1024 * 1024)}, u"too large"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        DistributedNotifications other(timers, bus.address());
        bool otherJoined = false;
        other.setMissedNotificationsHandler([&] { otherJoined = true; });
        const auto observer =
            other.addObserver(name, {}, [&](const Notification &heard) { received.append(heard); });
        timers.control().advance(longEnoughToJoin);
        ASSERT_TRUE(waitUntil([&] { return otherJoined; }));
        const CapturedLog log;
        for (int i = 0; i < 5; ++i)
            stranger.send(row.arguments);
        stranger.settle(other);
        EXPECT_TRUE(received.isEmpty());
        EXPECT_FALSE(log.containing(row.logged).isEmpty());
        EXPECT_LE(log.lines().size(), 2) << "one for each of the two centres";
    }
    stranger.send({name, u""_s, u"<plist><dict/></plist>"_s});
    stranger.settle(centre);
    EXPECT_EQ(received.size(), 1) << "a good one still comes through";
}

TEST_F(DistributedNotificationsTest, SurvivesObserversThatComeAndGoInAHandler)
{
    QStringList calls;
    std::unique_ptr<ports::Observation> first, second, third;
    first = centre.addObserver(u"refresh"_s, {}, [&](auto &) {
        calls.append(u"first"_s);
        first.reset();
        second.reset();
        third = centre.addObserver(u"refresh"_s, {}, [&](auto &) { calls.append(u"third"_s); });
    });
    second = centre.addObserver(u"refresh"_s, {}, [&](auto &) { calls.append(u"second"_s); });
    join();
    Stranger stranger(bus.address());
    centre.post({u"refresh"_s, {}, {}});
    stranger.settle(centre);
    EXPECT_EQ(calls, QStringList{u"first"_s});
    centre.post({u"refresh"_s, {}, {}});
    stranger.settle(centre);
    EXPECT_EQ(calls, (QStringList{u"first"_s, u"third"_s}));
}

TEST_F(DistributedNotificationsTest, JoinsABusThatComesBack)
{
    const auto refresh = observe(u"refresh"_s);
    join();
    const CapturedLog log;
    bus.die();
    ASSERT_TRUE(waitUntil([&] { return !timers.control().scheduledIntervals().isEmpty(); }));
    EXPECT_EQ(log.lines().size(), 1);

    centre.post({u"refresh"_s, u"meanwhile"_s, {}});
    ASSERT_TRUE(waitUntil([&] { return received.size() == 1; }));
    for (const double interval : {1.0, 2.0, 4.0, 8.0, 16.0, 30.0, 30.0}) {
        ASSERT_TRUE(waitUntil([&] { return !timers.control().scheduledIntervals().isEmpty(); }));
        EXPECT_EQ(timers.control().scheduledIntervals(), QList<double>{interval});
        timers.control().advance(interval);
    }
    ASSERT_TRUE(waitUntil([&] { return !timers.control().scheduledIntervals().isEmpty(); }));
    EXPECT_EQ(log.lines().size(), 1);

    bus.start();
    ASSERT_TRUE(bus.isRunning());
    timers.control().advance(30.0);
    ASSERT_TRUE(waitUntil([&] { return joins == 2; }));
    EXPECT_EQ(log.lines().size(), 2);
    Stranger stranger(bus.address());
    stranger.send({u"refresh"_s, u"again"_s, u""_s});
    ASSERT_TRUE(waitUntil([&] { return received.size() == 2; }));
    EXPECT_EQ(receivedNames().last(), u"refresh/again"_s);
}

TEST_F(DistributedNotificationsTest, APostJoinsAtOnceABusThatIsBack)
{
    const auto pong = observe(u"pong"_s);
    join();
    bus.die();
    ASSERT_TRUE(waitUntil([&] { return !timers.control().scheduledIntervals().isEmpty(); }));
    bus.start();
    ChildProcess peer({TARNWELL_NOTIFICATION_PEER, bus.address().toLocal8Bit()});
    ASSERT_EQ(peer.readLine(), "joined");
    centre.post({u"ping"_s, {}, {}});
    EXPECT_TRUE(waitUntil([&] { return received.size() == 1 && joins == 2; }));
}

TEST(DistributedNotificationsWithoutBus, ServesTheProcessAlone)
{
    struct Row
    {
        const char *name;
        QString address;
    };
    const Row rows[] = {
        {"nobody listens", u"unix:path=/nonexistent/bus"_s},
        {"not an address", u"nonsense"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const CapturedLog log;
        fakes::FakeTimers timers;
        DistributedNotifications centre(timers, row.address);
        int calls = 0;
        const auto refresh = centre.addObserver(u"refresh"_s, {}, [&](auto &) { ++calls; });
        timers.control().advance(100.0);
        centre.post({u"refresh"_s, {}, {}});
        centre.post({u"refresh"_s, {}, {}});
        EXPECT_EQ(calls, 0);
        ASSERT_TRUE(waitUntil([&] { return calls > 0; }));
        EXPECT_EQ(calls, 1);
        EXPECT_TRUE(waitUntil([&] { return !log.lines().isEmpty(); }));
        EXPECT_EQ(log.lines().size(), 1);
    }
}

TEST(DistributedNotificationsOnASilentBus, HoldUpNobody)
{
    const SilentBus silent;
    ASSERT_TRUE(silent.listens());
    const CapturedLog log;
    fakes::FakeTimers timers;
    DistributedNotifications centre(timers, silent.address());
    int calls = 0;
    const auto refresh = centre.addObserver(u"refresh"_s, {}, [&](auto &) { ++calls; });
    timers.control().advance(longEnoughToJoin);
    centre.post({u"refresh"_s, {}, {}});
    ASSERT_TRUE(waitUntil([&] { return calls > 0; }));
    EXPECT_EQ(log.lines(), QStringList()) << "nobody has waited for the end of the bus's time";
    EXPECT_TRUE(desktop::isSilentBus(silent.address(), 50));
}

TEST(SilentBus, IsNeitherOneThatAnswersNorNone)
{
    const TestBus bus;
    constexpr int muchTime = 60000;
    EXPECT_FALSE(desktop::isSilentBus(bus.address(), muchTime));
    EXPECT_FALSE(desktop::isSilentBus(u"unix:path=/nonexistent/bus"_s, muchTime));
}
