#pragma once

#include <memory>

class QWindow;

namespace tarnwell::ports {

/// As long as it exists, a window is given the keys that the desktop otherwise keeps to itself.
class ShortcutInhibition
{
public:
    virtual ~ShortcutInhibition() = default;
};

/// The display system that shows the pane.
class WindowServer
{
public:
    virtual ~WindowServer() = default;

    /// Gives a window that is active the desktop's own shortcuts, too. Null where the display
    /// system lets nobody have them, and then they stay with the desktop. A window may have one
    /// inhibition at a time; it must not be kept when the window is no longer active.
    virtual std::unique_ptr<ShortcutInhibition> inhibitShortcuts(QWindow &window) = 0;
};

} // namespace tarnwell::ports
