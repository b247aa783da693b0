#pragma once

#include <QByteArray>

#include <optional>

namespace tarnwell::host {

/// Keeps the toolkit off a session bus that does not answer. The toolkit waits for it on the main
/// thread, for ever and before the first window is shown; with none at all it does without.
///
/// Made before the application object. Takes as long as the bus needs to answer, and a second when
/// it does not.
class SilentBusGuard
{
public:
    SilentBusGuard();

    /// Called once, when the application object is there: whatever needs the bus from now on, and
    /// does not wait on the main thread, finds its address again.
    void settle() const;

private:
    bool m_isSilent = false;
    std::optional<QByteArray> m_address; ///< as the environment had it
};

} // namespace tarnwell::host
