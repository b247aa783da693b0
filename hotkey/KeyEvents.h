#pragma once

#include "hotkey/KeyEvent.h"

#include <optional>

class QKeyEvent;

namespace tarnwell::ports {
class KeyboardLayouts;
}

namespace tarnwell::hotkey {

/// What the pane records of a key press: the key by its position, the modifiers and what kind of
/// key it is. Nothing for a modifier key by itself and for keys that no board of ours has.
///
/// A press that was synthesised has no position; its character is then looked up in the layout.
std::optional<KeyEvent> keyEventFromQt(const QKeyEvent &event,
                                       const ports::KeyboardLayouts &layouts);

/// The menu-modifier bits of an event: 1 Shift, 2 Option, 4 Control, 8 no Command.
quint32 menuModifiers(quint32 modifierFlags);

} // namespace tarnwell::hotkey
