#include "update/UpdateSchedule.h"

#include "UpdateFixture.h"
#include "ports/Clock.h"
#include "update/SystemVersion.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

constexpr double now = 700000000.0;
constexpr qint32 thisSystem = 0x120500;
constexpr double day = 86400.0;

using Stored = QList<std::pair<QString, plist::Value>>;

struct Row
{
    const char *name;
    Stored stored; ///< over a check made just now on this system
    bool launches;
    Stored info = {};
    bool automatic = true;
    QString host = u"org.example.editor"_s;
    std::optional<double> login = {};
};

plist::Value ago(double seconds)
{
    return plist::Date{now - seconds};
}

Stored last(double seconds)
{
    return {{u"SULastCheckDate"_s, ago(seconds)}};
}

Stored lastAndInterval(double seconds, const plist::Value &interval)
{
    return {{u"SULastCheckDate"_s, ago(seconds)}, {u"SUCheckInterval"_s, interval}};
}

Stored version(const QString &text)
{
    return {{u"CFBundleShortVersionString"_s, text}};
}

const QString interval = u"SUCheckInterval"_s;
const QString systemKey = u"SULastRunSystemVersion"_s;
const QString plain = u"org.example.editor"_s;

std::vector<Row> rows()
{
    return {
        {"just_checked", {}, false},
        {"never_checked", {{u"SULastCheckDate"_s, {}}}, true},
        {"last_date_of_wrong_type", {{u"SULastCheckDate"_s, u"yesterday"_s}}, true},
        {"last_date_in_the_future", last(-day), false},

        {"no_interval_week_not_over", last(7 * day - 1), false},
        {"no_interval_week_over", last(7 * day), true},
        {"interval_not_over", lastAndInterval(3599, 3600), false},
        {"interval_over", lastAndInterval(3600, 3600), true},
        {"real_interval_not_over", lastAndInterval(10, 10.5), false},
        {"interval_zero", lastAndInterval(0, 0), true},
        {"interval_negative", lastAndInterval(1000 * day, -1), false},
        {"interval_negative_never_checked", {{interval, -1.0}, {u"SULastCheckDate"_s, {}}}, false},
        {"interval_of_wrong_type", lastAndInterval(6 * day, u"60"_s), false},
        {"interval_not_a_number", lastAndInterval(6 * day, std::nan("")), false},
        {"interval_immense", lastAndInterval(1000 * day, 1e300), false},

        {"beta_daily", last(day), true, version(u"2.0b3"_s)},
        {"beta_day_not_over", last(day - 1), false, version(u"2.0b3"_s)},
        {"final_candidate_daily", last(day), true, version(u"1.5fc1"_s)},
        {"beta_in_words_daily", last(day), true, version(u"1.0 beta"_s)},
        {"beta_in_capitals_weekly", last(day), false, version(u"2.0B3"_s)},
        {"final_candidate_in_capitals_weekly", last(day), false, version(u"1.5FC1"_s)},
        {"beta_with_own_interval", lastAndInterval(day, 2 * day), false, version(u"2.0b3"_s)},
        {"version_of_wrong_type", last(day), false, {{u"CFBundleShortVersionString"_s, 2}}},

        {"switched_off", {{u"SUCheckForUpdates"_s, false}, {u"SULastCheckDate"_s, {}}}, false},
        {"switched_off_in_words",
         {{u"SUCheckForUpdates"_s, u"NO"_s}, {u"SULastCheckDate"_s, {}}},
         false},
        {"switch_of_wrong_type",
         {{u"SUCheckForUpdates"_s, plist::Dictionary()}, {u"SULastCheckDate"_s, {}}},
         true},

        {"system_changed", {{systemKey, 0x120400}}, true},
        {"system_never_noted", {{systemKey, {}}}, true},
        {"system_of_wrong_type", {{systemKey, u"1181952"_s}}, true},
        {"system_beyond_32_bits", {{systemKey, (qint64(1) << 32) + thisSystem}}, false},
        {"system_changed_timer_off", {{interval, -1}, {systemKey, 0x120400}}, true},

        {"in_the_dock", {{u"SULastCheckDate"_s, {}}}, false, {}, true, u"com.apple.Dock"_s},
        {"in_the_dock_in_other_case",
         {{u"SULastCheckDate"_s, {}}},
         false,
         {},
         true,
         u"COM.apple.dock"_s},
        {"in_the_updater", {{u"SULastCheckDate"_s, {}}}, false, {}, true, u"com.varnit.Updater"_s},
        {"in_something_like_the_dock",
         {{u"SULastCheckDate"_s, {}}},
         true,
         {},
         true,
         u"com.apple.Docker"_s},
        {"by_hand_in_the_dock", {{u"SULastCheckDate"_s, {}}}, true, {}, false, u"com.apple.Dock"_s},

        {"grace_not_over", {{u"SULastCheckDate"_s, {}}}, false, {}, true, plain, now - 599},
        {"grace_over", {{u"SULastCheckDate"_s, {}}}, true, {}, true, plain, now - 600},
        {"grace_by_hand", {{u"SULastCheckDate"_s, {}}}, true, {}, false, plain, now - 1},
        {"framework_counts_from_its_process",
         {{u"SULastCheckDate"_s, {}}},
         false,
         {{u"ZOKModuleID"_s, u"com.varnit.ZOK"_s}},
         true,
         plain,
         now - 7200},

        {"no_name", {{u"SULastCheckDate"_s, {}}}, false, {{u"CFBundleName"_s, {}}}},
        {"name_of_wrong_type",
         {{u"SULastCheckDate"_s, {}}},
         false,
         {{u"CFBundleName"_s, 5}, {u"CFBundleExecutable"_s, u"tarnwell"_s}}},
        {"named_by_its_executable",
         {{u"SULastCheckDate"_s, {}}},
         true,
         {{u"CFBundleName"_s, u""_s}, {u"CFBundleExecutable"_s, u"tarnwell"_s}}},
        {"no_identifier",
         {{u"SULastCheckDate"_s, {}}},
         false,
         {{u"ZOKModuleID"_s, {}}, {u"CFBundleIdentifier"_s, {}}}},
    };
}

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
        clock.control().absoluteTime = now;
        for (const QString &name : {QString(moduleID), u"com.varnit.ZOK"_s}) {
            auto &control = preferences.control();
            control.setStoredValue(u"SULastCheckDate"_s, ago(0), name);
            control.setStoredValue(systemKey, thisSystem, name);
            for (const auto &[key, value] : GetParam().stored)
                control.setStoredValue(key, value, name);
        }
    }
};

