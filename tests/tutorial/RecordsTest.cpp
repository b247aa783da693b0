#include "tutorial/Records.h"

#include <gtest/gtest.h>

using namespace tarnwell;
using namespace tarnwell::tutorial;
using namespace Qt::StringLiterals;

namespace {

const QString app = u"com.varnit.tarnwell.tutorial"_s;
const QString sitting = u"now"_s;

const Shortcut ctrlN{0x2D, u'N', controlBit};
const Shortcut ctrlT{0x11, u'T', controlBit};
const Shortcut ctrlShiftK{0x28, u'K', controlBit | shiftBit};
const Shortcut f5{0x60, 0xF708, 0};
const Shortcut none;

const QList<Item> items{{u"New"_s, {u"File"_s}, ctrlN},
                        {u"Text"_s, {u"File"_s}, ctrlT},
                        {u"Star"_s, {u"Edit"_s, u"Symbol"_s}, none}};

plist::Dictionary keys(const Shortcut &shortcut, const QString &title)
{
    return {{u"kc"_s, shortcut.isNone() ? -1 : int(shortcut.keyCode)},
            {u"cK"_s, int(shortcut.commandKey)},
            {u"mod"_s, int(shortcut.modifiers)},
            {u"t"_s, title}};
}

plist::Dictionary path(const QString &title)
{
    return {{u"MenuItemTitle"_s, title}};
}

/// A record as it is written for one of the items.
plist::Dictionary written(const Item &item, const Shortcut &now)
{
    plist::Array menuPath;
    for (const QString &menu : item.menus)
        menuPath.append(path(menu));
    menuPath.append(path(item.title));
    return {{u"MenuItemTitle"_s, item.title},
            {u"OriginalKeyCommands"_s, keys(item.original, item.title)},
            {u"NewKeyCommands"_s, keys(now, item.title)},
            {u"MenuPath"_s, menuPath},
            {u"TutorialSitting"_s, sitting}};
}

plist::Dictionary group(const QString &title, const plist::Array &records)
{
    return {{u"ParentTitle"_s, title}, {u"Keys"_s, records}};
}

plist::Dictionary with(plist::Dictionary dictionary, const QString &key, const plist::Value &value)
{
    dictionary.insert(key, value);
    return dictionary;
}

plist::Value stored(const plist::Array &groups)
{
    return plist::Dictionary{{app, groups}};
}

const plist::Dictionary newIsK = written(items[0], ctrlShiftK);
const plist::Dictionary textIsNone = written(items[1], none);
const plist::Dictionary other{{u"example.other"_s, plist::Array{u"untouched"_s}}};

struct AssignRow
{
    const char *name;
    plist::Value before;
    QString title;
    Shortcut shortcut;
    plist::Value after;
    QStringList displaced = {};
};

void PrintTo(const AssignRow &row, std::ostream *stream)
{
    *stream << row.name;
}

class AssignTest : public testing::TestWithParam<AssignRow>
{};

TEST_P(AssignTest, writesTheWholeValue)
{
    const AssignRow &row = GetParam();
    const Assignment result = assign(row.before, app, items, row.title, row.shortcut, sitting);
    EXPECT_EQ(result.menuShortcuts, row.after);
    EXPECT_EQ(result.displaced, row.displaced);
}

const AssignRow assignRows[] = {
    {"first_of_all", {}, u"New"_s, ctrlShiftK, stored({group(u"File"_s, {newIsK})})},
    {"other_applications_stay", other, u"New"_s, ctrlShiftK,
     with(other, app, plist::Array{group(u"File"_s, {newIsK})})},
    {"submenu_names_the_group",
     {},
     u"Star"_s,
     f5,
     stored({group(u"Symbol"_s, {written(items[2], f5)})})},
    {"joins_the_group_of_its_menu", stored({group(u"File"_s, {textIsNone})}), u"New"_s, ctrlShiftK,
     stored({group(u"File"_s, {textIsNone, newIsK})})},
    {"again_replaces", stored({group(u"File"_s, {newIsK})}), u"New"_s, f5,
     stored({group(u"File"_s, {written(items[0], f5)})})},
    {"unknown_keys_stay_at_every_level",
     stored({with(group(u"File"_s, {with(with(newIsK, u"Tag"_s, 7), u"NewKeyCommands"_s,
                                         with(keys(ctrlShiftK, u"New"_s), u"g"_s, 23))}),
                  u"Identifier"_s, u"menu.1"_s),
             u"no group"_s}),
     u"New"_s, f5,
     stored(
         {with(group(u"File"_s, {with(with(written(items[0], f5), u"Tag"_s, 7), u"NewKeyCommands"_s,
                                      with(keys(f5, u"New"_s), u"g"_s, 23))}),
               u"Identifier"_s, u"menu.1"_s),
          u"no group"_s})},
    {"every_record_of_the_title",
     stored({group(u"File"_s, {newIsK}), group(u"Elsewhere"_s, {newIsK})}), u"New"_s, f5,
     stored({group(u"File"_s, {written(items[0], f5)}),
             group(u"Elsewhere"_s, {written(items[0], f5)})})},
    {"a_stored_original_stays",
     stored({group(u"File"_s, {with(newIsK, u"OriginalKeyCommands"_s, keys(f5, u"New"_s))})}),
     u"New"_s, f5,
     stored({group(u"File"_s,
                   {with(written(items[0], f5), u"OriginalKeyCommands"_s, keys(f5, u"New"_s))})})},
    {"an_original_shortcut_is_taken_over",
     {},
     u"New"_s,
     ctrlT,
     stored({group(u"File"_s, {written(items[0], ctrlT), textIsNone})}),
     {u"Text"_s}},
    {"an_assigned_shortcut_is_taken_over",
     stored({group(u"File"_s, {newIsK})}),
     u"Star"_s,
     ctrlShiftK,
     stored({group(u"File"_s, {written(items[0], none)}),
             group(u"Symbol"_s, {written(items[2], ctrlShiftK)})}),
     {u"New"_s}},
    {"its_own_shortcut_displaces_nobody", stored({group(u"File"_s, {newIsK})}), u"New"_s,
     ctrlShiftK, stored({group(u"File"_s, {newIsK})})},
    {"original_again_leaves_the_others", stored({group(u"File"_s, {newIsK, textIsNone})}), u"New"_s,
     ctrlN, stored({group(u"File"_s, {textIsNone})})},
    {"original_of_the_last_one_of_a_group",
     stored({group(u"File"_s, {newIsK}), group(u"Symbol"_s, {written(items[2], f5)})}), u"New"_s,
     ctrlN, stored({group(u"Symbol"_s, {written(items[2], f5)})})},
    {"original_of_the_last_one_of_the_application",
     with(other, app, plist::Array{group(u"File"_s, {newIsK})}), u"New"_s, ctrlN, other},
    {"original_of_the_last_one_of_all", stored({group(u"File"_s, {newIsK})}), u"New"_s, ctrlN, {}},
    {"original_that_another_item_has_now",
     stored({group(u"File"_s, {newIsK, written(items[1], ctrlN)})}),
     u"New"_s,
     ctrlN,
     stored({group(u"File"_s, {textIsNone})}),
     {u"Text"_s}},
    {"none_for_an_item_with_an_original",
     {},
     u"Text"_s,
     none,
     stored({group(u"File"_s, {textIsNone})})},
    {"none_for_an_item_that_never_had_one", {}, u"Star"_s, none, {}},
    {"a_value_of_another_type_is_replaced", u"damaged"_s, u"New"_s, ctrlShiftK,
     stored({group(u"File"_s, {newIsK})})},
    {"an_unknown_title_changes_nothing", stored({group(u"File"_s, {newIsK})}), u"Gone"_s, f5,
     stored({group(u"File"_s, {newIsK})})},
};

constexpr auto nameOf = [](const auto &row) { return std::string(row.param.name); };
INSTANTIATE_TEST_SUITE_P(Records, AssignTest, testing::ValuesIn(assignRows), nameOf);

struct EffectiveRow
{
    const char *name;
    plist::Value stored;
    Shortcut ofNew;
    Shortcut ofText;
    Shortcut ofStar;
};

void PrintTo(const EffectiveRow &row, std::ostream *stream)
{
    *stream << row.name;
}

class EffectiveTest : public testing::TestWithParam<EffectiveRow>
{};

TEST_P(EffectiveTest, givesEachItemItsShortcut)
{
    const EffectiveRow &row = GetParam();
    const auto result = effectiveShortcuts(row.stored, app, items);
    EXPECT_TRUE(result.value(u"New"_s) == row.ofNew);
    EXPECT_TRUE(result.value(u"Text"_s) == row.ofText);
    EXPECT_TRUE(result.value(u"Star"_s) == row.ofStar);
    EXPECT_EQ(result.size(), 3);
}

plist::Value newWith(const plist::Dictionary &newKeys)
{
    return stored({group(u"File"_s, {with(newIsK, u"NewKeyCommands"_s, newKeys)})});
}

const EffectiveRow effectiveRows[] = {
    {"nothing_stored", {}, ctrlN, ctrlT, none},
    {"damaged", stored({u"x"_s, group(u"File"_s, {u"y"_s})}), ctrlN, ctrlT, none},
    {"changed", stored({group(u"File"_s, {newIsK})}), ctrlShiftK, ctrlT, none},
    {"cleared", stored({group(u"File"_s, {textIsNone})}), ctrlN, none, none},
    {"other_applications_do_not_count",
     plist::Dictionary{{u"example.other"_s, plist::Array{group(u"File"_s, {newIsK})}}}, ctrlN,
     ctrlT, none},
    {"the_last_record_of_a_title_counts",
     stored({group(u"A"_s, {newIsK}), group(u"B"_s, {written(items[0], f5)})}), f5, ctrlT, none},
    {"an_incomplete_record_does_not_count",
     stored({group(u"File"_s, {plist::Dictionary{{u"MenuItemTitle"_s, u"New"_s}}})}), ctrlN, ctrlT,
     none},
    {"without_modifiers_there_is_none", newWith({{u"kc"_s, 0x28}, {u"cK"_s, 75}}), none, ctrlT,
     none},
    {"without_a_key_code_the_character_counts",
     newWith({{u"cK"_s, 0x4B}, {u"mod"_s, int(controlBit)}}), Shortcut{noKey, u'K', controlBit},
     ctrlT, none},
    {"a_key_code_for_no_key_beats_the_character",
     newWith({{u"kc"_s, -1}, {u"cK"_s, 0x4B}, {u"mod"_s, int(controlBit)}}), none, ctrlT, none},
    {"bits_that_are_no_modifiers_do_not_count",
     newWith({{u"kc"_s, 0x28}, {u"cK"_s, 0x4B}, {u"mod"_s, int(controlBit | shiftBit | 0x400)}}),
     ctrlShiftK, ctrlT, none},
    {"a_stored_shortcut_beats_an_original", stored({group(u"File"_s, {written(items[0], ctrlT)})}),
     ctrlT, none, none},
    {"the_upper_one_of_two_stored",
     stored({group(u"S"_s, {written(items[2], f5)}), group(u"File"_s, {written(items[0], f5)})}),
     f5, ctrlT, none},
};

INSTANTIATE_TEST_SUITE_P(Records, EffectiveTest, testing::ValuesIn(effectiveRows), nameOf);

TEST(Sittings, takeTheRecordsOfEarlierOnesWithThem)
{
    const plist::Dictionary foreign = [] {
        plist::Dictionary record = textIsNone;
        record.remove("TutorialSitting"_L1);
        return record;
    }();
    const plist::Dictionary earlier = with(newIsK, u"TutorialSitting"_s, u"then"_s);
    EXPECT_EQ(
        withoutOtherSittings(stored({group(u"File"_s, {earlier, foreign, newIsK})}), app, sitting),
        stored({group(u"File"_s, {foreign, newIsK})}));
    EXPECT_EQ(withoutOtherSittings(with(other, app, plist::Array{group(u"F"_s, {earlier})}), app,
                                   sitting),
              plist::Value(other));
    EXPECT_EQ(withoutOtherSittings(stored({group(u"File"_s, {earlier})}), app, sitting),
              plist::Value());
}

} // namespace
