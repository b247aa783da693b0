#pragma once

#include <QtGlobal>

#include <optional>
#include <span>

namespace tarnwell::foundation {

/// The bits of a key event's flags that tell what kind of key was pressed.
inline constexpr quint32 keyFlagNumericPad = 0x200000;
inline constexpr quint32 keyFlagHelp = 0x400000;
inline constexpr quint32 keyFlagFunction = 0x800000;

/// One key of the board: the place where its virtual key code and its evdev code meet.
///
/// Codes name positions, not characters. Option is the Alt key and Command the Super key.
struct KeyPosition
{
    quint16 virtualKeyCode = 0;
    quint16 evdevCode = 0;    ///< the kernel's key code; a scan code of X11 or Wayland is 8 more
    char16_t usCharacter = 0; ///< what the US board types here; 0 for a key without a character
    char16_t usShifted = 0;   ///< the same with Shift
    quint32 flags = 0;        ///< the key-class bits that its events carry
};

/// How many virtual key codes there are: they are below this number.
inline constexpr quint16 virtualKeyCodeCount = 128;

/// Every key, in the order of the virtual key codes.
std::span<const KeyPosition> keyPositions();

/// The key with a virtual key code; null when no key has it.
const KeyPosition *keyPosition(quint16 virtualKeyCode);

/// The virtual key code of the key with an evdev code; nothing when the key has no place here.
std::optional<quint16> virtualKeyCodeForEvdev(quint32 evdevCode);

/// Whether a Qt::Key is Shift, Control or their like, which are pressed on the way to a shortcut.
bool isModifierKey(int key);

} // namespace tarnwell::foundation
