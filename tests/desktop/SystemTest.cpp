#include "desktop/LinuxSystemFacts.h"
#include "desktop/QtTimers.h"
#include "desktop/SystemClock.h"
#include "desktop/TestBus.h"

#include <QDir>

#include <gtest/gtest.h>

#include <sys/utsname.h>

#include <cmath>
#include <ctime>

using namespace tarnwell;
using namespace Qt::StringLiterals;
using desktop::LinuxSystemFacts;

namespace {

void writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
}

QList<int> version(const LinuxSystemFacts &facts)
{
    return {facts.gestalt(ports::fourCharacterCode("sys1")).value_or(-1),
            facts.gestalt(ports::fourCharacterCode("sys2")).value_or(-1),
            facts.gestalt(ports::fourCharacterCode("sys3")).value_or(-1)};
}

} // namespace

TEST(LinuxSystemFacts, TakesTheVersionOfTheDistribution)
{
    struct Row
    {
        const char *name;
        QByteArray release;
        QList<int> numbers;
    };
    const Row rows[] = {
        {"one number", "ID=debian\nVERSION_ID=\"12\"\n", {12, 0, 0}},
        {"two numbers", "VERSION_ID='22.04'\nVERSION=\"22.04 LTS\"", {22, 4, 0}},
        {"three, unquoted", "VERSION_ID=3.18.4\r\n", {3, 18, 4}},
        {"four", "VERSION_ID=1.2.3.4", {1, 2, 3}},
        {"letters after", "VERSION_ID=7.9-beta.3", {7, 9, 0}},
        {"a date", "VERSION_ID=20240101", {20240101, 0, 0}},
        // Kept in 31 bits, so that two moments still differ.
        {"a date and a time", "VERSION_ID=202401011230.1", {537548318, 1, 0}},
        {"a comment before", "#VERSION_ID=1\nMY_VERSION_ID=2\nVERSION_ID=3", {3, 0, 0}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const QTemporaryDir root;
        writeFile(root.filePath(u"etc/os-release"_s), row.release);
        const LinuxSystemFacts facts(root.path(), {});
        EXPECT_EQ(version(facts), row.numbers);
    }
}

TEST(LinuxSystemFacts, TakesTheKernelsVersionElse)
{
    utsname names{};
    ASSERT_EQ(::uname(&names), 0);
    const int major = std::atoi(names.release);
    for (const QByteArray &release :
         {QByteArray(), QByteArray("ID=arch\n"), QByteArray("VERSION_ID=\"\"\n"),
          QByteArray("VERSION_ID=rolling\n")}) {
        SCOPED_TRACE(release.toStdString());
        const QTemporaryDir root;
        if (!release.isEmpty())
            writeFile(root.filePath(u"usr/lib/os-release"_s), release);
        EXPECT_EQ(version(LinuxSystemFacts(root.path(), {})).first(), major);
    }
}

TEST(LinuxSystemFacts, KnowsNoOtherSelectors)
{
    const LinuxSystemFacts facts({}, {});
    EXPECT_EQ(facts.gestalt(ports::fourCharacterCode("sysv")), 0x1068);
    EXPECT_EQ(facts.gestalt(ports::fourCharacterCode("proc")), std::nullopt);
}

TEST(LinuxSystemFacts, FindsTheBundleAroundTheExecutable)
{
    const QTemporaryDir root;
    const QByteArray info = "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
                            "<string>com.varnit.test</string></dict></plist>";
    writeFile(root.filePath(u"Outer.app/Contents/Info.plist"_s), info);
    writeFile(root.filePath(u"Outer.app/Contents/Helpers/Inner.app/Contents/Info.plist"_s), info);
    struct Row
    {
        const char *name;
        QString executable;
        QString bundle;
    };
    const Row rows[] = {
        {"in a bundle", u"Outer.app/Contents/Linux/outer"_s, u"Outer.app"_s},
        {"in the nearest of two", u"Outer.app/Contents/Helpers/Inner.app/Contents/Linux/inner"_s,
         u"Outer.app/Contents/Helpers/Inner.app"_s},
        {"in none", u"bin/tool"_s, u"bin/tool"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        writeFile(root.filePath(row.executable), "");
        const LinuxSystemFacts facts({}, root.filePath(row.executable));
        EXPECT_EQ(facts.mainBundlePath(), root.filePath(row.bundle));
    }
}

TEST(SystemClock, CountsFromTheYear2001)
{
    const double unixTime = double(::time(nullptr));
    EXPECT_LT(std::abs(desktop::SystemClock().absoluteTime() + 978307200.0 - unixTime), 3600.0);
}

TEST(QtTimers, FiresOnceOrAgainAndAgain)
{
    desktop::QtTimers timers;
    int repeated = 0;
    int once = 0;
    const auto repeating = timers.scheduleRepeating(0.001, [&] { ++repeated; });
    const auto single = timers.scheduleOnce(0.0, [&] { ++once; });
    EXPECT_TRUE(single->isValid());
    ASSERT_TRUE(tests::waitUntil([&] { return repeated >= 3; }));
    EXPECT_EQ(once, 1);
    EXPECT_FALSE(single->isValid());
    EXPECT_TRUE(repeating->isValid());
    repeating->invalidate();
    EXPECT_FALSE(repeating->isValid());
}

TEST(QtTimers, AFunctionMayDestroyItsOwnTimer)
{
    desktop::QtTimers timers;
    std::unique_ptr<ports::Timer> timer;
    const std::string kept = "still here after the timer is gone";
    std::string copy;
    timer = timers.scheduleRepeating(0.0, [&timer, &copy, kept] {
        timer.reset();
        copy = kept;
    });
    ASSERT_TRUE(tests::waitUntil([&] { return !copy.empty(); }));
    EXPECT_EQ(copy, kept);
}

TEST(QtTimers, ADestroyedTimerDoesNotFire)
{
    desktop::QtTimers timers;
    bool fired = false;
    bool later = false;
    timers.scheduleOnce(0.0, [&] { fired = true; }).reset();
    const auto other = timers.scheduleOnce(0.001, [&] { later = true; });
    ASSERT_TRUE(tests::waitUntil([&] { return later; }));
    EXPECT_FALSE(fired);
}
