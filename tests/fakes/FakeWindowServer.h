#pragma once

#include "ports/WindowServer.h"

namespace tarnwell::fakes {

/// A display that keeps its own shortcuts to itself.
class FakeWindowServer final : public ports::WindowServer
{
public:
    std::unique_ptr<ports::ShortcutInhibition> inhibitShortcuts(QWindow &) override
    {
        return nullptr;
    }
};

} // namespace tarnwell::fakes
