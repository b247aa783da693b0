#pragma once

#include "foundation/plist/Value.h"

#include <QString>

namespace tarnwell::tutorial {

/// The event-modifier bits that a shortcut can have.
inline constexpr quint32 commandBit = 0x0100;
inline constexpr quint32 shiftBit = 0x0200;
inline constexpr quint32 optionBit = 0x0800;
inline constexpr quint32 controlBit = 0x1000;
inline constexpr quint32 allModifierBits = commandBit | shiftBit | optionBit | controlBit;

inline constexpr quint16 noKey = 0xFFFF;

/// A key with modifiers, or none. Without a virtual key code it may still be known by the character
/// that the menu holds for it.
struct Shortcut
{
    quint16 keyCode = noKey;
    char16_t commandKey = 0; ///< the character that menus hold for the key
    quint32 modifiers = 0;   ///< in event-modifier bits

    bool isNone() const { return keyCode == noKey && commandKey == 0; }

    /// The same keys, whatever character they are known by.
    friend bool operator==(const Shortcut &a, const Shortcut &b)
    {
        return a.keyCode == b.keyCode && a.modifiers == b.modifiers &&
               (a.keyCode != noKey || a.commandKey == b.commandKey);
    }
};

/// The shortcut of a stored key-command record; none where it has no key or no modifiers.
Shortcut shortcutFromRecord(const plist::Dictionary &keyCommand);

/// A key-command record of a shortcut, on top of whatever else the present one holds.
plist::Dictionary recordOfShortcut(const Shortcut &shortcut, const QString &title,
                                   plist::Dictionary present = {});

} // namespace tarnwell::tutorial
