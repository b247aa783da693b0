// Which keys can be the hot key, what they are shown as, and what is stored of them.

#include "fakes/FakeKeyboardLayouts.h"
#include "fakes/FakePreferences.h"
#include "hotkey/HotKey.h"
#include "prefs/CFPreferencesWrapper_Tarnwell.h"
#include "prefs/PreferenceKeys.h"
#include "support/RowName.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::hotkey {
namespace {

using tests::RowName;

constexpr quint16 keyM = 0x2E;
constexpr quint16 keyF5 = 0x60;
constexpr quint16 keyLeft = 0x7B;
constexpr quint16 keyPad5 = 0x57;
constexpr quint16 keyEnter = 0x4C;
constexpr quint16 keyF17 = 0x40;
constexpr quint16 keyHelp = 0x72;
constexpr quint32 pad = 0x200000;
constexpr quint32 help = 0x400000;
constexpr quint32 function = 0x800000;

// --- what is accepted -------------------------------------------------------------------------

struct CaptureRow
{
    const char *name;
    KeyEvent event;
    Verdict verdict;
    QString text = {};
    quint32 stored = 0;
};

class Capturing : public testing::TestWithParam<CaptureRow>
{};

TEST_P(Capturing, Decides)
{
    fakes::FakeKeyboardLayouts keyboard;
    const CaptureRow &row = GetParam();
    const Capture captured = capture(keyboard.port(), row.event);
    EXPECT_EQ(captured.verdict, row.verdict);
    EXPECT_EQ(captured.text, row.text);
    if (row.verdict == Verdict::Accepted) {
        EXPECT_EQ(hotKeyFor(row.event), (HotKey{row.event.keyCode, row.stored}));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rules, Capturing,
    testing::Values(
        CaptureRow{"NoModifier", {keyM, 0}, Verdict::NeedsModifier},
        CaptureRow{"OnlyBitsBelowTheModifiers", {keyM, 0xFFFF}, Verdict::NeedsModifier},
        CaptureRow{"ShiftAlone", {keyM, 0x20000}, Verdict::ShiftAlone},
        CaptureRow{"LeftShiftAlone", {keyM, 0x20102}, Verdict::ShiftAlone},
        CaptureRow{"ShiftAndCapsLock", {keyM, 0x30000}, Verdict::Accepted, u"⇧M"_s, 9},
        CaptureRow{"CapsLockAlone", {keyM, 0x10000}, Verdict::Accepted, u"M"_s, 8},
        CaptureRow{"Control", {keyM, 0x40000}, Verdict::Accepted, u"⌃M"_s, 12},
        CaptureRow{"Option", {keyM, 0x80000}, Verdict::Accepted, u"⌥M"_s, 10},
        CaptureRow{"Command", {keyM, 0x100000}, Verdict::Accepted, u"⌘M"_s, 0},
        CaptureRow{"ShiftControl", {keyM, 0x60000}, Verdict::Accepted, u"⇧⌃M"_s, 13},
        CaptureRow{"ShiftOption", {keyM, 0xA0000}, Verdict::Accepted, u"⇧⌥M"_s, 11},
        CaptureRow{"ShiftCommand", {keyM, 0x120000}, Verdict::Accepted, u"⇧⌘M"_s, 1},
        CaptureRow{"ControlOption", {keyM, 0xC0000}, Verdict::Accepted, u"⌃⌥M"_s, 14},
        CaptureRow{"ControlOptionCommand", {keyM, 0x1C0000}, Verdict::Accepted, u"⌃⌥⌘M"_s, 6},
        CaptureRow{"AllFour", {keyM, 0x1E0000}, Verdict::Accepted, u"⇧⌃⌥⌘M"_s, 7},
        CaptureRow{"AllFourAndCapsLock", {keyM, 0x1F0000}, Verdict::Accepted, u"⇧⌃⌥⌘M"_s, 7},
        CaptureRow{"LeftControl", {keyM, 0x40101}, Verdict::Accepted, u"⌃M"_s, 12},
        CaptureRow{"FunctionKeyAlone", {keyF5, function}, Verdict::Accepted, u"F5"_s, 8},
        CaptureRow{
            "FunctionKeyWithShift", {keyF5, function | 0x20000}, Verdict::Accepted, u"⇧F5"_s, 9},
        CaptureRow{"ArrowAlone", {keyLeft, pad | function}, Verdict::Accepted, u"←"_s, 8},
        CaptureRow{"KeypadAlone", {keyPad5, pad}, Verdict::Accepted, u"5"_s, 8},
        CaptureRow{"EnterAlone", {keyEnter, pad}, Verdict::Accepted, u"⌅"_s, 8},
        CaptureRow{
            "HelpAlone", {keyHelp, help | function}, Verdict::Accepted, u"<<Help Key>>"_s, 8},
        CaptureRow{"KeyWithoutTextAlone", {keyF17, function}, Verdict::Accepted, u""_s, 8},
        CaptureRow{"KeyWithoutTextWithCommand",
                   {keyF17, function | 0x100000},
                   Verdict::Accepted,
                   u"⌘"_s,
                   0},
        CaptureRow{"SpaceWithControl", {0x31, 0x40000}, Verdict::Accepted, u"⌃ "_s, 12},
        CaptureRow{"EscapeWithCommand", {0x35, 0x100000}, Verdict::Accepted, u"⌘⎋"_s, 0}),
    RowName());

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
        {{0x33, 8}, u"Backspace"_s},
        {{0x75, 9}, u"Shift Forward Delete"_s},
        {{keyHelp, 0}, u"Command Help"_s},
        {{0x6E, 12}, u"Control Menu Key"_s},
        {{keyPad5, 8}, u"Keypad 5"_s},
        {{0x43, 12}, u"Control Keypad Asterisk"_s},
        {{keyLeft, 10}, u"Option Left Arrow"_s},
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
        {"Tab under Caps Lock", Qt::Key_Tab, capsLockFlag, true},
        {"Shift+Tab", Qt::Key_Backtab, shiftFlag, true},
        {"Shift+Tab by its other name", Qt::Key_Tab, shiftFlag, true},
        {"Control+Tab", Qt::Key_Tab, controlFlag, false},
        {"Control+Shift+Tab", Qt::Key_Backtab, controlFlag | shiftFlag, false},
        {"Escape", Qt::Key_Escape, 0, true},
        {"Escape under Caps Lock", Qt::Key_Escape, capsLockFlag, true},
        {"Shift+Escape", Qt::Key_Escape, shiftFlag, false},
        {"Command+Escape", Qt::Key_Escape, commandFlag, false},
        {"Return", Qt::Key_Return, 0, true},
        {"Option+Return", Qt::Key_Return, optionFlag, false},
        {"Enter", Qt::Key_Enter, pad, false},
        {"Space", Qt::Key_Space, 0, false},
    };
    for (const Row &row : rows)
        EXPECT_EQ(worksTheSheet(row.key, row.modifiers), row.worksTheSheet) << row.name;
}

// --- what is stored ---------------------------------------------------------------------------

TEST(StoredHotKey, IsReadOnlyWhenBothNumbersAreThere)
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
        {"neither", {}, {}, {}},
        {"key code alone", 0x2E, {}, {}},
        {"modifiers alone", {}, 6, {}},
        {"a word", u"m"_s, 6, {}},
        {"a list", 0x2E, plist::Value(plist::Array{6}), {}},
        {"true", true, 6, {}},
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
    keyboard.useBoard(u"xkb:none"_s, {{keyM, u"µ"_s}});
    EXPECT_EQ(defaultHotKey(keyboard.port()), std::nullopt);
    keyboard.useLayoutData(u"xkb:odd"_s, {});
    EXPECT_EQ(defaultHotKey(keyboard.port()), std::nullopt);
    keyboard.useNoLayout();
    EXPECT_EQ(defaultHotKey(keyboard.port()), std::nullopt);
}

} // namespace
} // namespace tarnwell::hotkey
