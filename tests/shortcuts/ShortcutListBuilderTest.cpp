#include "shortcuts/ShortcutListBuilder.h"
#include "shortcuts/ShortcutCells.h"
#include "shortcuts/ShortcutList.h"
#include "shortcuts/SpokenKeys.h"
#include "support/ShortcutRecords.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::shortcuts {

using namespace tests;

namespace {

/// Shows a key command by its numbers.
class NumberTranslator final : public KeyCommandTranslator
{
public:
    foundation::StyledString display(const plist::Dictionary &keyCommand) override
    {
        return foundation::StyledString(u"key %1"_s.arg(keyCommand.value(u"kc").toInteger()));
    }
    std::optional<QString> fingerprint(const plist::Value &, const plist::Value &) override
    {
        return std::nullopt;
    }
};

ShortcutListResult build(const plist::Array &groups, bool isInNotification = false)
{
    NumberTranslator translator;
    return buildShortcutRows(groups, u"com.example.app"_s, isInNotification, translator);
}

plist::Array oneGroup(const plist::Array &items)
{
    return {plist::Value(group(u"File"_s, items))};
}

QStringList keys(const ShortcutListResult &result)
{
    QStringList keys;
    for (const ShortcutRow &row : result.rows)
        keys.append(row.key);
    return keys;
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

TEST(ShortcutListBuilder, DecidesWhatIsShownAndWhatIsDropped)
{
    const plist::Dictionary complete = changedItem(u"Save"_s);
    struct Row
    {
        const char *name;
        plist::Value item;
        bool shown;
        bool dropped;
        bool shownInNotification;
    };
    const Row rows[] = {
        {"complete", plist::Value(complete), true, false, true},
        {"unchanged", plist::Value(changedItem(u"Save"_s, 3, 3)), false, false, false},
        {"same key, other modifiers",
         plist::Value(
             item(u"Save"_s, command(3, 0x0100, u"Save"_s), command(3, 0x0300, u"Save"_s))),
         true, false, true},
        {"without the original", plist::Value(without(complete, u"OriginalKeyCommands"_s)), false,
         true, true},
        {"without the new", plist::Value(without(complete, u"NewKeyCommands"_s)), false, true,
         false},
        {"without a title", plist::Value(without(complete, u"MenuItemTitle"_s)), false, false,
         false},
        {"with a title that is no text", plist::Value(with(complete, u"MenuItemTitle"_s, 5)), false,
         false, false},
        {"with an original that is no dictionary",
         plist::Value(with(complete, u"OriginalKeyCommands"_s, u"damaged"_s)), true, false, true},
        {"no dictionary", u"damaged"_s, false, false, false},
        {"cleared",
         plist::Value(item(u"Save"_s, command(3, 0x0100, u"Save"_s), command(-1, 0, u"Save"_s))),
         true, false, true},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const plist::Value neighbour(changedItem(u"Neighbour"_s));
        const plist::Array groups = oneGroup({row.item, neighbour});
        const ShortcutListResult result = build(groups);
        EXPECT_EQ(keys(result).contains(u"Save"_s), row.shown);
        EXPECT_TRUE(keys(result).contains(u"Neighbour"_s));
        EXPECT_EQ(result.groupsChanged, row.dropped);
        EXPECT_EQ(result.groups, row.dropped ? oneGroup({neighbour}) : groups);

        const ShortcutListResult quiet = build(groups, true);
        EXPECT_EQ(keys(quiet).contains(u"Save"_s), row.shownInNotification);
        EXPECT_FALSE(quiet.groupsChanged);
        EXPECT_EQ(quiet.groups, groups);
    }
}

TEST(ShortcutListBuilder, WrongTypesCostTheirNeighboursNothing)
{
    const plist::Value good(group(u"Edit"_s, {plist::Value(changedItem(u"Copy"_s))}));
    const plist::Value bad[] = {
        u"text"_s,
        1,
        plist::Value(plist::Array{good}),
        plist::Value(plist::Dictionary{{u"Keys"_s, u"text"_s}}),
        plist::Value(plist::Dictionary{{u"Keys"_s, plist::Value(plist::Dictionary())}}),
        plist::Value(plist::Dictionary{{u"ParentTitle"_s, 3}})};
    for (const plist::Value &damaged : bad) {
        SCOPED_TRACE(plist::description(damaged).toStdString());
        const plist::Array groups{damaged, good};
        const ShortcutListResult result = build(groups);
        EXPECT_EQ(keys(result), QStringList{u"Copy"_s});
        EXPECT_EQ(result.groups, groups);
    }
}

TEST(ShortcutListBuilder, RecordsOfOneTitleMergeIntoOneRow)
{
    plist::Dictionary first = item(u"Find"_s, command(1, 0, u"Find…"_s), command(2, 0, u"Find…"_s));
    first.insert(u"Colour"_s, u"red"_s);
    const plist::Dictionary second =
        item(u"Find"_s, command(3, 0x0100, u"Search"_s), command(4, 0x0800, u"Search"_s));
    const ShortcutListResult result =
        build({plist::Value(without(group(u""_s, {plist::Value(first)}), u"ParentTitle"_s)),
               plist::Value(group(u"Edit"_s, {plist::Value(second)}))});
    ASSERT_EQ(result.rows.size(), 1);
    const ShortcutRow &row = result.rows.first();
    EXPECT_EQ(row.settingsKey, u"com.example.app"_s);
    EXPECT_EQ(row.title, plist::Value(u"Find…"_s)) << "the first one met";
    EXPECT_EQ(row.parentTitle, plist::Value(u"Edit"_s)) << "the first group that has one";
    EXPECT_EQ(row.originalKeyCode, plist::Value(1));
    EXPECT_EQ(row.keyCode, plist::Value(2));
    EXPECT_EQ(row.originalModifiers, plist::Value(0x0100)) << "a stored 0 gives way";
    EXPECT_EQ(row.modifiers, plist::Value(0x0800));
    EXPECT_EQ(row.originalTranslatedKey.text(), u"key 3"_s) << "the last one met";
    EXPECT_EQ(row.translatedKey.text(), u"key 4"_s);
    EXPECT_EQ(row.item.value(u"Colour"), plist::Value(u"red"_s));
    EXPECT_FALSE(result.groupsChanged);
}

TEST(ShortcutListBuilder, MissingModifiersCountAsNone)
{
    const plist::Dictionary bare{{u"kc"_s, 1}, {u"t"_s, u"Undo"_s}};
    const ShortcutListResult result =
        build(oneGroup({plist::Value(item(u"Undo"_s, bare, command(2, 0x0100, u"Undo"_s)))}));
    ASSERT_EQ(result.rows.size(), 1);
    EXPECT_EQ(result.rows.first().originalModifiers, plist::Value(0));
}

TEST(ShortcutList, SortsByTitleAcrossApplications)
{
    ShortcutList list;
    list.append(build(oneGroup({plist::Value(changedItem(u"zoom"_s)),
                                plist::Value(changedItem(u"Above"_s))}))
                    .rows);
    list.append(build(oneGroup({plist::Value(changedItem(u"Print"_s)),
                                plist::Value(changedItem(u"above"_s))}))
                    .rows);
    QStringList titles;
    for (const ShortcutRow &row : list.rows())
        titles.append(row.title.toString());
    EXPECT_EQ(titles, (QStringList{u"Above"_s, u"above"_s, u"Print"_s, u"zoom"_s}));
    EXPECT_TRUE(list.hasRowsOf(u"com.example.app"_s));
    list.clear();
    EXPECT_FALSE(list.hasRowsOf(u"com.example.app"_s));
}

TEST(ShortcutCells, ShowMenuPathTitleAndMenu)
{
    const auto level = [](const QString &title) {
        return plist::Value(plist::Dictionary{{u"MenuItemTitle"_s, title}});
    };
    struct Row
    {
        const char *name;
        plist::Value path;
        plist::Value title;
        QString text;
    };
    const Row rows[] = {
        {"path", plist::Array{level(u"File"_s), level(u"Export"_s), level(u"Movie"_s)}, u"Movie"_s,
         u"File \u261E Export \u261E Movie"_s},
        {"path with gaps", plist::Array{3, level(u"File"_s), plist::Dictionary{}, level(u"%1"_s)},
         u"x"_s, u"File \u261E %1"_s},
        {"empty path", plist::Array{}, u"Movie"_s, u"Movie"_s},
        {"path without titles", plist::Array{plist::Dictionary{}}, u"Movie"_s, u"Movie"_s},
        {"no path", {}, u"Movie"_s, u"Movie"_s},
        {"nothing", {}, {}, u"n/a"_s},
        {"damaged", u"path"_s, 4, u"n/a"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        ShortcutRow record;
        record.title = row.title;
        record.item.insert(u"MenuPath"_s, row.path);
        const auto cell = shortcutCellValue(record, 0);
        ASSERT_TRUE(cell);
        EXPECT_EQ(*cell, foundation::StyledString(row.text, {foundation::FontStyle::SmallBoldSystem,
                                                             foundation::TextColor::Inherited}));
    }
}

TEST(SpokenKeys, AreWords)
{
    EXPECT_EQ(spokenShortcut(u"\u21E7\u2303\u2325\u2318F1"_s),
              u"Shift Control Option Command F1"_s);
    EXPECT_EQ(spokenShortcut(u"\u2318\u2190"_s), u"Command Left Arrow"_s);
    EXPECT_EQ(spokenShortcut(u"None"_s), u"None"_s);
    EXPECT_EQ(spokenShortcut(u"\u2303,"_s), u"Control Comma"_s);
    EXPECT_EQ(spokenShortcut(u"\u2303 "_s), u"Control Space"_s);
    EXPECT_EQ(spokenShortcut(u"\u2318\u2326"_s), u"Command Backspace"_s);
    EXPECT_EQ(spokenShortcut(u"\u2318\u232B"_s), u"Command Forward Delete"_s);
    EXPECT_EQ(spokenShortcut(u"\u21E7<<Help Key>>"_s), u"Shift Help"_s);
}

} // namespace tarnwell::shortcuts
