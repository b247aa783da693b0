#include "desktop/WindowActivation.h"

#include <QGuiApplication>
#include <QLibraryInfo>
#include <QVersionNumber>

#include <qpa/qplatformnativeinterface.h>

namespace tarnwell::desktop {

void expectActivation(const QByteArray &token)
{
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token); // the toolkit spends it at the activation
    // Only the very release that this was built with is sure to have the same class.
    const bool isSameToolkit =
        QLibraryInfo::version() == QVersionNumber::fromString(QLatin1StringView(QT_VERSION_STR));
    if (!isSameToolkit || !qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        return;
    // An X server and its window managers ignore what is older than the last change of the focus,
    // and the toolkit dates what it sends by the last event that came to this program.
    QPlatformNativeInterface *toolkit = QGuiApplication::platformNativeInterface();
    QScreen *screen = QGuiApplication::primaryScreen();
    const auto setTime = reinterpret_cast<void (*)(QScreen *, quint32)>(
        reinterpret_cast<void (*)()>(toolkit->nativeResourceFunctionForScreen("setapptime")));
    const auto now =
        reinterpret_cast<quintptr>(toolkit->nativeResourceForScreen("gettimestamp", screen));
    if (setTime && now != 0)
        setTime(screen, quint32(now));
}

} // namespace tarnwell::desktop
