#include "foundation/KeyCodes.h"

#include <Qt>

#include <algorithm>
#include <array>

namespace tarnwell::foundation {

namespace {

constexpr quint32 pad = keyFlagNumericPad;
constexpr quint32 function = keyFlagFunction;
constexpr quint32 arrow = keyFlagNumericPad | keyFlagFunction;

// The key left of 1 has code 0x32 on every board: its other code on ISO boards comes from a
// firmware that swaps it with the key left of Z, which no other maker's board does.
constexpr KeyPosition positions[] = {
    // clang-format off
    {0x00, 30, u'a', u'A', 0},
    {0x01, 31, u's', u'S', 0},
    {0x02, 32, u'd', u'D', 0},
    {0x03, 33, u'f', u'F', 0},
    {0x04, 35, u'h', u'H', 0},
    {0x05, 34, u'g', u'G', 0},
    {0x06, 44, u'z', u'Z', 0},
    {0x07, 45, u'x', u'X', 0},
    {0x08, 46, u'c', u'C', 0},
    {0x09, 47, u'v', u'V', 0},
    {0x0A, 86, 0, 0, 0}, // ISO key left of Z
    {0x0B, 48, u'b', u'B', 0},
    {0x0C, 16, u'q', u'Q', 0},
    {0x0D, 17, u'w', u'W', 0},
    {0x0E, 18, u'e', u'E', 0},
    {0x0F, 19, u'r', u'R', 0},
    {0x10, 21, u'y', u'Y', 0},
    {0x11, 20, u't', u'T', 0},
    {0x12, 2, u'1', u'!', 0},
    {0x13, 3, u'2', u'@', 0},
    {0x14, 4, u'3', u'#', 0},
    {0x15, 5, u'4', u'$', 0},
    {0x16, 7, u'6', u'^', 0},
    {0x17, 6, u'5', u'%', 0},
    {0x18, 13, u'=', u'+', 0},
    {0x19, 10, u'9', u'(', 0},
    {0x1A, 8, u'7', u'&', 0},
    {0x1B, 12, u'-', u'_', 0},
    {0x1C, 9, u'8', u'*', 0},
    {0x1D, 11, u'0', u')', 0},
    {0x1E, 27, u']', u'}', 0},
    {0x1F, 24, u'o', u'O', 0},
    {0x20, 22, u'u', u'U', 0},
    {0x21, 26, u'[', u'{', 0},
    {0x22, 23, u'i', u'I', 0},
    {0x23, 25, u'p', u'P', 0},
    {0x24, 28, u'\r', u'\r', 0}, // Return
    {0x25, 38, u'l', u'L', 0},
    {0x26, 36, u'j', u'J', 0},
    {0x27, 40, u'\'', u'"', 0},
    {0x28, 37, u'k', u'K', 0},
    {0x29, 39, u';', u':', 0},
    {0x2A, 43, u'\\', u'|', 0},
    {0x2B, 51, u',', u'<', 0},
    {0x2C, 53, u'/', u'?', 0},
    {0x2D, 49, u'n', u'N', 0},
    {0x2E, 50, u'm', u'M', 0},
    {0x2F, 52, u'.', u'>', 0},
    {0x30, 15, u'\t', u'\t', 0}, // Tab
    {0x31, 57, u' ', u' ', 0}, // Space
    {0x32, 41, u'`', u'~', 0},
    {0x33, 14, u'\b', u'\b', 0}, // Backspace
    {0x35, 1, u'\x1B', u'\x1B', 0}, // Escape
    {0x36, 126, 0, 0, 0}, // right Command
    {0x37, 125, 0, 0, 0}, // Command
    {0x38, 42, 0, 0, 0}, // Shift
    {0x39, 58, 0, 0, 0}, // Caps Lock
    {0x3A, 56, 0, 0, 0}, // Option
    {0x3B, 29, 0, 0, 0}, // Control
    {0x3C, 54, 0, 0, 0}, // right Shift
    {0x3D, 100, 0, 0, 0}, // right Option
    {0x3E, 97, 0, 0, 0}, // right Control
    {0x3F, 464, 0, 0, 0}, // Fn
    {0x40, 187, 0, 0, function}, // F17
    {0x41, 83, u'.', u'.', pad}, // keypad
    {0x43, 55, u'*', u'*', pad},
    {0x45, 78, u'+', u'+', pad},
    {0x47, 69, 0, 0, pad}, // Clear, where Num Lock is
    {0x48, 115, 0, 0, 0}, // volume up
    {0x49, 114, 0, 0, 0}, // volume down
    {0x4A, 113, 0, 0, 0}, // mute
    {0x4B, 98, u'/', u'/', pad},
    {0x4C, 96, u'\r', u'\r', pad}, // Enter
    {0x4E, 74, u'-', u'-', pad},
    {0x4F, 188, 0, 0, function}, // F18
    {0x50, 189, 0, 0, function}, // F19
    {0x51, 117, u'=', u'=', pad},
    {0x52, 82, u'0', u'0', pad},
    {0x53, 79, u'1', u'1', pad},
    {0x54, 80, u'2', u'2', pad},
    {0x55, 81, u'3', u'3', pad},
    {0x56, 75, u'4', u'4', pad},
    {0x57, 76, u'5', u'5', pad},
    {0x58, 77, u'6', u'6', pad},
    {0x59, 71, u'7', u'7', pad},
    {0x5A, 190, 0, 0, function}, // F20
    {0x5B, 72, u'8', u'8', pad},
    {0x5C, 73, u'9', u'9', pad},
    {0x5D, 124, 0, 0, 0}, // JIS yen
    {0x5E, 89, 0, 0, 0}, // JIS underscore
    {0x5F, 121, 0, 0, pad}, // JIS keypad comma
    {0x60, 63, 0, 0, function}, // F5
    {0x61, 64, 0, 0, function}, // F6
    {0x62, 65, 0, 0, function}, // F7
    {0x63, 61, 0, 0, function}, // F3
    {0x64, 66, 0, 0, function}, // F8
    {0x65, 67, 0, 0, function}, // F9
    {0x66, 123, 0, 0, 0}, // JIS eisu
    {0x67, 87, 0, 0, function}, // F11
    {0x68, 122, 0, 0, 0}, // JIS kana
    {0x69, 183, 0, 0, function}, // F13
    {0x6A, 186, 0, 0, function}, // F16
    {0x6B, 184, 0, 0, function}, // F14
    {0x6D, 68, 0, 0, function}, // F10
    {0x6E, 127, 0, 0, 0}, // Menu
    {0x6F, 88, 0, 0, function}, // F12
    {0x71, 185, 0, 0, function}, // F15
    {0x72, 110, 0, 0, function | keyFlagHelp}, // Help, where Insert is
    {0x73, 102, 0, 0, function}, // Home
    {0x74, 104, 0, 0, function}, // Page Up
    {0x75, 111, u'\x7F', u'\x7F', function}, // forward Delete
    {0x76, 62, 0, 0, function}, // F4
    {0x77, 107, 0, 0, function}, // End
    {0x78, 60, 0, 0, function}, // F2
    {0x79, 109, 0, 0, function}, // Page Down
    {0x7A, 59, 0, 0, function}, // F1
    {0x7B, 105, 0, 0, arrow}, // Left
    {0x7C, 106, 0, 0, arrow}, // Right
    {0x7D, 108, 0, 0, arrow}, // Down
    {0x7E, 103, 0, 0, arrow}, // Up
    {0x7F, 116, 0, 0, 0}, // Power
    // clang-format on
};

// Keys that other boards have in the place of one above.
struct Substitute
{
    quint16 evdevCode;
    quint16 virtualKeyCode;
};
constexpr Substitute substitutes[] = {
    {99, 0x69},  // Print Screen, where F13 is
    {70, 0x6B},  // Scroll Lock, where F14 is
    {119, 0x71}, // Pause, where F15 is
    {138, 0x72}, // a Help key
    {94, 0x66},  // Muhenkan, left of the space bar
    {92, 0x68},  // Henkan, right of it
    {95, 0x5F},  // the keypad comma of Japanese boards
};

constexpr quint8 noPosition = 0xFF;
static_assert(std::size(positions) < noPosition);

constexpr auto positionsByCode = [] {
    std::array<quint8, virtualKeyCodeCount> byCode{};
    byCode.fill(noPosition);
    for (std::size_t i = 0; i < std::size(positions); ++i)
        byCode[positions[i].virtualKeyCode] = static_cast<quint8>(i);
    return byCode;
}();

} // namespace

std::span<const KeyPosition> keyPositions()
{
    return positions;
}

const KeyPosition *keyPosition(quint16 virtualKeyCode)
{
    if (virtualKeyCode >= virtualKeyCodeCount)
        return nullptr;
    const quint8 index = positionsByCode[virtualKeyCode];
    return index == noPosition ? nullptr : &positions[index];
}

std::optional<quint16> virtualKeyCodeForEvdev(quint32 evdevCode)
{
    const auto position = std::ranges::find(positions, evdevCode, &KeyPosition::evdevCode);
    if (position != std::end(positions))
        return position->virtualKeyCode;
    const auto substitute = std::ranges::find(substitutes, evdevCode, &Substitute::evdevCode);
    if (substitute != std::end(substitutes))
        return substitute->virtualKeyCode;
    return std::nullopt;
}

bool isModifierKey(int key)
{
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
    case Qt::Key_Mode_switch:
        return true;
    default:
        return false;
    }
}

} // namespace tarnwell::foundation
