#pragma once

#include "hotkey/KeyEvent.h"

#include <optional>

class QKeyEvent;

namespace tarnwell::ports {
class KeyboardLayouts;
}

namespace tarnwell::hotkey {

/// True for keys that only change what others do, by what they are in the current layout: a Caps
/// Lock key that was made an Escape key is none.
bool isModifierKey(const QKeyEvent &event);

/// What the pane records of a key press: the key, the modifiers and what kind of key it is. Nothing
/// for a modifier key by itself and for keys that no board of ours has.
std::optional<KeyEvent> keyEventFromQt(const QKeyEvent &event,
                                       const ports::KeyboardLayouts &layouts);

/// The menu-modifier bits of an event: 1 Shift, 2 Option, 4 Control, 8 no Command.
quint32 menuModifiers(quint32 modifierFlags);

} // namespace tarnwell::hotkey
