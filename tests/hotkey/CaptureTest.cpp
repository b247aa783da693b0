// Which keys can be the hot key, what they are shown as, and what is stored of them.

#include "fakes/FakeKeyboardLayouts.h"
#include "fakes/FakePreferences.h"
#include "hotkey/HotKey.h"
#include "prefs/CFPreferencesWrapper_Tarnwell.h"
#include "prefs/PreferenceKeys.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::hotkey {
namespace {

constexpr quint16 keyM = 0x2E;
constexpr quint16 keyF5 = 0x60;
constexpr quint16 keyLeft = 0x7B;
constexpr quint16 keyPad5 = 0x57;
constexpr quint16 keyF17 = 0x40;
constexpr quint16 keyHelp = 0x72;
constexpr quint32 pad = 0x200000;
constexpr quint32 help = 0x400000;
constexpr quint32 function = 0x800000;

// --- what is accepted -------------------------------------------------------------------------

TEST(Capturing, NeedsAModifierForOrdinaryKeys)
{
    struct Row
    {
        const char *name;
        KeyEvent event;
        Verdict verdict;
        QString text = {};
        quint32 stored = 0;
    };
    const Row rows[] = {
        {"no modifier", {keyM, 0}, Verdict::NeedsModifier},
        {"only bits below the modifiers", {keyM, 0xFFFF}, Verdict::NeedsModifier},
        {"Shift alone", {keyM, 0x20000}, Verdict::ShiftAlone},
        {"left Shift alone", {keyM, 0x20102}, Verdict::ShiftAlone},
        {"Shift and Caps Lock", {keyM, 0x30000}, Verdict::Accepted, u"⇧M"_s, 9},
        {"Caps Lock alone", {keyM, 0x10000}, Verdict::Accepted, u"M"_s, 8},
        {"Command", {keyM, 0x100000}, Verdict::Accepted, u"⌘M"_s, 0},
        {"left Control", {keyM, 0x40101}, Verdict::Accepted, u"⌃M"_s, 12},
        {"Shift Option", {keyM, 0xA0000}, Verdict::Accepted, u"⇧⌥M"_s, 11},
        {"all four and Caps Lock", {keyM, 0x1F0000}, Verdict::Accepted, u"⇧⌃⌥⌘M"_s, 7},
        {"function key alone", {keyF5, function}, Verdict::Accepted, u"F5"_s, 8},
        {"arrow alone", {keyLeft, pad | function}, Verdict::Accepted, u"←"_s, 8},
        {"keypad alone", {keyPad5, pad}, Verdict::Accepted, u"5"_s, 8},
        {"Help alone", {keyHelp, help | function}, Verdict::Accepted, u"<<Help Key>>"_s, 8},
        {"key without text alone", {keyF17, function}, Verdict::Accepted, u""_s, 8},
        {"space with Control", {0x31, 0x40000}, Verdict::Accepted, u"⌃ "_s, 12},
    };
    fakes::FakeKeyboardLayouts keyboard;
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const Capture captured = capture(keyboard.port(), row.event);
        EXPECT_EQ(captured.verdict, row.verdict);
        EXPECT_EQ(captured.text, row.text);
        if (row.verdict == Verdict::Accepted) {
            EXPECT_EQ(hotKeyFor(row.event), (HotKey{row.event.keyCode, row.stored}));
        }
    }
}

TEST(Capturing, NeedsALayoutForOrdinaryKeysOnly)
{
    fakes::FakeKeyboardLayouts keyboard;
    keyboard.useNoLayout();
    EXPECT_EQ(capture(keyboard.port(), {keyM, 0x40000}).verdict, Verdict::NotShowable);
    EXPECT_EQ(capture(keyboard.port(), {keyF5, function}).text, u"F5"_s);
    keyboard.useLayoutData(u"xkb:odd"_s, {});
    EXPECT_EQ(capture(keyboard.port(), {keyM, 0x40000}).verdict, Verdict::NotShowable);
}

