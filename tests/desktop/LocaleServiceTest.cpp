#include "desktop/TestBus.h"
#include "desktop/XkbNamesSources.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QSemaphore>
#include <QSignalSpy>
#include <QThread>

#include <gtest/gtest.h>

#include <mutex>

/// The keyboard of a machine without an X server, as its locale service tells it. A program of its
/// own: the system bus of a process is found once.

namespace tarnwell::desktop {
namespace {

using namespace Qt::StringLiterals;

constexpr int patience = 60000; // milliseconds; only a failing test waits that long

const QString serviceName = u"org.freedesktop.locale1"_s;
const QString servicePath = u"/org/freedesktop/locale1"_s;
const QString propertiesName = u"org.freedesktop.DBus.Properties"_s;

/// Stands in for the locale service. Lives on a thread of its own, as the questions block.
class StandIn : public QDBusVirtualObject
{
public:
    void setLayout(const QString &layout, const QString &variant)
    {
        const std::scoped_lock lock(m_mutex);
        m_properties = {{u"X11Layout"_s, layout}, {u"X11Variant"_s, variant}};
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        const std::scoped_lock lock(m_mutex);
        if (message.member() != "GetAll"_L1 || message.arguments() != QVariantList{serviceName})
            return false;
        return connection.send(message.createReply(m_properties));
    }

private:
    std::mutex m_mutex;
    QVariantMap m_properties;
};

class StandInThread : public QThread
{
public:
    StandInThread(StandIn &standIn, const QString &address)
        : m_standIn(standIn)
        , m_address(address)
    {
        m_standIn.moveToThread(this);
        start();
        m_isReady.acquire();
    }
    ~StandInThread() override
    {
        quit();
        wait();
    }

    void tellOfAChange() const
    {
        QDBusMessage signal =
            QDBusMessage::createSignal(servicePath, propertiesName, u"PropertiesChanged"_s);
        signal << serviceName << QVariantMap() << QStringList{u"X11Layout"_s};
        EXPECT_TRUE(QDBusConnection(u"standin"_s).send(signal));
    }

private:
    void run() override
    {
        QDBusConnection bus = QDBusConnection::connectToBus(m_address, u"standin"_s);
        EXPECT_TRUE(bus.registerVirtualObject(servicePath, &m_standIn));
        EXPECT_TRUE(bus.registerService(serviceName));
        m_isReady.release();
        exec();
        QDBusConnection::disconnectFromBus(u"standin"_s);
    }

    StandIn &m_standIn;
    QString m_address;
    QSemaphore m_isReady;
};

TEST(LocaleService, NamesTheKeyboardAndItsChanges)
{
    const tests::TestBus bus;
    ASSERT_TRUE(bus.isRunning());
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8());
    StandIn service;
    service.setLayout(u"ch"_s, u"fr"_s);
    const StandInThread thread(service, bus.address());

    LocaleService localeService;
    QSignalSpy changes(&localeService, &LocaleService::namesChanged);
    EXPECT_EQ(localeService.names(patience), (XkbNames{{}, u"ch"_s, u"fr"_s, {}}));

    service.setLayout(u"us"_s, u"dvorak"_s);
    thread.tellOfAChange();
    ASSERT_TRUE(changes.count() > 0 || changes.wait(patience));
    EXPECT_EQ(localeService.names(patience), (XkbNames{{}, u"us"_s, u"dvorak"_s, {}}));
    EXPECT_EQ(changes.count(), 1);
}

} // namespace
} // namespace tarnwell::desktop
