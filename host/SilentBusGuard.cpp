#include "host/SilentBusGuard.h"

#include "desktop/SessionBus.h"

#include <QDBusConnection>
#include <QDebug>

namespace tarnwell::host {

namespace {

constexpr int patience = 1000; // milliseconds
constexpr const char *variable = "DBUS_SESSION_BUS_ADDRESS";

/// An address at which nobody ever listens, as every library notices at once.
constexpr const char *nowhere = "unix:path=/dev/null";

} // namespace

SilentBusGuard::SilentBusGuard()
{
    const QString address = desktop::sessionBusAddress();
    m_isSilent = !address.isEmpty() && desktop::isSilentBus(address, patience);
    if (!m_isSilent)
        return;
    if (qEnvironmentVariableIsSet(variable))
        m_address = qgetenv(variable);
    qputenv(variable, nowhere);
}

void SilentBusGuard::settle() const
{
    if (!m_isSilent)
        return;
    qWarning("The session bus does not answer: assistive technologies and the desktop's dark "
             "colors are not followed before the next start.");
    // The toolkit keeps its first answer for as long as the process lives.
    (void)QDBusConnection::sessionBus();
    if (m_address)
        qputenv(variable, *m_address);
    else
        qunsetenv(variable);
}

} // namespace tarnwell::host