TEST(HotKeys, AreToldApartInWords)
{
    fakes::FakeKeyboardLayouts keyboard;
    const std::pair<HotKey, QString> rows[] = {
        {{keyM, 6}, u"Control Option Command M"_s},
        {{0x2B, 12}, u"Control Comma"_s},
        {{0x75, 9}, u"Shift Forward Delete"_s},
        {{0x6E, 12}, u"Control Menu Key"_s},
        {{keyPad5, 8}, u"Keypad 5"_s},
        {{0x43, 12}, u"Control Keypad Asterisk"_s},
        {{keyF17, 0}, u"Command Key 64"_s},
    };
    for (const auto &[hotKey, words] : rows)
        EXPECT_EQ(spokenHotKey(hotKey, displayString(keyboard.port(), hotKey).value()), words);
}

TEST(SheetKeys, AreNeverTaken)
{
    struct Row
    {
        const char *name;
        int key;
        quint32 modifiers;
        bool worksTheSheet;
    };
    const Row rows[] = {
        {"Tab", Qt::Key_Tab, 0, true},
        {"Shift+Tab", Qt::Key_Backtab, shiftFlag, true},
        {"Shift+Tab by its other name", Qt::Key_Tab, shiftFlag, true},
        {"Control+Tab", Qt::Key_Tab, controlFlag, false},
        {"Escape", Qt::Key_Escape, 0, true},
        {"Escape under Caps Lock", Qt::Key_Escape, capsLockFlag, true},
        {"Shift+Escape", Qt::Key_Escape, shiftFlag, false},
        {"Return", Qt::Key_Return, 0, true},
        {"Option+Return", Qt::Key_Return, optionFlag, false},
        {"Enter", Qt::Key_Enter, pad, false},
        {"Space", Qt::Key_Space, 0, false},
    };
    for (const Row &row : rows)
        EXPECT_EQ(worksTheSheet(row.key, row.modifiers), row.worksTheSheet) << row.name;
}

// --- what is stored ---------------------------------------------------------------------------

TEST(StoredHotKey, IsReadWhenBothValuesAreThere)
{
    struct Row
    {
        const char *name;
        plist::Value keyCode;
        plist::Value modifiers;
        std::optional<HotKey> hotKey;
    };
    const Row rows[] = {
        {"both", 0x2E, 6, HotKey{0x2E, 6}},
        {"key code alone", 0x2E, {}, {}},
        {"modifiers alone", {}, 6, {}},
        {"a list", 0x2E, plist::Value(plist::Array{6}), HotKey{0x2E, 0}},
        {"a word", u"46"_s, 6, HotKey{0, 6}},
        {"true", true, 6, HotKey{0, 6}},
        {"a real", 46.0, 6.0, HotKey{0x2E, 6}},
        {"wider numbers", 0x7F0002E, qint64{1} << 32 | 6, HotKey{0x2E, 6}},
        {"negative numbers", -1, -1, HotKey{0xFFFF, 0xFFFFFFFF}},
    };
    for (const Row &row : rows) {
        fakes::FakePreferences preferences;
        preferences.control().setStoredDomain(prefs::pluginDomain,
                                              {{prefs::keys::menuAccKeyCode, row.keyCode},
                                               {prefs::keys::menuAccMods, row.modifiers}});
        preferences.appSynchronize(prefs::pluginDomain);
        const auto wrapper = prefs::CFPreferencesWrapper_Tarnwell::preferencesWithApplication(
            preferences, prefs::pluginDomain);
        EXPECT_EQ(storedHotKey(*wrapper), row.hotKey) << row.name;
    }
}

TEST(StoredHotKey, ByDefaultIsTheKeyThatTypesM)
{
    fakes::FakeKeyboardLayouts keyboard;
    EXPECT_EQ(defaultHotKey(keyboard.port()), (HotKey{keyM, 6}));
    keyboard.useBoard(u"xkb:fr"_s, {{0x29, u"m"_s}, {keyM, u","_s}});
    EXPECT_EQ(defaultHotKey(keyboard.port()), (HotKey{0x29, 6}));
    keyboard.useLayoutData(u"xkb:odd"_s, {});
    EXPECT_EQ(defaultHotKey(keyboard.port()), std::nullopt);
    keyboard.useNoLayout();
    EXPECT_EQ(defaultHotKey(keyboard.port()), std::nullopt);
}

} // namespace
} // namespace tarnwell::hotkey
