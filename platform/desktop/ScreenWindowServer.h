#pragma once

#include "ports/WindowServer.h"

#include <optional>

namespace tarnwell::desktop {

/// The display that the process's windows are on.
class ScreenWindowServer final : public ports::WindowServer
{
public:
    bool canPlayCompositions() const override;
    std::unique_ptr<ports::ShortcutInhibition> inhibitShortcuts(QWindow &window) override;

private:
    mutable std::optional<bool> m_canPlay;
};

} // namespace tarnwell::desktop