TEST_P(Decision, IsMade)
{
    const foundation::Bundle bundle = plugin(GetParam().info);
    CapturedLog log;
    EXPECT_EQ(update::QXCheckForUpdatesIfDue(context(), bundle, GetParam().automatic, nullptr), 0);
    EXPECT_EQ(opened().size(), GetParam().launches ? 1 : 0);
    if (GetParam().launches) {
        EXPECT_EQ(seen(u"SULastCheckDate"_s), ago(0));
        EXPECT_EQ(seen(systemKey), plist::Value(thisSystem));
    }
    EXPECT_EQ(seen(interval).isNull(),
              preferences.control().storedValue(interval, moduleID).isNull())
        << "the default interval is not written back";
}

INSTANTIATE_TEST_SUITE_P(Rows, Decision, testing::ValuesIn(rows()),
                         [](const auto &row) { return std::string(row.param.name); });

using Schedule = UpdateFixture;

TEST_F(Schedule, NeedsABundle)
{
    EXPECT_EQ(update::QXCheckForUpdatesIfDue(context(), std::nullopt, false, nullptr), -50);
}

TEST_F(Schedule, WritesTheSwitchWhenThereIsNone)
{
    CapturedLog log;
    update::QXCheckForUpdatesIfDue(context(), plugin(), false, nullptr);
    EXPECT_EQ(seen(u"SUCheckForUpdates"_s), plist::Value(true));
}

TEST_F(Schedule, SaysWhyItChecks)
{
    store(u"SULastCheckDate"_s, plist::Date{clock.absoluteTime()});
    store(systemKey, 0x120400);
    CapturedLog log;
    update::QXCheckForUpdatesIfDue(context(), plugin(version(u"2.0b3"_s)), false, nullptr);
    EXPECT_TRUE(log.lines().contains(
        u"[Tarnwell] Because the version string of \"2.0b3\" contains an indicator it is a beta "
        "release, we are defaulting to checking for updates daily. If you wish to change it to a "
        "longer time, open the Tarnwell prefpane in System Preferences."_s));
    EXPECT_TRUE(log.lines().contains(
        u"[Tarnwell] An update check for Tarnwell needs to be performed. You have updated Mac OS "
        "X since the last Tarnwell update check. Updates were last checked on 0x120400 but you're "
        "now running 0x120500"_s));
}

TEST_F(Schedule, AnUpdaterThatWillNotStartIsNotTriedAtOnceAgain)
{
    applications.control().openStatus = -10810;
    const foundation::Bundle bundle = plugin();
    CapturedLog log;
    EXPECT_EQ(update::QXCheckForUpdatesIfDue(context(), bundle, true, nullptr), 0);
    applications.control().openStatus = 0;
    EXPECT_EQ(update::QXCheckForUpdatesIfDue(context(), bundle, true, nullptr), 0);
    EXPECT_TRUE(opened().isEmpty());
}

TEST_F(Schedule, TheFrameworkCountsFromItsProcess)
{
    struct ProcessRow
    {
        const char *name;
        std::optional<double> start;
        int error;
        std::optional<plist::Date> expected;
    };
    const ProcessRow processes[] = {
        {"known", 978307200.5, 0, plist::Date{0}},
        {"no answer", {}, 0, {}},
        {"not to be asked", 978307200.0, 13, {}},
    };
    for (const ProcessRow &row : processes) {
        SCOPED_TRACE(row.name);
        session.control().processStartTime = row.start;
        session.control().processStartError = row.error;
        CapturedLog log;
        EXPECT_EQ(update::QXCopyLoginTime(context(), u"com.Varnit.zok"_s), row.expected);
        EXPECT_TRUE(log.lines().contains(u"[QXVC] pid is 4711"_s));
        EXPECT_EQ(log.lines().contains(u"[QXVC] Start time: 978307200"_s),
                  row.expected.has_value());
    }
}

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
        {"out_of_range", {20240101, -3, 100}, {}, 0x990099},
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
        // Whatever was found stays, but nothing found is asked for again.
        gestalt[ports::fourCharacterCode("sysv")] = 0x1075;
        EXPECT_EQ(update::QXSystemVersionBCD(facts, state),
                  row.expected ? row.expected : 0x100705U);
    }
}

} // namespace tarnwell::tests
