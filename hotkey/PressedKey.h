#pragma once

#include <Qt>
#include <QtGlobal>

#include <optional>

class QKeyEvent;

namespace tarnwell::ports {
class KeyboardLayouts;
}

namespace tarnwell::hotkey {

/// What the toolkit tells of a key press.
struct KeyPress
{
    int key = 0; ///< Qt::Key
    Qt::KeyboardModifiers modifiers;
    quint32 scanCode = 0; ///< as X11 and Wayland count them alike; 0 for a press without a place
    quint32 symbol = 0;   ///< the display system's own; 0 when it isn't known

    static KeyPress fromEvent(const QKeyEvent &event);
};

/// The virtual key code of the key that was pressed; nothing for a key that no board of ours has.
///
/// It is the key at the press's place on the board, unless the current layout has another symbol
/// there. On-screen keyboards and the like send what they mean on any place that is free: then it
/// is the key of the layout that has the symbol.
std::optional<quint16> pressedKey(const KeyPress &press, const ports::KeyboardLayouts &layouts);

} // namespace tarnwell::hotkey
