// Several processes that want to start the updater at the same moment.

#include "desktop/ChildProcess.h"
#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

class Race : public testing::Test
{
protected:
    void SetUp() override
    {
        disk.writeInfo(plugin + u"/Contents/Info.plist"_s, {{u"CFBundleName"_s, u"Tarnwell"_s}});
        disk.makeFolder(plugin + u"/Contents/Resources/Varnit Updater.app"_s);
    }

    const TemporaryHome disk;
    const QString plugin = u"/Tarnwell.zok"_s;
    const QList<QByteArray> command{TARNWELL_LAUNCH_PEER, QFile::encodeName(disk.root()),
                                    QFile::encodeName(disk.path(plugin))};
};

TEST_F(Race, OneOfTwoProcessesStartsTheUpdater)
{
    ChildProcess peers[] = {ChildProcess(command), ChildProcess(command)};

    constexpr int tries = 200;
    for (int i = 0; i < tries; ++i) {
        for (ChildProcess &peer : peers)
            ASSERT_TRUE(peer.write("go\n"));
        const QByteArray answers[] = {peers[0].readLine(), peers[1].readLine()};
        // Whoever holds the lock goes on only after the other has tried.
        const int winner = answers[0] == "launching" ? 0 : 1;
        ASSERT_EQ(answers[winner], "launching") << "of try " << i;
        ASSERT_EQ(answers[1 - winner], "refused 0") << "of try " << i;
        ASSERT_TRUE(peers[winner].write("go on\n"));
        ASSERT_EQ(peers[winner].readLine(), "launched 0");
    }
    EXPECT_EQ(QDir(disk.path(u"/tmp"_s)).entryList(QDir::Files), QStringList());
}

TEST_F(Race, ALockThatACrashLeftKeepsTheUpdaterOff)
{
    ChildProcess victim(command);
    ASSERT_TRUE(victim.write("go\n"));
    ASSERT_EQ(victim.readLine(), "launching");
    victim.kill();
    victim.wait();

    ChildProcess next(command);
    ASSERT_TRUE(next.write("go\n"));
    EXPECT_EQ(next.readLine(), "refused 0");
    disk.remove(u"/tmp/com.varnit.tarnwell.updater.lock"_s);
    ASSERT_TRUE(next.write("go\n"));
    EXPECT_EQ(next.readLine(), "launching");
}

} // namespace tarnwell::tests
