#include "prefs/StoreRetry.h"

#include "fakes/FakePreferences.h"
#include "fakes/FakeTimers.h"

#include <gtest/gtest.h>

using namespace tarnwell;
using namespace Qt::StringLiterals;

namespace {

const QString domain = u"com.varnit.tarnwell"_s;

class StoreRetryTest : public testing::Test
{
protected:
    StoreRetryTest()
    {
        preferences.setStoreHandler(
            [this](const QString &, const auto &state) { retry.follow(state); });
    }

    void change(int value)
    {
        preferences.setAppValue(u"Key"_s, value, domain);
        preferences.appSynchronize(domain);
    }

    fakes::FakePreferences preferences;
    fakes::FakeTimers timers;
    int refreshes = 0;
    prefs::StoreRetry retry{preferences, timers, domain, [this] { ++refreshes; }};
};

} // namespace

TEST_F(StoreRetryTest, TriesAfterGrowingPausesUntilAllIsStored)
{
    preferences.control().setSynchronizeFails(true);
    change(1);
    for (const double pause : {1.0, 2.0, 4.0, 8.0, 16.0, 32.0, 60.0, 60.0}) {
        ASSERT_EQ(timers.control().scheduledIntervals(), QList<double>{pause});
        timers.control().advance(pause);
    }
    EXPECT_FALSE(retry.tryNow());
    EXPECT_EQ(timers.control().scheduledIntervals(), QList<double>{1.0}) << "somebody is there";
    preferences.control().setSynchronizeFails(false);
    change(2);
    EXPECT_EQ(timers.control().scheduledIntervals(), QList<double>{}) << "all is stored";
    EXPECT_EQ(refreshes, 0);
}

TEST_F(StoreRetryTest, LooksOftenAtADomainThatIsBeingWritten)
{
    preferences.control().setBeingWritten(true);
    change(1);
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(timers.control().scheduledIntervals(), QList<double>{0.05});
        timers.control().advance(0.05);
    }
    EXPECT_EQ(refreshes, 0);
    preferences.control().setBeingWritten(false);
    preferences.control().setSynchronizeFails(true);
    timers.control().advance(0.05);
    EXPECT_EQ(refreshes, 1) << "it can be read again";
    EXPECT_EQ(timers.control().scheduledIntervals(), QList<double>{1.0}) << "but not be stored";
}
