// From a key press of the toolkit to what the pane records of it.

#include "hotkey/KeyEvents.h"
#include "fakes/FakeKeyboardLayouts.h"

#include <QKeyEvent>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::hotkey {
namespace {

constexpr quint32 offset = 8; // of scan codes above the kernel's key codes
constexpr quint32 keyM = 50 + offset;

QKeyEvent press(int key, Qt::KeyboardModifiers modifiers, quint32 scanCode,
                quint32 nativeModifiers = 0, quint32 symbol = 0)
{
    return QKeyEvent(QEvent::KeyPress, key, modifiers, scanCode, symbol, nativeModifiers);
}

TEST(KeyEvents, TellModifiersAndKeys)
{
    constexpr quint32 escapeKey = 1 + offset;
    constexpr quint32 pad7 = 71 + offset;
    struct Row
    {
        const char *name;
        int key;
        Qt::KeyboardModifiers modifiers;
        quint32 scanCode;
        quint32 nativeModifiers;
        std::optional<KeyEvent> event;
        quint32 symbol = 0;
    };
    const Row rows[] = {
        {"Shift", Qt::Key_M, Qt::ShiftModifier, keyM, 1, KeyEvent{0x2E, 0x20000}},
        {"Alt is Option", Qt::Key_M, Qt::AltModifier, keyM, 8, KeyEvent{0x2E, 0x80000}},
        {"Super is Command", Qt::Key_M, Qt::MetaModifier, keyM, 64, KeyEvent{0x2E, 0x100000}},
        {"Caps Lock", Qt::Key_M, Qt::NoModifier, keyM, 2, KeyEvent{0x2E, 0x10000}},
        {"Num Lock", Qt::Key_M, Qt::NoModifier, keyM, 16, KeyEvent{0x2E, 0}},
        {"the third level", Qt::Key_mu, Qt::NoModifier, keyM, 128, KeyEvent{0x2E, 0}},
        {"second group", 0x042C, Qt::ControlModifier, keyM, 0x2004, KeyEvent{0x2E, 0x40000}},
        {"dead key", Qt::Key_Dead_Acute, Qt::ControlModifier, 40 + offset, 4,
         KeyEvent{0x27, 0x40000}},
        {"key without a symbol", Qt::Key_unknown, Qt::ControlModifier, keyM, 4,
         KeyEvent{0x2E, 0x40000}},
        {"keypad under Num Lock", Qt::Key_7, Qt::KeypadModifier, pad7, 16,
         KeyEvent{0x59, 0x200000}},
        {"keypad without Num Lock", Qt::Key_Home, Qt::KeypadModifier, pad7, 0,
         KeyEvent{0x59, 0x200000}},
        {"Print Screen as F13", Qt::Key_Print, Qt::NoModifier, 99 + offset, 0,
         KeyEvent{0x69, 0x800000}},
        {"Escape on the Caps Lock key", Qt::Key_Escape, Qt::ControlModifier, 58 + offset, 4,
         KeyEvent{0x39, 0x40000}, 0xFF1B},
        {"Escape", Qt::Key_Escape, Qt::ControlModifier, escapeKey, 4, KeyEvent{0x35, 0x40000},
         0xFF1B},
        {"Backtab", Qt::Key_Backtab, Qt::ShiftModifier, 15 + offset, 1, KeyEvent{0x30, 0x20000},
         0xFE20},
        {"shifted digit", Qt::Key_Exclam, Qt::ShiftModifier, 2 + offset, 1, KeyEvent{0x12, 0x20000},
         u'!'},
        {"accent that is no dead key", Qt::Key_Adiaeresis, Qt::NoModifier, 40 + offset, 0,
         KeyEvent{0x27, 0}, 0xE4},
        {"letter with an odd capital", 0x1E9E, Qt::NoModifier, 12 + offset, 0, KeyEvent{0x1B, 0},
         0xDF},
        {"digit sent on the Escape key", Qt::Key_5, Qt::NoModifier, escapeKey, 0, KeyEvent{0x17, 0},
         u'5'},
        {"keypad by its symbol alone", Qt::Key_Home, Qt::NoModifier, pad7, 0,
         KeyEvent{0x59, 0x200000}, 0xFF95},
        {"letter sent on the Escape key", Qt::Key_J, Qt::ControlModifier, escapeKey, 4,
         KeyEvent{0x26, 0x40000}, u'j'},
        {"letter sent on another letter's key", Qt::Key_J, Qt::ControlModifier, keyM, 4,
         KeyEvent{0x26, 0x40000}, u'j'},
        {"letter sent on a key of no board", Qt::Key_J, Qt::ControlModifier, 240 + offset, 4,
         KeyEvent{0x26, 0x40000}, u'j'},
        {"Return sent on the Escape key", Qt::Key_Return, Qt::ControlModifier, escapeKey, 4,
         KeyEvent{0x24, 0x40000}, 0xFF0D},
        {"arrow sent on a letter's key", Qt::Key_Left, Qt::NoModifier, keyM, 0,
         KeyEvent{0x7B, 0xA00000}, 0xFF51},
        {"keypad digit sent on another's key", Qt::Key_5, Qt::KeypadModifier, pad7, 0,
         KeyEvent{0x57, 0x200000}, 0xFFB5},
        {"letter of no key sent on a letter's", 0x0416, Qt::ControlModifier, keyM, 4, {}, 0x06F6},
        {"symbol without a name", Qt::Key_Print, Qt::NoModifier, 99 + offset, 0,
         KeyEvent{0x69, 0x800000}, 0xFF61},
        {"Control on the Caps Lock key", Qt::Key_Control, Qt::NoModifier, 58 + offset, 0, {}},
        {"Shift by itself", Qt::Key_Shift, Qt::ShiftModifier, 42 + offset, 0, {}},
        {"switch of groups", Qt::Key_unknown, Qt::AltModifier, 42 + offset, 8, {}, 0xFE08},
        {"fifth level beside Z", 0, Qt::NoModifier, 86 + offset, 0, {}, 0xFE11},
        {"play button", Qt::Key_MediaPlay, Qt::ControlModifier, 164 + offset, 4, {}},
        {"synthesised letter", Qt::Key_M, Qt::ControlModifier, 0, 0, KeyEvent{0x2E, 0x40000}},
        {"synthesised keypad digit", Qt::Key_5, Qt::KeypadModifier, 0, 0, KeyEvent{0x57, 0x200000}},
        {"synthesised F5", Qt::Key_F5, Qt::NoModifier, 0, 0, KeyEvent{0x60, 0x800000}},
        {"synthesised letter of no key", 0x0416, Qt::ControlModifier, 0, 0, {}},
    };
    for (const Row &row : rows) {
        fakes::FakeKeyboardLayouts keyboard;
        keyboard.useBoard(u"xkb:own"_s, {{0x1B, u"ß"_s}, {0x27, u"ä"_s}, {0x39, u"\x1B"_s}});
        EXPECT_EQ(keyEventFromQt(
                      press(row.key, row.modifiers, row.scanCode, row.nativeModifiers, row.symbol),
                      keyboard.port()),
                  row.event)
            << row.name;
    }
}

TEST(KeyEvents, AreComparedWithTheLayoutThatTheyWerePressedIn)
{
    fakes::FakeKeyboardLayouts keyboard;
    const auto keyCode = [&keyboard](int key, quint32 scanCode) {
        const auto event =
            keyEventFromQt(press(key, Qt::ControlModifier, scanCode, 4, key), keyboard.port());
        return event ? event->keyCode : -1;
    };
    constexpr quint32 keyY = 21 + offset;
    keyboard.onCatchingUp([&keyboard] {
        keyboard.useBoard(u"xkb:de"_s, {{0x10, u"z"_s}, {0x06, u"y"_s}});
    });
    EXPECT_EQ(keyCode(Qt::Key_Z, keyY), 0x10);
    keyboard.onCatchingUp([] {});
    keyboard.useNoLayout();
    EXPECT_EQ(keyCode(Qt::Key_J, keyM), 0x2E) << "nothing speaks against its place";
}

TEST(KeyEvents, MenuModifiersHoldCommandUnlessTheySayOtherwise)
{
    for (quint32 bits = 0; bits < 16; ++bits) {
        const quint32 flags = (bits & 1 ? shiftFlag : 0) | (bits & 2 ? optionFlag : 0) |
                              (bits & 4 ? controlFlag : 0) | (bits & 8 ? 0 : commandFlag);
        EXPECT_EQ(menuModifiers(flags), bits);
        EXPECT_EQ(menuModifiers(flags | capsLockFlag | 0xE0FFFF), bits);
    }
}

} // namespace
} // namespace tarnwell::hotkey
