// From a key press of the toolkit to what the pane records of it.

#include "hotkey/KeyEvents.h"
#include "fakes/FakeKeyboardLayouts.h"

#include <QKeyEvent>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::hotkey {
namespace {

constexpr quint32 offset = 8; // of scan codes above the kernel's key codes

QKeyEvent press(int key, Qt::KeyboardModifiers modifiers, quint32 scanCode,
                quint32 nativeModifiers = 0, quint32 symbol = 0)
{
    return QKeyEvent(QEvent::KeyPress, key, modifiers, scanCode, symbol, nativeModifiers);
}

TEST(KeyEvents, TellModifiersAndKeys)
{
    constexpr quint32 keyM = 50 + offset;
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
         KeyEvent{0x39, 0x40000}},
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
        EXPECT_EQ(keyEventFromQt(
                      press(row.key, row.modifiers, row.scanCode, row.nativeModifiers, row.symbol),
                      keyboard.port()),
                  row.event)
            << row.name;
    }
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
