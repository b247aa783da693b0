#include "fakes/FakePreferences.h"
#include "foundation/plist/Value.h"
#include "support/TemporaryHome.h"
#include "update/FormattedDate.h"
#include "update/PluginSearch.h"
#include "update/StatusText.h"
#include "update/UpdateSettings.h"

#include "desktop/CapturedLog.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QLocale>

#include <cmath>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

/// A moment of the user's own time zone, wherever the test runs.
plist::Value localTime(const QDate &date, const QTime &time)
{
    return plist::Date{double(QDateTime(date, time).toSecsSinceEpoch()) - 978307200.0};
}

} // namespace

TEST(FormattedDate, FollowsTheLocale)
{
    const plist::Value moment = localTime({2024, 3, 6}, {14, 5, 9});
    const QLocale before;
    QLocale::setDefault({QLocale::German, QLocale::Germany});
    const QString brief = update::QXCopyFormattedDate(moment, 1, 1).value_or(u""_s);
    const QString whole = update::QXCopyFormattedDate(moment, 4, 4).value_or(u""_s);
    QLocale::setDefault(before);
    EXPECT_EQ(QString(brief).remove(u','), u"06.03.24 14:05"_s);
    for (const QString &part : {u"Mittwoch"_s, u"6. März 2024"_s, u"14:05:09"_s})
        EXPECT_TRUE(whole.contains(part)) << qPrintable(whole);
}

TEST(FormattedDate, IsNothingForWhatIsNoDate)
{
    EXPECT_EQ(update::QXCopyFormattedDate({}, 1, 1), std::nullopt);
    EXPECT_EQ(update::QXCopyFormattedDate(u"today"_s, 1, 1), std::nullopt);
    for (const double wild : {1e300, -1e300, double(INFINITY), std::nan("")})
        EXPECT_EQ(update::QXCopyFormattedDate(plist::Date{wild}, 4, 4), std::nullopt);
}

TEST(StatusText, PutsTextsInTheirPlacesOnce)
{
    EXPECT_EQ(update::formatted(u"As of %@: %@"_s, {u"%@"_s, u"50%@"_s}), u"As of %@: 50%@"_s);
    EXPECT_EQ(update::formatted(u"nothing to fill"_s, {u"x"_s}), u"nothing to fill"_s);
    EXPECT_EQ(update::formatted(u"%@%@%@"_s, {u"x"_s}), u"x"_s);
}

TEST(StatusText, FitsTheStatusLine)
{
    EXPECT_EQ(update::shortStatus(u"No newer version.\n\tReally."_s),
              u"No newer version. Really."_s);
    const QString immense = update::shortStatus(QString(5'000'000, u'x'));
    EXPECT_LE(immense.size(), 300);
    EXPECT_TRUE(immense.endsWith(u'…'));
    EXPECT_TRUE(update::shortStatus(QString(5'000'000, u' ')).size() <= 1);
    const QString pairs = update::shortStatus(u"x"_s + u"🐌"_s.repeated(400));
    EXPECT_FALSE(pairs.chopped(1).back().isHighSurrogate()) << "no half of a character";
}

TEST(FrequencyPopup, SelectsTheLastIntervalThatIsNotLonger)
{
    const QList<qint64> offered{86400, 604800, 2592000};
    EXPECT_EQ(update::indexOfInterval(offered, 604800), 1);
    EXPECT_EQ(update::indexOfInterval(offered, 700000.9), 1);
    EXPECT_EQ(update::indexOfInterval(offered, 3600), 0) << "shorter than all";
    EXPECT_EQ(update::indexOfInterval(offered, 1e300), 2) << "longer than all";
    EXPECT_EQ(update::indexOfInterval({86400, 0}, 604800), 0) << "zero is none";
    EXPECT_EQ(update::indexOfInterval({604800, 86400}, 604800), 1) << "the last in order counts";
    EXPECT_EQ(update::indexOfInterval({}, 604800), 0);
}

