#include "shortcuts/ShortcutArchive.h"
#include "fakes/FakeClock.h"
#include "fakes/FakeFileStore.h"
#include "foundation/plist/PropertyList.h"
#include "shortcuts/ShortcutBackups.h"
#include "support/ShortcutRecords.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::shortcuts {

using namespace tests;

namespace {

plist::Value changed(const QString &title, int now = 2)
{
    return plist::Value(changedItem(title, 1, now));
}

plist::Dictionary application(const plist::Array &groups)
{
    return {{u"com.example.app"_s, plist::Value(groups)}};
}

plist::Dictionary without(plist::Dictionary dictionary, const QString &key)
{
    dictionary.remove(key);
    return dictionary;
}

plist::Dictionary with(plist::Dictionary dictionary, const QString &key, const plist::Value &value)
{
    dictionary.insert(key, value);
    return dictionary;
}

} // namespace

TEST(ShortcutArchive, DamageIsNamedWithItsPlace)
{
    const plist::Dictionary good = changedItem(u"Save"_s);
    const auto inGroup = [](const plist::Value &item) {
        return application({plist::Value(group(u"File"_s, {changed(u"Open"_s), item}))});
    };
    const auto badCommand = [&](const QString &key, const plist::Value &value) {
        const plist::Dictionary command =
            with(good.value(u"NewKeyCommands").toDictionary(), key, value);
        return inGroup(plist::Value(with(good, u"NewKeyCommands"_s, plist::Value(command))));
    };
    const QString place = u"Application \"com.example.app\", group 1, item 2: "_s;
    const std::pair<plist::Dictionary, QString> rows[] = {
        {inGroup(plist::Value(good)), {}},
        {{}, {}},
        {application({1}), u"Application \"com.example.app\", group 1: It is not a dictionary."_s},
        {application({plist::Value(plist::Dictionary{{u"ParentTitle"_s, u"File"_s}})}),
         u"Application \"com.example.app\", group 1: \"Keys\" is missing."_s},
        {application({plist::Value(
             plist::Dictionary{{u"ParentTitle"_s, 1}, {u"Keys"_s, plist::Value(plist::Array())}})}),
         u"Application \"com.example.app\", group 1: \"ParentTitle\" is not text."_s},
        {inGroup(7), place + u"It is not a dictionary."_s},
        {inGroup(plist::Value(with(good, u"MenuItemTitle"_s, 3))),
         place + u"\"MenuItemTitle\" is not text."_s},
        {inGroup(plist::Value(with(good, u"NewKeyCommands"_s, u"x"_s))),
         place + u"\"NewKeyCommands\" is not a dictionary."_s},
        {badCommand(u"kc"_s, u"1"_s), place + u"\"kc\" in \"NewKeyCommands\" is not a number."_s},
        {badCommand(u"t"_s, 1), place + u"\"t\" in \"NewKeyCommands\" is not text."_s},
    };
    for (const auto &[shortcuts, message] : rows)
        EXPECT_EQ(reviewShortcuts(shortcuts).damage, message);

    const ShortcutReview odd = reviewShortcuts({{u"Version"_s, 1}});
    EXPECT_EQ(odd.damage, QString());
    EXPECT_EQ(odd.incomplete, 1);
    EXPECT_EQ(odd.firstIncomplete, u"Application \"Version\": Its groups are not an array."_s);
    EXPECT_EQ(countShortcuts({{u"Version"_s, 1}}), ShortcutCount());

    const QString needed[] = {u"MenuItemTitle"_s, u"OriginalKeyCommands"_s, u"NewKeyCommands"_s};
    for (const QString &key : needed) {
        const plist::Dictionary shortcuts = inGroup(plist::Value(without(good, key)));
        const ShortcutReview review = reviewShortcuts(shortcuts);
        EXPECT_EQ(review.damage, QString()) << key.toStdString();
        EXPECT_EQ(review.incomplete, 1) << key.toStdString();
        EXPECT_EQ(review.firstIncomplete, place + u"\"%1\" is missing."_s.arg(key));
        EXPECT_EQ(importShortcuts({}, shortcuts).added, 1) << "what lacks " << key.toStdString();
    }
}

TEST(ShortcutArchive, OnlyArchivesAreRead)
{
    const plist::Dictionary shortcuts =
        application({plist::Value(group(u"File"_s, {changed(u"Save"_s), u"odd"_s}))});
    const QByteArray good = writeArchive({{12.5}, shortcuts});
    QString error;
    const auto archive = readArchive(good, &error);
    ASSERT_TRUE(archive) << error.toStdString();
    EXPECT_EQ(archive->date, plist::Date{12.5});
    EXPECT_EQ(archive->shortcuts, shortcuts) << "whatever was stored comes back as it was";

    const plist::Dictionary root = plist::read(good).toDictionary();
    const auto written = [](const plist::Dictionary &dictionary) {
        return plist::write(plist::Value(dictionary), plist::Format::Xml);
    };
    const std::pair<QByteArray, QString> rows[] = {
        {"not a list", u"It is not a property list. "_s},
        {good.left(good.size() / 2), u"It is not a property list. "_s},
        {written({{u"MenuShortcuts"_s, plist::Value(shortcuts)}}),
         u"It does not hold exported shortcuts."_s},
        {written(with(root, u"Version"_s, 2)), u"It was written by a newer version of Tarnwell."_s},
        {written(without(root, u"Date"_s)), u"\"Date\" is missing or of the wrong type."_s},
        {written(with(root, u"MenuShortcuts"_s, 1)),
         u"\"MenuShortcuts\" is missing or of the wrong type."_s},
    };
    for (const auto &[bytes, message] : rows) {
        EXPECT_FALSE(readArchive(bytes, &error));
        EXPECT_TRUE(error.startsWith(message)) << error.toStdString();
    }
}

