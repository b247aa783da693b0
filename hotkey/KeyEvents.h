#pragma once

#include "hotkey/KeyEvent.h"

#include <optional>

class QKeyEvent;

namespace tarnwell::ports {
class KeyboardLayouts;
}

namespace tarnwell::hotkey {

/// The event of the key with a scan code, as X11 and Wayland count them alike. Modifiers are those
/// of KeyEvent; the bits for the kind of key are added. Nothing for a key that has no place on the
/// board.
std::optional<KeyEvent> keyEventForScanCode(quint32 scanCode, quint32 modifiers);

/// True for keys that only change what others do, by what they are in the current layout: a Caps
/// Lock key that was made an Escape key is none.
bool isModifierKey(const QKeyEvent &event);

/// What the pane records of a key press: the key by its position, the modifiers and what kind of
/// key it is. Nothing for a modifier key by itself and for keys that no board of ours has.
///
/// A press that was synthesised has no position; its character is then looked up in the layout.
std::optional<KeyEvent> keyEventFromQt(const QKeyEvent &event,
                                       const ports::KeyboardLayouts &layouts);

/// The menu-modifier bits of an event: 1 Shift, 2 Option, 4 Control, 8 no Command.
quint32 menuModifiers(quint32 modifierFlags);

} // namespace tarnwell::hotkey
