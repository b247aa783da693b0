// A program of its own: the session bus of a process is found once.

#include "host/DesktopColorScheme.h"
#include "desktop/TestBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace tarnwell;
using host::ColorScheme;
using host::DesktopColorScheme;

namespace {

const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString settingsInterface = u"org.freedesktop.portal.Settings"_s;
const QString appearance = u"org.freedesktop.appearance"_s;

QVariant wrapped(const QVariant &value)
{
    return QVariant::fromValue(QDBusVariant(value));
}

/// Stands in for the desktop's portal.
class Portal : public QDBusVirtualObject
{
public:
    explicit Portal(const QString &address)
        : m_connection(QDBusConnection::connectToBus(address, u"portal"_s))
    {
        m_connection.registerVirtualObject(portalPath, this);
        m_connection.registerService(u"org.freedesktop.portal.Desktop"_s);
    }
    ~Portal() override { QDBusConnection::disconnectFromBus(u"portal"_s); }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.member() != "Read"_L1 ||
            message.arguments() != QVariantList{appearance, u"color-scheme"_s})
            return false;
        // The portal wraps what it reads twice.
        return connection.send(message.createReply(wrapped(wrapped(value))));
    }

    void change(const QString &group, const QString &key, const QVariant &changed)
    {
        auto signal =
            QDBusMessage::createSignal(portalPath, settingsInterface, u"SettingChanged"_s);
        signal << group << key << wrapped(changed);
        m_connection.send(signal);
    }

    QVariant value = 0U;

private:
    QDBusConnection m_connection;
};

} // namespace

TEST(DesktopColorScheme, ReadsTheUsersChoiceAndFollowsIt)
{
    const tests::TestBus bus;
    ASSERT_TRUE(bus.isRunning());
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toUtf8());
    Portal portal(bus.address());
    portal.value = 1U;

    QList<ColorScheme> heard;
    DesktopColorScheme scheme;
    QObject::connect(&scheme, &DesktopColorScheme::changed, &scheme,
                     [&](ColorScheme now) { heard.append(now); });
    scheme.start();
    EXPECT_TRUE(heard.isEmpty()) << "starting does not wait for the answer";
    ASSERT_TRUE(tests::waitUntil([&] { return heard.size() == 1; }));

    portal.change(appearance, u"accent-color"_s, 2U);
    portal.change(u"org.gnome.desktop.interface"_s, u"color-scheme"_s, 2U);
    portal.change(appearance, u"color-scheme"_s, 2U);
    portal.change(appearance, u"color-scheme"_s, u"nonsense"_s);
    portal.change(appearance, u"color-scheme"_s, 1U);
    ASSERT_TRUE(tests::waitUntil([&] { return heard.size() == 4; }));
    EXPECT_EQ(heard, (QList{ColorScheme::Dark, ColorScheme::Light, ColorScheme::AsDesktop,
                            ColorScheme::Dark}));
}
