#pragma once

#include "ports/WindowServer.h"

namespace tarnwell::fakes {

/// What a test sees and decides of FakeWindowServer.
struct FakeWindowServerControl
{
    bool canPlayCompositions = true;
    int questions = 0; ///< how often it was asked
};

/// A display of which a test says what it can do.
class FakeWindowServer final : public ports::WindowServer
{
public:
    FakeWindowServerControl &control() { return m_control; }

    bool canPlayCompositions() const override
    {
        ++m_control.questions;
        return m_control.canPlayCompositions;
    }
    std::unique_ptr<ports::ShortcutInhibition> inhibitShortcuts(QWindow &) override
    {
        return nullptr;
    }

private:
    mutable FakeWindowServerControl m_control;
};

} // namespace tarnwell::fakes
