#pragma once

#include "hotkey/PressedKey.h"
#include "tutorial/Shortcut.h"

#include <QKeySequence>
#include <QString>

#include <optional>

namespace tarnwell::ports {
class KeyboardLayouts;
}

/// Where the keys of the toolkit and those of stored shortcuts meet. Command is the Super key and
/// Option the Alt key.
namespace tarnwell::tutorial {

using hotkey::KeyPress;

/// Whether a key press can be a shortcut: a function key, or any key that Control, Option or
/// Command is held with.
bool canBeShortcut(const KeyPress &press);

/// The shortcut that a key press stands for; nothing for keys that have no place on the board.
std::optional<Shortcut> shortcutOfKeyPress(const KeyPress &press,
                                           const ports::KeyboardLayouts &layouts);

/// The shortcut of a character's key on the current layout: how an application names its own.
Shortcut shortcutOfCharacter(char16_t character, quint32 modifiers,
                             const ports::KeyboardLayouts &layouts);

/// The shortcut of a special key, such as Qt::Key_F6.
Shortcut shortcutOfSpecialKey(int key, quint32 modifiers);

/// What triggers a shortcut on the current layout; empty for none.
QKeySequence keySequence(const Shortcut &shortcut, const ports::KeyboardLayouts &layouts);

/// A shortcut as menus show it, such as "⇧⌃K"; empty for none.
QString displayText(const Shortcut &shortcut, const ports::KeyboardLayouts &layouts);

} // namespace tarnwell::tutorial
