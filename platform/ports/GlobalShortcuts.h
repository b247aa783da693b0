#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace tarnwell::ports {

/// A key of the board with modifiers.
struct KeyCombination
{
    quint16 keyCode = 0;       ///< virtual key code
    quint32 menuModifiers = 0; ///< 1 Shift, 2 Option, 4 Control, 8 no Command
    QString character;         ///< what the current layout types there; empty for nothing
};

/// What a combination does already, in the user's language.
struct GlobalShortcutHolder
{
    QString action;
    QString owner; ///< the program or part of the desktop; may be empty
};

/// The key combinations that work everywhere on the desktop.
class GlobalShortcuts
{
public:
    using Answer = std::function<void(const std::optional<GlobalShortcutHolder> &)>;

    virtual ~GlobalShortcuts() = default;

    /// Asks who holds a combination. Nothing waits: the answer comes once, from the event loop, and
    /// is nothing where nobody does or where the desktop can't tell. A new question takes the place
    /// of one that was not answered yet; that answer never comes.
    virtual void findHolder(const KeyCombination &combination, Answer answer) = 0;
};

} // namespace tarnwell::ports
