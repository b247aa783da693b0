#pragma once

namespace tarnwell::effects {

/// How often a preview is drawn: as often as anybody sees, or, when that would take a whole
/// processor, as often as takes half of one. Everything is in seconds.
class FramePacing
{
public:
    static constexpr double shortestInterval = 1.0 / 60.0;

    /// A frame was made, and took so long. The first one makes the shaders and says nothing of the
    /// others.
    void frameTook(double seconds);

    /// From the beginning of one frame to that of the next.
    double interval() const;

    /// How far the composition's time goes on between frames that begin so far apart. A preview
    /// that nobody could see for a while goes on where it was.
    static double timeStep(double sinceLastFrame);

private:
    double m_cost = 0.0; ///< of the last few frames
    bool m_hasBegun = false;
};

} // namespace tarnwell::effects
