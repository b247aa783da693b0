#include "update/UpdateSchedule.h"

#include "UpdateFixture.h"
#include "ports/Clock.h"
#include "support/RowName.h"
#include "update/SystemVersion.h"
#include "update/UpdateModule.h"

#include <QSet>

#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

constexpr double now = 700000000.0;
constexpr qint32 thisSystem = 0x120500;
constexpr double day = 86400.0;

const QString interval = u"SUCheckInterval"_s;
const QString switchKey = u"SUCheckForUpdates"_s;
const QString systemKey = u"SULastRunSystemVersion"_s;
const QString dateKey = u"SULastCheckDate"_s;

using Stored = QList<std::pair<QString, plist::Value>>;

struct Row
{
    const char *name;
    bool launches;
    Stored stored; ///< over a check made just now on this system
    Stored info = {};
    QString host = u"org.example.editor"_s;
    std::optional<double> login = {};
    bool automatic = true;
    int processError = 0; ///< of asking when the process began
};

plist::Value ago(double seconds)
{
    return plist::Date{now - seconds};
}

Stored last(double seconds)
{
    return {{dateKey, ago(seconds)}};
}

Stored lastAndInterval(double seconds, const plist::Value &value)
{
    return {{dateKey, ago(seconds)}, {interval, value}};
}

Stored version(const plist::Value &value)
{
    return {{u"CFBundleShortVersionString"_s, value}};
}

const Stored never{{dateKey, {}}};
const QString dock = u"COM.apple.dock"_s;

const Row rows[] = {
    {"just_checked", false, {}},
    {"never_checked", true, never},
    {"last_date_of_wrong_type", true, {{dateKey, u"yesterday"_s}}},
    {"last_date_in_the_future", false, last(-day)},

    {"week_not_over", false, last(7 * day - 1)},
    {"week_over", true, last(7 * day)},
    {"interval_not_over", false, lastAndInterval(10, 10.5)},
    {"interval_over", true, lastAndInterval(3600, 3600)},
    {"interval_zero", true, lastAndInterval(0, 0)},
    {"interval_negative", false, {{interval, -1}, {dateKey, {}}}},
    {"interval_of_wrong_type", false, lastAndInterval(6 * day, u"60"_s)},
    {"interval_not_a_number", false, lastAndInterval(6 * day, std::nan(""))},
    {"interval_immense", false, lastAndInterval(1000 * day, 1e300)},

    {"beta_daily", true, last(day), version(u"2.0b3"_s)},
    {"beta_day_not_over", false, last(day - 1), version(u"2.0b3"_s)},
    {"final_candidate_daily", true, last(day), version(u"1.5fc1"_s)},
    {"beta_in_capitals_weekly", false, last(day), version(u"2.0B3"_s)},
    {"beta_with_own_interval", false, lastAndInterval(day, 2 * day), version(u"2.0b3"_s)},
    {"version_of_wrong_type", false, last(day), version(2)},

    {"switched_off", false, {{switchKey, false}, {dateKey, {}}}},
    {"switch_of_wrong_type", true, {{switchKey, plist::Dictionary()}, {dateKey, {}}}},

    {"system_changed", true, {{interval, -1}, {systemKey, 0x120400}}},
    {"system_of_wrong_type", true, {{systemKey, u"1181952"_s}}},
    {"system_beyond_32_bits", false, {{systemKey, (qint64(1) << 32) + thisSystem}}},

    {.name = "in_the_dock", .launches = false, .stored = never, .host = dock},
    {.name = "in_the_updater", .launches = false, .stored = never, .host = u"com.varnit.Updater"_s},
    {.name = "by_hand_in_the_dock",
     .launches = true,
     .stored = never,
     .host = dock,
     .automatic = false},
    {.name = "grace_not_over", .launches = false, .stored = never, .login = now - 599},
    {.name = "grace_over", .launches = true, .stored = never, .login = now - 600},
    {.name = "grace_by_hand", .launches = true, .stored = never, .login = now, .automatic = false},
    {.name = "framework_counts_from_its_process",
     .launches = false,
     .stored = never,
     .info = {{u"ZOKModuleID"_s, u"com.varnit.ZOK"_s}},
     .login = now - 7200},
    {.name = "framework_in_a_process_not_to_be_asked",
     .launches = true,
     .stored = never,
     .info = {{u"ZOKModuleID"_s, u"com.varnit.ZOK"_s}},
     .processError = 13},

    {"no_name", false, never, {{u"CFBundleName"_s, {}}}},
    {"named_by_its_executable",
     true,
     never,
     {{u"CFBundleName"_s, u""_s}, {u"CFBundleExecutable"_s, u"tarnwell"_s}}},
    {"no_identifier", false, never, {{u"ZOKModuleID"_s, {}}, {u"CFBundleIdentifier"_s, {}}}},
};

} // namespace

