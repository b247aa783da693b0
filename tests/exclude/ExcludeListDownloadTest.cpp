#include "exclude/ExcludeListDownload.h"
#include "fakes/FakeClock.h"
#include "fakes/FakeFileManager.h"
#include "fakes/FakeHttpFetcher.h"
#include "fakes/FakePreferences.h"
#include "fakes/FakeTasks.h"
#include "support/RowName.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

constexpr QLatin1StringView domain{"com.varnit.tarnwell"};
constexpr QLatin1StringView timeKey{"ExcludeListLastInternetCheck"};
const QUrl address(u"https://www.varnit.example/goto/excludelist/tarnwell/"_s);

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
    ExcludeListDownload()
    {
        httpFetcher.control().body = "<plist><array><string>record</string></array></plist>";
    }

    /// A refresh on a machine where that was stored last.
    void refresh(bool switchedOff = false)
    {
        httpFetcher.control().fetched.clear();
        preferences.control().setStoredValue(timeKey, GetParam().last, domain);
        preferences.control().setStoredValue(u"ExcludeListNoInternetSync"_s, switchedOff, domain);
        preferences.appSynchronize(domain);
        preferences.control().clearRecord();
        clock.control().absoluteTime = double(GetParam().now - 978307200);
        exclude::refreshPredefinedList({preferences, clock, fileManager, httpFetcher, tasks},
                                       domain, address);
    }

    fakes::FakeHome home;
    fakes::FakePreferences preferences;
    fakes::FakeClock clock;
    fakes::FakeFileManager fileManager{home};
    fakes::FakeHttpFetcher httpFetcher;
    fakes::FakeTasks tasks;
};

} // namespace

TEST_P(ExcludeListDownload, IsDueByTheTimeThatWasRecorded)
{
    refresh();
    const Moment &row = GetParam();
    EXPECT_EQ(httpFetcher.control().fetched, row.fetches ? QList<QUrl>{address} : QList<QUrl>());
    EXPECT_EQ(preferences.control().storedValue(timeKey, domain),
              row.recorded.isNull() ? row.last : row.recorded);

    refresh(true);
    EXPECT_TRUE(httpFetcher.control().fetched.isEmpty()) << "switched off";
    EXPECT_TRUE(preferences.control().writes().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Times, ExcludeListDownload, testing::ValuesIn(moments), RowName());

} // namespace tarnwell::tests
