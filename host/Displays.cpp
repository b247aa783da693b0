#include "host/Displays.h"

#include <QCoreApplication>
#include <QDir>
#include <QStringList>

#include <wayland-client-core.h>
#include <xcb/xcb.h>

#include <algorithm>

namespace tarnwell::host {

using namespace Qt::StringLiterals;

namespace {

bool opensX()
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    const bool isOpen = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return isOpen;
}

bool hasWaylandPlugin()
{
    QStringList folders{qEnvironmentVariable("QT_QPA_PLATFORM_PLUGIN_PATH")};
    for (const QString &folder : QCoreApplication::libraryPaths())
        folders.append(folder + "/platforms"_L1);
    return std::ranges::any_of(folders, [](const QString &folder) {
        return !folder.isEmpty() && !QDir(folder).entryList({u"libqwayland*"_s}).isEmpty();
    });
}

bool opensWayland(const QString &name)
{
    // Where there is no folder for sockets, the library would complain on standard error.
    if (!hasWaylandPlugin() ||
        (!name.startsWith(u'/') && qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")))
        return false;
    // A connection that was handed to us works once, and the toolkit needs it.
    if (!qEnvironmentVariableIsEmpty("WAYLAND_SOCKET"))
        return true;
    wl_display *display = wl_display_connect(nullptr);
    if (!display)
        return false;
    wl_display_disconnect(display);
    return true;
}

/// What the toolkit tries when nobody tells it what.
QStringList ownChoice(const QString &waylandName, const QString &xName)
{
    QStringList platforms;
    if (!waylandName.isEmpty())
        platforms.append(u"wayland"_s);
    if (!xName.isEmpty())
        platforms.append(u"xcb"_s);
    return platforms;
}

QString waylandDisplay()
{
    const QString name = qEnvironmentVariable("WAYLAND_DISPLAY");
    const bool isDefault = name.isEmpty() && (qgetenv("XDG_SESSION_TYPE") == "wayland" ||
                                              !qEnvironmentVariableIsEmpty("WAYLAND_SOCKET"));
    return isDefault ? u"wayland-0"_s : name;
}

} // namespace

QString displayProblem(const QString &platforms)
{
    const QString waylandName = waylandDisplay();
    const QString xName = qEnvironmentVariable("DISPLAY");
    QStringList candidates = platforms.split(u';', Qt::SkipEmptyParts);
    if (candidates.isEmpty())
        candidates = ownChoice(waylandName, xName);
    QStringList closed;
    for (const QString &candidate : std::as_const(candidates)) {
        const bool isX = candidate.section(u':', 0, 0) == "xcb"_L1;
        const bool isWayland = candidate.startsWith("wayland"_L1);
        if (!isX && !isWayland)
            return {}; // one that needs no display
        const QString &name = isX ? xName : waylandName;
        if (name.isEmpty() || closed.contains(name))
            continue;
        if (isX ? opensX() : opensWayland(name))
            return {};
        closed.append(name);
    }
    if (closed.isEmpty())
        return u"There is no display to show a window on."_s;
    if (closed.size() == 1)
        return u"The display “%1” cannot be opened."_s.arg(closed.constFirst());
    return u"The displays “%1” and “%2” cannot be opened."_s.arg(closed.at(0), closed.at(1));
}

} // namespace tarnwell::host