TEST(UpdateDefaults, AreWrittenWhereNothingUsableIsStored)
{
    TemporaryHome disk;
    const QString domain = u"com.varnit.tarnwell"_s;
    struct Row
    {
        const char *name;
        QString version;
        plist::Value automatic, interval;
        bool checks;
        double seconds;
        plist::Value writtenInterval;
    };
    const Row rows[] = {
        {"nothing stored", u"1.0"_s, {}, {}, true, 604800, 604800.0},
        {"a beta", u"1.0b2"_s, {}, {}, true, 86400, 86400.0},
        {"a beta with an interval", u"1.0b2"_s, true, 3600, true, 3600, {}},
        {"switched off", u"1.0"_s, false, 86400.0, false, 86400, {}},
        {"below a second", u"1.0"_s, true, 0.5, true, 604800, {}},
        {"negative", u"1.0"_s, true, -1, true, 604800, {}},
        {"not a number", u"1.0"_s, true, std::nan(""), true, 604800, {}},
        {"of wrong types", u"1.0"_s, plist::Array(), u"day"_s, true, 604800, 604800.0},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        disk.writeInfo(u"/T.zok/Contents/Info.plist"_s,
                       {{u"CFBundleShortVersionString"_s, row.version}});
        fakes::FakePreferences preferences;
        preferences.control().setStoredValue(u"SUCheckForUpdates"_s, row.automatic, domain);
        preferences.control().setStoredValue(u"SUCheckInterval"_s, row.interval, domain);
        const CapturedLog log;
        const auto settings = update::settingsWithDefaults(
            preferences, domain, *foundation::Bundle::open(disk.path(u"/T.zok"_s)));
        EXPECT_EQ(settings.checksAutomatically, row.checks);
        EXPECT_EQ(settings.interval, row.seconds);
        plist::Value written;
        for (const auto &write : preferences.control().writes()) {
            if (write.key == "SUCheckInterval"_L1)
                written = write.value;
            else
                EXPECT_EQ(write.value, plist::Value(true));
        }
        EXPECT_EQ(written, row.writtenInterval);
        EXPECT_EQ(settings.wroteDefaults, !preferences.control().writes().isEmpty());
    }
}

TEST(PluginSearch, FindsTheFirstOfItsIdentifier)
{
    TemporaryHome disk;
    const auto write = [&](const QString &name, const plist::Dictionary &info) {
        disk.writeInfo(u"/Hullforges/"_s + name + u"/Contents/Info.plist"_s, info);
    };
    write(u".hidden.zok"_s, {{u"ZOKModuleID"_s, u"com.varnit.tarnwell"_s}});
    disk.makeFolder(u"/Hullforges/a folder"_s);
    disk.write(u"/Hullforges/a file"_s, "x");
    disk.write(u"/Hullforges/broken.zok/Contents/Info.plist"_s, "<plist>");
    write(u"number.zok"_s, {{u"ZOKModuleID"_s, 7}, {u"CFBundleIdentifier"_s, u"seven"_s}});
    write(u"p.zok"_s, {{u"ZOKModuleID"_s, u"COM.VARNIT.Tarnwell"_s}});
    write(u"q.zok"_s, {{u"CFBundleIdentifier"_s, u"com.varnit.tarnwell"_s}});
    const QString folder = disk.path(u"/Hullforges"_s);

    const CapturedLog log;
    const auto found = update::findPlugin(folder, u"com.varnit.tarnwell"_s, false);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->path(), folder + u"/p.zok"_s);
    EXPECT_EQ(log.containing(u"This bundle has no ID! "_s).size(), 2);
    EXPECT_EQ(log.containing(u"/Hullforges/a%20folder/"_s).size(), 1);
    EXPECT_TRUE(update::findPlugin(folder, u"seven"_s, true));
    EXPECT_FALSE(update::findPlugin(folder, u"com.varnit.other"_s, false));
    EXPECT_FALSE(update::findPlugin(disk.path(u"/nowhere"_s), u"seven"_s, false));
}

} // namespace tarnwell::tests
