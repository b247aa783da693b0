#include "exclude/ExcludeListDownload.h"
#include "fakes/FakeClock.h"
#include "fakes/FakeFileManager.h"
#include "fakes/FakeFileStore.h"
#include "fakes/FakePreferences.h"
#include "fakes/FakeTasks.h"
#include "support/RowName.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

constexpr QLatin1StringView domain{"com.varnit.tarnwell"};
constexpr QLatin1StringView timeKey{"ExcludeListLastInternetCheck"};

constexpr qint64 march2023 = 1678307200;
constexpr qint64 halfAYear = 15552000;
constexpr qint64 aYear = 31104001;

struct Moment
{
    const char *name;
    plist::Value last;
    qint64 now;
    bool fetches;
    plist::Value recorded; ///< null when the stored value stays as it is
};

const Moment moments[] = {
    {"FirstRun", {}, march2023, false, march2023 - halfAYear},
    {"FirstRunOfAMistypedTime", u"yesterday"_s, march2023, false, march2023 - halfAYear},
    {"ExactlyOneYear", march2023, march2023 + aYear, true, march2023 + aYear},
    {"OneSecondLess", march2023, march2023 + aYear - 1, false, {}},
    {"InTheFuture", march2023 + 1, march2023, false, {}},
    // Only the low 32 bits count, with their sign.
    {"BeyondThirtyTwoBitsIsNever", qint64(1) << 32, march2023, false, march2023 - halfAYear},
    {"BeyondThirtyTwoBitsIsRecent", (qint64(7) << 32) + march2023 - 1, march2023, false, {}},
    {"NegativeIsLongAgo", qint64(-1), march2023, true, march2023},
    {"AfterTheEndOfThirtyTwoBits", march2023, qint64(1) << 31, true, qint64(-2147483647) - 1},
};

class ExcludeListDownload : public testing::TestWithParam<Moment>
{
protected:
    /// Runs all steps on a machine where that was stored last. Whether the list was to be fetched.
    bool refresh(bool switchedOff = false)
    {
        preferences.control().setStoredValue(timeKey, GetParam().last, domain);
        preferences.control().setStoredValue(u"ExcludeListNoInternetSync"_s, switchedOff, domain);
        preferences.appSynchronize(domain);
        preferences.control().clearRecord();
        clock.control().absoluteTime = double(GetParam().now - 978307200);
        if (!exclude::isDownloadDue(services, domain))
            return false;
        exclude::storeDownload(services, domain, "<plist><array/></plist>");
        return true;
    }

    fakes::FakeHome home;
    fakes::FakePreferences preferences;
    fakes::FakeClock clock;
    fakes::FakeFileManager fileManager{home};
    fakes::FakeTasks tasks;
    const exclude::DownloadServices services{preferences, clock, fileManager, tasks};
};

} // namespace

TEST_P(ExcludeListDownload, IsDueByTheTimeThatWasRecorded)
{
    const Moment &row = GetParam();
    EXPECT_EQ(refresh(), row.fetches);
    const plist::Value recorded = row.recorded.isNull() ? row.last : row.recorded;
    EXPECT_EQ(preferences.control().storedValue(timeKey, domain), recorded);

    EXPECT_FALSE(refresh(true)) << "switched off";
    exclude::storeDownload(services, domain, "<plist><array/></plist>");
    EXPECT_TRUE(preferences.control().writes().isEmpty()) << "switched off meanwhile";
}

INSTANTIATE_TEST_SUITE_P(Times, ExcludeListDownload, testing::ValuesIn(moments), RowName());

TEST(ExcludeListDailyCheck, IsBegunOnceInTwentyFourHours)
{
    constexpr double aDay = 24 * 60 * 60;
    const fakes::FakeHome home;
    const fakes::FakeFileManager fileManager{home};
    fakes::FakeFileStoreControl files;
    fakes::FakeFileStore fileStore{files};
    fakes::FakeClock clock;
    const struct
    {
        double time; ///< since 2001
        bool begins;
    } rows[] = {
        {7e8, true},        {7e8 + 1, false},        {7e8 + aDay - 1, false},
        {7e8 + aDay, true}, {7e8 + aDay + 1, false}, {7e8, true}, // the clock was wrong
    };
    for (const auto &row : rows) {
        clock.control().absoluteTime = row.time;
        EXPECT_EQ(exclude::beginDailyCheck(fileStore, fileManager, clock), row.begins) << row.time;
    }
    clock.control().absoluteTime += aDay;
    files.writeError = u"Read-only"_s;
    EXPECT_FALSE(exclude::beginDailyCheck(fileStore, fileManager, clock)) << "every time, else";
    files.writeError.clear();
    ASSERT_EQ(files.files.size(), 1);
    files.files.begin()->second = "damaged";
    EXPECT_TRUE(exclude::beginDailyCheck(fileStore, fileManager, clock));
}

} // namespace tarnwell::tests
