#include "desktop/XkbNamesSources.h"

#include "desktop/SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

std::optional<XkbNames> parseKeyboardFile(QByteArrayView text)
{
    XkbNames names;
    const QStringList lines = QString::fromUtf8(text).split(u'\n');
    for (const QString &line : lines) {
        const qsizetype equals = line.indexOf(u'=');
        if (equals < 0)
            continue;
        const QString key = line.first(equals).trimmed();
        QString value = line.sliced(equals + 1).trimmed();
        // The file is read by shells: a quoted value ends with its quotation mark, a bare one with
        // a space.
        if (value.startsWith(u'"') || value.startsWith(u'\''))
            value = value.sliced(1).section(value.front(), 0, 0);
        else
            value = value.section(u' ', 0, 0);
        if (key == "XKBMODEL"_L1)
            names.model = value;
        else if (key == "XKBLAYOUT"_L1)
            names.layout = value;
        else if (key == "XKBVARIANT"_L1)
            names.variant = value;
        else if (key == "XKBOPTIONS"_L1)
            names.options = value;
    }
    if (names.layout.isEmpty())
        return std::nullopt;
    return names;
}

std::optional<XkbNames> namesFromLocaleProperties(const QVariantMap &properties)
{
    const XkbNames names{
        properties.value(u"X11Model"_s).toString(), properties.value(u"X11Layout"_s).toString(),
        properties.value(u"X11Variant"_s).toString(), properties.value(u"X11Options"_s).toString()};
    if (names.layout.isEmpty())
        return std::nullopt;
    return names;
}

std::optional<XkbNames> LocaleService::names(int patience)
{
    const QString service = u"org.freedesktop.locale1"_s;
    const QString path = u"/org/freedesktop/locale1"_s;
    const QString interface = u"org.freedesktop.DBus.Properties"_s;

    // The toolkit would wait for ever.
    if (isSilentBus(systemBusAddress(), patience))
        return std::nullopt;
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected())
        return std::nullopt;
    if (!m_isFollowed)
        m_isFollowed = bus.connect(service, path, interface, u"PropertiesChanged"_s, this,
                                   SIGNAL(namesChanged()));
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, interface, u"GetAll"_s);
    question << service; // the interface has the name of its service
    const QDBusReply<QVariantMap> reply = bus.call(question, QDBus::Block, patience);
    return reply.isValid() ? namesFromLocaleProperties(reply.value()) : std::nullopt;
}

} // namespace tarnwell::desktop
