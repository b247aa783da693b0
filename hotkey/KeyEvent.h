#pragma once

#include <QString>

namespace tarnwell::hotkey {

// The modifier bits of a key event; foundation/KeyCodes.h has those that tell the kind of key.
inline constexpr quint32 capsLockFlag = 0x10000;
inline constexpr quint32 shiftFlag = 0x20000;
inline constexpr quint32 controlFlag = 0x40000;
inline constexpr quint32 optionFlag = 0x80000;
inline constexpr quint32 commandFlag = 0x100000;

/// A key press as the pane records it.
struct KeyEvent
{
    quint16 keyCode = 0;       ///< virtual key code, by the key's position on the board
    quint32 modifierFlags = 0; ///< modifiers and the kind of key

    friend bool operator==(const KeyEvent &, const KeyEvent &) = default;
};

/// An event in words, for the log.
QString description(const KeyEvent &event);

} // namespace tarnwell::hotkey
