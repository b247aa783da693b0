#pragma once

#include <QtGlobal>

namespace tarnwell::hotkey {

/// A key press as the pane records it.
struct KeyEvent
{
    quint16 keyCode = 0; ///< virtual key code, by the key's position on the board
    /// 0x10000 Caps Lock, 0x20000 Shift, 0x40000 Control, 0x80000 Option, 0x100000 Command,
    /// 0x200000 keypad, 0x400000 help, 0x800000 function key
    quint32 modifierFlags = 0;

    friend bool operator==(const KeyEvent &, const KeyEvent &) = default;
};

} // namespace tarnwell::hotkey