class Decision : public UpdateFixture, public testing::WithParamInterface<Row>
{
protected:
    void SetUp() override
    {
        disk.writeInfo(u"/host/Contents/Info.plist"_s,
                       {{u"CFBundleIdentifier"_s, GetParam().host}});
        systemFacts.control().mainBundlePath = disk.path(u"/host"_s);
        systemFacts.control().gestalt[ports::fourCharacterCode("sys1")] = 12;
        systemFacts.control().gestalt[ports::fourCharacterCode("sys2")] = 5;
        session.control().loginTime = GetParam().login;
        session.control().processStartTime = now - 60 + ports::Clock::absoluteTimeIntervalSince1970;
        session.control().processStartError = GetParam().processError;
        clock.control().absoluteTime = now;
        for (const QString &name : {QString(moduleID), u"com.varnit.ZOK"_s}) {
            auto &control = preferences.control();
            control.setStoredValue(dateKey, ago(0), name);
            control.setStoredValue(systemKey, thisSystem, name);
            for (const auto &[key, value] : GetParam().stored)
                control.setStoredValue(key, value, name);
        }
    }
};

TEST_P(Decision, IsMade)
{
    const foundation::Bundle bundle = plugin(GetParam().info);
    const CapturedLog log;
    EXPECT_EQ(update::QXCheckForUpdatesIfDue(context(), bundle, GetParam().automatic, nullptr), 0);
    const auto seen = [&](const QString &key) {
        return preferences.copyAppValue(key, update::moduleIdentifier(bundle));
    };
    EXPECT_EQ(opened().size(), GetParam().launches ? 1 : 0);
    if (GetParam().launches) {
        EXPECT_EQ(seen(dateKey), ago(0));
        EXPECT_EQ(seen(systemKey), plist::Value(thisSystem));
        EXPECT_EQ(seen(switchKey), plist::Value(true)) << "nothing usable was stored";
    }
    EXPECT_EQ(seen(interval).isNull(),
              preferences.control().storedValue(interval, moduleID).isNull())
        << "the default interval is not written back";
}

INSTANTIATE_TEST_SUITE_P(Rows, Decision, testing::ValuesIn(rows), RowName());

TEST(SystemVersion, IsPackedInDigits)
{
    struct VersionRow
    {
        const char *name;
        std::optional<qint32> numbers[3];
        std::optional<qint32> level;
        quint32 expected;
    };
    const VersionRow versions[] = {
        {"three_numbers", {10, 6, 8}, 0x1068, 0x100608},
        {"two_digits_each", {24, 10, 31}, {}, 0x241031},
        {"all_that_two_digits_hold", {99, 99, 99}, {}, 0x999999},
        {"below_zero", {12, -3, 1}, {}, 0x120001},
        {"one_number_missing", {10, {}, 8}, 0x1049, 0x100409},
        {"nothing", {{}, {}, {}}, {}, 0},
    };
    for (const VersionRow &row : versions) {
        SCOPED_TRACE(row.name);
        fakes::FakeSystemFacts facts;
        update::UpdateProcessState state;
        auto &gestalt = facts.control().gestalt;
        gestalt.clear();
        for (int i = 0; i < 3; ++i) {
            if (row.numbers[i])
                gestalt[ports::fourCharacterCode("sys1") + quint32(i)] = *row.numbers[i];
        }
        if (row.level)
            gestalt[ports::fourCharacterCode("sysv")] = *row.level;
        EXPECT_EQ(update::QXSystemVersionBCD(facts, state), row.expected);
    }
}

/// An upgrade is seen by comparing two packed versions.
TEST(SystemVersion, DiffersFromThatOfEveryOtherRelease)
{
    const std::array<qint32, 3> releases[] = {
        {99, 99, 99},      {100, 0, 0},       {20240101, 0, 0},  {20240102, 0, 0},
        {20250101, 0, 0},  {24, 20240101, 0}, {24, 20240102, 0}, {5, 10, 100},
        {5, 10, 226},      {5, 11, 66},       {5, 10, 227},      {2147483647, 0, 0},
        {1, 2147483647, 1}};
    QSet<quint32> packed;
    for (const auto &release : releases) {
        fakes::FakeSystemFacts facts;
        for (quint32 i = 0; i < 3; ++i)
            facts.control().gestalt[ports::fourCharacterCode("sys1") + i] = release[i];
        update::UpdateProcessState state;
        packed.insert(update::QXSystemVersionBCD(facts, state));
    }
    EXPECT_EQ(packed.size(), qsizetype(std::size(releases)));
}

} // namespace tarnwell::tests
