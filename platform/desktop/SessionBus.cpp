#include "desktop/SessionBus.h"

#include <QFileInfo>
#include <QUrl>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarnwell::desktop {

QString sessionBusAddress()
{
    const QString fromEnvironment = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!fromEnvironment.isEmpty())
        return fromEnvironment;
    // Not left to the library: where it finds nothing either it starts a bus of its own, on which
    // nobody else is.
    QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (folder.isEmpty())
        folder = u"/run/user/%1"_s.arg(::getuid());
    const QString socket = folder + u"/bus"_s;
    if (!QFileInfo::exists(socket))
        return {};
    return u"unix:path="_s + QString::fromLatin1(QUrl::toPercentEncoding(socket, "/", "~"));
}

} // namespace tarnwell::desktop