TEST(ShortcutArchive, ImportingAddsAndReplacesAndTouchesNothingElse)
{
    const plist::Dictionary stored{
        {u"com.example.app"_s,
         plist::Value(plist::Array{
             u"odd"_s, plist::Value(group(u"File"_s, {changed(u"Save"_s), changed(u"Open"_s)}))})},
        {u"com.example.other"_s, u"odd"_s}};
    const plist::Dictionary imported{
        {u"com.example.app"_s,
         plist::Value(plist::Array{
             plist::Value(group(u"Edit"_s, {changed(u"Copy"_s), changed(u"Save"_s, 9)})),
             plist::Value(group(u"File"_s, {changed(u"Open"_s), changed(u"Print"_s)}))})},
        {u"com.example.new"_s,
         plist::Value(plist::Array{plist::Value(group(u"File"_s, {changed(u"Zoom"_s)}))})}};
    const ShortcutImport import = importShortcuts(stored, imported);
    EXPECT_EQ(import.added, 3);
    EXPECT_EQ(import.replaced, 1);
    EXPECT_EQ(import.unchanged, 1);
    const plist::Dictionary expected{
        {u"com.example.app"_s,
         plist::Value(
             plist::Array{u"odd"_s,
                          plist::Value(group(u"File"_s, {changed(u"Save"_s, 9), changed(u"Open"_s),
                                                         changed(u"Print"_s)})),
                          plist::Value(group(u"Edit"_s, {changed(u"Copy"_s)}))})},
        {u"com.example.new"_s,
         plist::Value(plist::Array{plist::Value(group(u"File"_s, {changed(u"Zoom"_s)}))})},
        {u"com.example.other"_s, u"odd"_s}};
    EXPECT_EQ(import.shortcuts, expected)
        << plist::description(plist::Value(import.shortcuts)).toStdString();
    EXPECT_EQ(importShortcuts(import.shortcuts, imported).shortcuts, import.shortcuts)
        << "importing twice changes nothing more";
}

// A time that grows with the square of the number would be longer than this program is given.
TEST(ShortcutArchive, ImportsAsManyAsAllowedAndNoMore)
{
    plist::Array items, others;
    for (int i = 0; i < mostImportedItems; ++i) {
        items.append(changed(QString::number(i)));
        others.append(changed(QString::number(i), 3));
    }
    const auto all = application({plist::Value(group(u"File"_s, items))});
    EXPECT_EQ(reviewShortcuts(all).damage, QString());
    EXPECT_EQ(importShortcuts({}, all).shortcuts, all);
    EXPECT_EQ(importShortcuts(application({plist::Value(group(u"File"_s, others))}), all).shortcuts,
              all);
    items.append(changed(u"one more"_s));
    EXPECT_EQ(reviewShortcuts(application({plist::Value(group(u"File"_s, items))})).damage,
              u"It holds 100001 shortcuts, and at most 100000 can be imported."_s);
}

TEST(ShortcutArchive, BringingBackLeavesWhatIsNoApplications)
{
    const plist::Value groups = plist::Array{};
    const plist::Dictionary kept{
        {u"app"_s, groups}, {u"damaged since"_s, groups}, {u"Version"_s, 1}, {u"gone"_s, 1}};
    const plist::Dictionary present{
        {u"new"_s, groups}, {u"damaged since"_s, 7}, {u"Version"_s, 2}, {u"Other"_s, 3}};
    EXPECT_EQ(bringBackShortcuts(present, kept), (plist::Dictionary{{u"app"_s, groups},
                                                                    {u"damaged since"_s, groups},
                                                                    {u"Version"_s, 2},
                                                                    {u"Other"_s, 3},
                                                                    {u"gone"_s, 1}}));
}

class Backups : public testing::Test
{
protected:
    void keep(int number)
    {
        QString error;
        EXPECT_TRUE(backups.keep({{u"number"_s, number}}, &error));
    }

    fakes::FakeFileStoreControl control;
    fakes::FakeFileStore files{control};
    fakes::FakeClock clock;
    ShortcutBackups backups{files, clock, u"/home/tester/Backups"_s};
};

TEST_F(Backups, KeepTheNewestEvenWithinOneInstant)
{
    control.files[u"/home/tester/Backups/notes.txt"_s] = "mine";
    for (int number = 0; number < ShortcutBackups::limit + 5; ++number)
        keep(number);
    const QList<ShortcutBackup> list = backups.list();
    ASSERT_EQ(list.size(), ShortcutBackups::limit);
    QString error;
    EXPECT_EQ(backups.read(list.first().path, &error)->shortcuts.value(u"number"),
              plist::Value(ShortcutBackups::limit + 4));
    EXPECT_EQ(backups.read(list.last().path, &error)->shortcuts.value(u"number"), plist::Value(5));
    EXPECT_TRUE(control.files.contains(u"/home/tester/Backups/notes.txt"_s));
}

TEST_F(Backups, PassOverWhatIsDamaged)
{
    keep(1);
    control.files[u"/home/tester/Backups/Shortcuts 9999.plist"_s] = "damaged";
    ASSERT_EQ(backups.list().size(), 1);
    QString error;
    EXPECT_FALSE(backups.read(u"/home/tester/Backups/Shortcuts 9999.plist"_s, &error));
    EXPECT_FALSE(error.isEmpty());
    control.writeError = u"No space left"_s;
    EXPECT_FALSE(backups.keep({}, &error));
    EXPECT_EQ(error, u"No space left"_s);
}

} // namespace tarnwell::shortcuts
