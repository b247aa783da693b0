#pragma once

#include <QString>

namespace tarnwell::desktop {

/// The address of the user's session bus; empty where there is none.
QString sessionBusAddress();

/// The address of the machine's own bus.
QString systemBusAddress();

/// Whether somebody at this address does not answer within so many milliseconds. The toolkit waits
/// for such a bus for ever, on whichever thread first wants it. False when nobody is there at all,
/// which everybody notices at once.
bool isSilentBus(const QString &address, int milliseconds);

} // namespace tarnwell::desktop
