#include "host/DesktopColorScheme.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace tarnwell::host {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView portalService{"org.freedesktop.portal.Desktop"};
constexpr QLatin1StringView portalPath{"/org/freedesktop/portal/desktop"};
constexpr QLatin1StringView settingsInterface{"org.freedesktop.portal.Settings"};
constexpr QLatin1StringView appearanceGroup{"org.freedesktop.appearance"};
constexpr QLatin1StringView colorSchemeKey{"color-scheme"};

/// The published number. Read() wraps it into one more variant than the signal does.
ColorScheme schemeFrom(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    switch (value.toUInt()) {
    case 1:
        return ColorScheme::Dark;
    case 2:
        return ColorScheme::Light;
    default:
        return ColorScheme::AsDesktop;
    }
}

} // namespace

void DesktopColorScheme::start()
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    // The whole message is taken, since a slot with a variant is not accepted by every release of
    // the toolkit. Without a service name the bus needs no round trip to learn who owns it.
    bus.connect(QString(), QString(portalPath), QString(settingsInterface), u"SettingChanged"_s,
                this, SLOT(settingChanged(QDBusMessage)));
    auto read = QDBusMessage::createMethodCall(QString(portalService), QString(portalPath),
                                               QString(settingsInterface), u"Read"_s);
    read << QString(appearanceGroup) << QString(colorSchemeKey);
    auto *call = new QDBusPendingCallWatcher(bus.asyncCall(read), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, &DesktopColorScheme::answered);
}

void DesktopColorScheme::answered(QDBusPendingCallWatcher *call)
{
    call->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply(*call);
    if (!reply.isError())
        Q_EMIT changed(schemeFrom(QVariant::fromValue(reply.value())));
}

void DesktopColorScheme::settingChanged(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    if (message.signature() == "ssv"_L1 && arguments.at(0) == QString(appearanceGroup) &&
        arguments.at(1) == QString(colorSchemeKey))
        Q_EMIT changed(schemeFrom(arguments.at(2)));
}

} // namespace tarnwell::host
