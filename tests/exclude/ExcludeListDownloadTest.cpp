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
    {"HalfAYearAfterTheFirstRun", march2023 - halfAYear, march2023 - halfAYear + aYear, true,
     march2023 - halfAYear + aYear},
    {"ExactlyOneYear", march2023, march2023 + aYear, true, march2023 + aYear},
    {"OneSecondLess", march2023, march2023 + aYear - 1, false, {}},
    {"InTheFuture", march2023 + 1, march2023, false, {}},
    {"FarInTheFuture", qint64(0x7fffffff), march2023, false, {}},
    {"TextOfANumber", QString::number(march2023), march2023 + aYear, true, march2023 + aYear},
    // Only the low 32 bits count, with their sign.
    {"BeyondThirtyTwoBitsIsNever", qint64(1) << 32, march2023, false, march2023 - halfAYear},
    {"BeyondThirtyTwoBitsIsRecent", (qint64(7) << 32) + march2023 - 1, march2023, false, {}},
    {"NegativeIsLongAgo", qint64(-1), march2023, true, march2023},
    {"AfterTheEndOfThirtyTwoBits", march2023, qint64(1) << 31, true, qint64(-2147483647) - 1},
    {"AStoredTimeOfThatAge", qint64(-2147483647) - 1, (qint64(1) << 31) + 5, true,
     qint64(-2147483643)},
};

class ExcludeListDownload : public testing::TestWithParam<Moment>
{
protected:
    ExcludeListDownload()
    {
        httpFetcher.control().body = "<plist><array><string>record</string></array></plist>";
    }

    void storeLast(const plist::Value &last)
    {
        preferences.control().setStoredValue(timeKey, last, domain);
    }
    void refreshAt(qint64 now)
    {
        clock.control().absoluteTime = double(now - 978307200);
        exclude::refreshPredefinedList({preferences, clock, fileManager, httpFetcher, tasks},
                                       domain, address);
    }
    plist::Value recorded() { return preferences.control().storedValue(timeKey, domain); }

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
    const Moment &row = GetParam();
    storeLast(row.last);
    refreshAt(row.now);
    EXPECT_EQ(httpFetcher.control().fetched, row.fetches ? QList<QUrl>{address} : QList<QUrl>());
    EXPECT_EQ(recorded(), row.recorded.isNull() ? row.last : row.recorded);

    preferences.control().clearRecord();
    httpFetcher.control().fetched.clear();
    storeLast(row.last);
    preferences.control().setStoredValue(u"ExcludeListNoInternetSync"_s, true, domain);
    preferences.appSynchronize(domain);
    refreshAt(row.now);
    EXPECT_TRUE(httpFetcher.control().fetched.isEmpty()) << "switched off";
    EXPECT_TRUE(preferences.control().writes().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Times, ExcludeListDownload, testing::ValuesIn(moments), RowName());

TEST_F(ExcludeListDownload, MakesTheFolderOnlyWhenThereIsNone)
{
    storeLast(march2023);
    refreshAt(march2023 + aYear);
    const QString folder = u"/home/tester/Library/Application Support/Varnit/Tarnwell"_s;
    EXPECT_EQ(tasks.control().commands, (QList<QStringList>{{u"/bin/mkdir"_s, u"-p"_s, folder}}));

    tasks.control().commands.clear();
    home.addFolder(folder);
    refreshAt(march2023 + 2 * aYear);
    EXPECT_TRUE(tasks.control().commands.isEmpty());
    EXPECT_EQ(httpFetcher.control().fetched.size(), 2);
}

TEST_F(ExcludeListDownload, TriesAgainAfterAFailedFetch)
{
    storeLast(march2023);
    for (const std::optional<QByteArray> &body :
         {std::optional<QByteArray>(), std::optional<QByteArray>("<plist><dict/></plist>"),
          std::optional<QByteArray>("")}) {
        httpFetcher.control().body = body;
        refreshAt(march2023 + aYear);
        EXPECT_EQ(recorded(), plist::Value(march2023));
    }
    EXPECT_EQ(httpFetcher.control().fetched.size(), 3);
    EXPECT_TRUE(tasks.control().commands.isEmpty());
}

} // namespace tarnwell::tests
