#include "desktop/LinuxSession.h"

#include "desktop/SilentBus.h"
#include "desktop/TestBus.h"
#include "ports/Clock.h"
#include "support/TemporaryHome.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QSemaphore>
#include <QThread>

#include <gtest/gtest.h>

#include <cstring>
#include <ctime>
#include <pwd.h>
#include <unistd.h>
#include <utmpx.h>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

constexpr int patience = 60000; // milliseconds; only a failing test waits that long
constexpr double epoch = ports::Clock::absoluteTimeIntervalSince1970;
const QString nowhere = u"unix:path=/nonexistent/bus"_s;

/// Stands in for the login service: one session, of which it tells when it began.
class LoginService final : public QDBusVirtualObject
{
public:
    explicit LoginService(const QVariant &timestamp)
        : m_timestamp(timestamp)
    {}

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.arguments() !=
            QVariantList{u"org.freedesktop.login1.Session"_s, u"Timestamp"_s})
            return false;
        return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(m_timestamp))));
    }

private:
    QVariant m_timestamp;
};

/// The service on a thread of its own, as the question blocks.
class LoginThread final : public QThread
{
public:
    LoginThread(const QString &address, const QVariant &timestamp)
        : m_address(address)
        , m_timestamp(timestamp)
    {
        start();
        m_isReady.acquire();
    }
    ~LoginThread() override
    {
        quit();
        wait();
    }

private:
    void run() override
    {
        LoginService service(m_timestamp);
        QDBusConnection bus = QDBusConnection::connectToBus(m_address, u"login"_s);
        EXPECT_TRUE(bus.registerVirtualObject(u"/org/freedesktop/login1/session/auto"_s, &service));
        EXPECT_TRUE(bus.registerService(u"org.freedesktop.login1"_s));
        m_isReady.release();
        exec();
        QDBusConnection::disconnectFromBus(u"login"_s);
    }

    QString m_address;
    QVariant m_timestamp;
    QSemaphore m_isReady;
};

QByteArray record(short type, const char *user, int seconds)
{
    utmpx entry{};
    entry.ut_type = type;
    std::strncpy(entry.ut_user, user, sizeof entry.ut_user - 1);
    entry.ut_tv.tv_sec = seconds;
    entry.ut_tv.tv_usec = 500000;
    return {reinterpret_cast<const char *>(&entry), qsizetype(sizeof entry)};
}

} // namespace

TEST(Session, TheLoginServiceKnowsWhenItBegan)
{
    const TestBus bus;
    ASSERT_TRUE(bus.isRunning());
    const TemporaryHome disk;
    const desktop::LinuxSession session(disk.root(), bus.address(), patience);
    EXPECT_EQ(session.loginTime(), std::nullopt) << "without a service";
    {
        const LoginThread service(bus.address(), QVariant(qulonglong(978307201500000ULL)));
        EXPECT_EQ(session.loginTime(), 1.5);
    }
    {
        const LoginThread service(bus.address(), QVariant(u"yesterday"_s));
        EXPECT_EQ(session.loginTime(), std::nullopt);
    }
}

TEST(Session, ElseTheRecordsDo)
{
    const passwd *own = ::getpwuid(::getuid());
    if (!own)
        GTEST_SKIP() << "this user has no name";
    const TemporaryHome disk;
    const desktop::LinuxSession session(disk.root(), nowhere);
    EXPECT_EQ(session.loginTime(), std::nullopt) << "no records";

    disk.write(u"/run/utmp"_s, record(USER_PROCESS, "somebody_else", 1500000000) +
                                   record(BOOT_TIME, own->pw_name, 1600000000) +
                                   record(DEAD_PROCESS, own->pw_name, 1600000001));
    EXPECT_EQ(session.loginTime(), std::nullopt) << "none of a session of this user";

    disk.write(u"/run/utmp"_s, record(USER_PROCESS, own->pw_name, 1400000000) +
                                   record(USER_PROCESS, own->pw_name, 1500000000) +
                                   record(USER_PROCESS, own->pw_name, 1300000000) + "cut off");
    EXPECT_EQ(session.loginTime(), 1500000000.5 - epoch);

    const SilentBus silent;
    ASSERT_TRUE(silent.listens());
    const desktop::LinuxSession hasty(disk.root(), silent.address(), 50);
    EXPECT_TRUE(hasty.loginTime()) << "a bus that does not answer is not waited for";
}

TEST(Session, ThisProcessBeganAMomentAgo)
{
    const desktop::LinuxSession session({}, nowhere);
    EXPECT_EQ(session.processId(), ::getpid());
    int error = -1;
    const auto start = session.processStartTime(&error);
    EXPECT_EQ(error, 0);
    ASSERT_TRUE(start);
    const double age = double(std::time(nullptr)) - *start;
    EXPECT_GE(age, -5.0) << "the kernel's clock and the system's part a little";
    EXPECT_LE(age, 3600.0);
}

} // namespace tarnwell::tests
