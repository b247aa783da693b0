#include "shortcuts/RestoreShortcut.h"
#include "support/ShortcutRecords.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::shortcuts {

using namespace tests;

namespace {

class NumberTranslator final : public KeyCommandTranslator
{
public:
    foundation::StyledString display(const plist::Dictionary &keyCommand) override
    {
        return foundation::StyledString(u"key %1"_s.arg(keyCommand.value(u"kc").toInteger()));
    }
    std::optional<QString> fingerprint(const plist::Value &keyCode,
                                       const plist::Value &commandKey) override
    {
        if (!hasLayout)
            return std::nullopt;
        return keyCode.isNull() ? u"None"_s
                                : u"%1/%2"_s.arg(keyCode.toInteger()).arg(commandKey.toInteger());
    }
    bool hasLayout = true;
};

plist::Value file(const plist::Array &items)
{
    return plist::Value(group(u"File"_s, items));
}

plist::Value edit(const plist::Array &items)
{
    return plist::Value(group(u"Edit"_s, items));
}

plist::Value changed(const QString &title, int original = 1, int now = 2)
{
    return plist::Value(changedItem(title, original, now));
}

/// The item with its new shortcut cleared: no key, no modifiers, all else kept.
plist::Value clearedOf(const plist::Value &item)
{
    plist::Dictionary cleared = item.toDictionary();
    plist::Dictionary command = cleared.value(u"NewKeyCommands").toDictionary();
    command.insert(u"kc"_s, -1);
    command.insert(u"mod"_s, 0);
    cleared.insert(u"NewKeyCommands"_s, plist::Value(command));
    return plist::Value(cleared);
}

ShortcutRow rowOf(const plist::Array &groups, const QString &title)
{
    NumberTranslator translator;
    for (const ShortcutRow &row :
         buildShortcutRows(groups, u"com.example.app"_s, true, translator).rows) {
        if (row.key == title)
            return row;
    }
    ADD_FAILURE() << "no row for " << title.toStdString();
    return {};
}

} // namespace

TEST(RestoreShortcut, RemovesTheItemAndClearsTheConflict)
{
    const plist::Dictionary captured =
        item(u"Find"_s, command(1, 0x0100, u"Find…"_s), command(2, 0x0100, u"Find…"_s));
    plist::Dictionary unknown = changedItem(u"Save"_s);
    unknown.insert(u"Colour"_s, u"red"_s);
    const plist::Value damaged(u"no group"_s);
    const plist::Value oddKeys(plist::Dictionary{{u"Keys"_s, u"text"_s}});
    const plist::Value empty = edit({});

    struct Row
    {
        const char *name;
        plist::Array groups;
        QString restored;
        QString conflict; ///< empty for none
        plist::Array expected;
        bool changed;
        bool groupRemoved;
    };
    const Row rows[] = {
        {"one of two items",
         {file({changed(u"Save"_s), changed(u"Open"_s)})},
         u"Save"_s,
         {},
         {file({changed(u"Open"_s)})},
         true,
         false},
        {"the last item of a group",
         {file({changed(u"Save"_s)}), edit({changed(u"Copy"_s)})},
         u"Save"_s,
         {},
         {edit({changed(u"Copy"_s)})},
         true,
         true},
        {"the last item of the application",
         {file({changed(u"Save"_s)})},
         u"Save"_s,
         {},
         {},
         true,
         true},
        {"neighbours in a row",
         {file({changed(u"A"_s), changed(u"A"_s), changed(u"B"_s)})},
         u"A"_s,
         {},
         {file({changed(u"B"_s)})},
         true,
         false},
        {"the title in two groups",
         {file({changed(u"A"_s)}), edit({changed(u"A"_s)})},
         u"A"_s,
         {},
         {},
         true,
         true},
        {"the same title with another shortcut stays",
         {file({changed(u"A"_s)}), edit({changed(u"A"_s, 1, 9)})},
         u"A"_s,
         {},
         {edit({changed(u"A"_s, 1, 9)})},
         true,
         true},
        {"conflict within the group",
         {file({changed(u"Save"_s), changed(u"Open"_s, 5, 1)})},
         u"Save"_s,
         u"Open"_s,
         {file({clearedOf(changed(u"Open"_s, 5, 1))})},
         true,
         false},
        {"conflict in another group",
         {edit({changed(u"Open"_s, 5, 1)}), file({changed(u"Save"_s), changed(u"Print"_s)})},
         u"Save"_s,
         u"Open"_s,
         {edit({clearedOf(changed(u"Open"_s, 5, 1))}), file({changed(u"Print"_s)})},
         true,
         false},
        {"captured title differs from the current one",
         {file({plist::Value(captured)})},
         u"Find"_s,
         {},
         {file({plist::Value(captured)})},
         false,
         false},
        {"an empty group goes, too",
         {empty, file({changed(u"Save"_s), changed(u"Open"_s)})},
         u"Save"_s,
         {},
         {file({changed(u"Open"_s)})},
         true,
         true},
        {"unknown keys and damage stay",
         {damaged, file({changed(u"Open"_s), plist::Value(unknown), 17}), oddKeys},
         u"Open"_s,
         {},
         {damaged, file({plist::Value(unknown), 17}), oddKeys},
         true,
         false},
    };
    for (const Row &row : rows) {
        for (const bool hasLayout : {true, false}) {
            SCOPED_TRACE(row.name);
            NumberTranslator translator;
            translator.hasLayout = hasLayout;
            const ShortcutRow restored = rowOf(row.groups, row.restored);
            const ShortcutRow conflict =
                row.conflict.isEmpty() ? ShortcutRow() : rowOf(row.groups, row.conflict);
            const RestoreResult result = restoreOriginal(
                row.groups, restored, row.conflict.isEmpty() ? nullptr : &conflict, translator);
            EXPECT_EQ(result.groups, row.expected)
                << plist::description(plist::Value(result.groups)).toStdString();
            EXPECT_EQ(result.changed, row.changed);
            EXPECT_EQ(result.groupRemoved, row.groupRemoved);
        }
    }
}

TEST(RestoreShortcut, FindsWhoHoldsAShortcut)
{
    const auto row = [](const QString &key, const QString &now, const plist::Value &modifiers) {
        ShortcutRow made;
        made.key = key;
        made.translatedKey = foundation::StyledString(now);
        made.modifiers = modifiers;
        made.originalTranslatedKey = foundation::StyledString(u"o"_s + now);
        made.originalModifiers = modifiers;
        return made;
    };
    const QList<ShortcutRow> rows{row(u"none"_s, {}, 256), row(u"a"_s, u"A"_s, 0),
                                  row(u"second a"_s, u"A"_s, 256), row(u"third"_s, u"A"_s, 256)};
    const auto find = [&rows](const QString &key, const plist::Value &modifiers, bool inOriginal) {
        const ShortcutRow *found =
            findKey(rows, foundation::StyledString(key), modifiers, inOriginal);
        return found ? found->key : QString();
    };
    EXPECT_EQ(find(u"A"_s, 256, false), u"second a"_s) << "the first with both";
    EXPECT_EQ(find(u"A"_s, 0, false), u"a"_s);
    EXPECT_EQ(find(u"A"_s, {}, false), QString()) << "missing modifiers equal nothing";
    EXPECT_EQ(find(u"oA"_s, 256, true), u"second a"_s);
    EXPECT_EQ(find(u"oA"_s, 256, false), QString());
    EXPECT_EQ(find({}, 256, false), u"none"_s) << "two missing keys are equal";
}

} // namespace tarnwell::shortcuts
