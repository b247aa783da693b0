#pragma once

#include "ports/WindowServer.h"

namespace tarnwell::desktop {

/// The display that the process's windows are on.
class ScreenWindowServer final : public ports::WindowServer
{
public:
    std::unique_ptr<ports::ShortcutInhibition> inhibitShortcuts(QWindow &window) override;
};

} // namespace tarnwell::desktop
