#pragma once

#include "hotkey/KeyEvent.h"

#include <QString>

#include <optional>

namespace tarnwell::ports {
class KeyboardLayouts;
}
namespace tarnwell::prefs {
class CFPreferencesWrapper_Tarnwell;
}

namespace tarnwell::hotkey {

/// The Menu Accelerator's hot key as the plug-in reads it.
struct HotKey
{
    quint16 keyCode = 0;       ///< virtual key code
    quint32 menuModifiers = 0; ///< 1 Shift, 2 Option, 4 Control, 8 no Command

    friend bool operator==(const HotKey &, const HotKey &) = default;
};

/// Control, Option and Command with the key that types m in the current layout; nothing when there
/// is no such key.
std::optional<HotKey> defaultHotKey(const ports::KeyboardLayouts &layouts);

/// What is stored; nothing when one of the two values is missing. Wider numbers lose their upper
/// bits, and a value that is no number counts as 0.
std::optional<HotKey> storedHotKey(const prefs::CFPreferencesWrapper_Tarnwell &wrapper);

/// Stores both values, still to be synchronised.
void storeHotKey(prefs::CFPreferencesWrapper_Tarnwell &wrapper, const HotKey &hotKey);

HotKey hotKeyFor(const KeyEvent &event);

/// What menus show for it; nothing without a layout that the key could be looked up in.
std::optional<QString> displayString(const ports::KeyboardLayouts &layouts, const HotKey &hotKey);

/// The same in words, for screen readers and for keys that menus have no sign for. The text is what
/// displayString() gave; keys that it does not tell apart are named by their place.
QString spokenHotKey(const HotKey &hotKey, const QString &text);

enum class Verdict {
    Accepted,
    NeedsModifier, ///< a key by itself
    ShiftAlone,    ///< typing capitals is not for a hot key to take away
    NotShowable,   ///< no text could be shown for it, so nobody would know it again
};

struct Capture
{
    Verdict verdict = Verdict::NotShowable;
    QString text; ///< of an accepted key
};

/// Whether a key press can be the hot key. Caps Lock counts as a modifier, and so does being a
/// key of the keypad or a function key: such keys are taken by themselves.
Capture capture(const ports::KeyboardLayouts &layouts, const KeyEvent &event);

/// Keys that work the sheet and are never taken: Tab and Shift+Tab, and without any modifier
/// Escape and Return. The key is the toolkit's, since its meaning counts here and not its place;
/// Caps Lock is no modifier to somebody who wants to leave.
bool worksTheSheet(int key, quint32 modifierFlags);

} // namespace tarnwell::hotkey
