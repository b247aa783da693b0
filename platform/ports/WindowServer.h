#pragma once

namespace tarnwell::ports {

/// The display system that shows the pane.
class WindowServer
{
public:
    virtual ~WindowServer() = default;

    /// Whether this display can play compositions. The first answer may take a tenth of a second;
    /// it is the answer to all later questions.
    virtual bool canPlayCompositions() const = 0;
};

} // namespace tarnwell::ports
