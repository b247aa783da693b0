#pragma once

namespace tarnwell::compositions {

/// Watches a signal for the moments at which it goes up or down.
class Edge
{
public:
    /// Whether the signal has just gone up; it counts as low before the first call.
    bool rises(bool signal)
    {
        const bool risen = signal && !m_last;
        m_last = signal;
        return risen;
    }

private:
    bool m_last = false;
};

} // namespace tarnwell::compositions
