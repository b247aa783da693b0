// The pane on real files and a real bus: the plug-in's part is played by other processes.

#include "desktop/CapturedLog.h"
#include "desktop/TestBus.h"
#include "fakes/FakeHostApplication.h"
#include "foundation/plist/PropertyList.h"
#include "pane/PaneDesktop.h"
#include "pane/TarnwellPref.h"
#include "support/TemporaryHome.h"

#include <QBuffer>
#include <QCheckBox>
#include <QComboBox>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QProcess>
#include <QTableView>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

/// Writes the domain as the plug-in would, by another implementation of the format.
const char *const plistlibWriter = R"(
import plistlib, sys
path, form, *titles = sys.argv[1:]
def command(code):
    return {"kc": code, "cK": 65, "mod": 256, "t": ""}
def item(title):
    return {"MenuItemTitle": title, "OriginalKeyCommands": {**command(0), "t": title},
            "NewKeyCommands": {**command(11), "t": title}, "Private": b"\x00\xff"}
domain = {"MenuShortcuts": {"com.example.scribe":
              [{"ParentTitle": "File", "Keys": [item(t) for t in titles]}]},
          "MenuAccKeyCode": 46, "MenuAccMods": 6,
          "Unknown": {"when": 2**40, "ratio": 0.25, "raw": b"\x01", "on": True, "texts": ["ä", ""]}}
with open(path, "wb") as file:
    plistlib.dump(domain, file, fmt=plistlib.FMT_XML if form == "xml" else plistlib.FMT_BINARY)
)";

} // namespace

class RealDomain : public testing::Test
{
protected:
    void SetUp() override
    {
        qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toUtf8());
        home.makeApplication(u"/Applications/Scribe.app"_s, u"com.example.scribe"_s);
        home.makeFolder(u"~/Library/Preferences"_s);
    }
    void TearDown() override { qunsetenv("DBUS_SESSION_BUS_ADDRESS"); }

    QString domainFile() const
    {
        return home.path(u"~/Library/Preferences/com.varnit.tarnwell.plist"_s);
    }

    void writeByOtherProcess(const QString &form, const QStringList &titles) const
    {
        const QStringList arguments =
            QStringList{u"-c"_s, QString::fromUtf8(plistlibWriter), domainFile(), form} + titles;
        ASSERT_EQ(QProcess::execute(u"python3"_s, arguments), 0);
    }

    /// Posts the plug-in's refresh as a client of the bus that the pane knows nothing of.
    void postRefreshes(int count) const
    {
        auto client = QDBusConnection::connectToBus(bus.address(), u"plug-in"_s);
        auto signal =
            QDBusMessage::createSignal(u"/com/varnit/DistributedNotifications"_s,
                                       u"com.varnit.DistributedNotifications"_s, u"Posted"_s);
        for (int i = 0; i < count; ++i) {
            signal.setArguments({u"com.varnit.tarnwell.refresh"_s, QString::number(i), u""_s});
            ASSERT_TRUE(client.send(signal));
        }
        // An answer from the bus means that it has passed on everything before.
        client.interface()->isServiceRegistered(u"org.freedesktop.DBus"_s);
        QDBusConnection::disconnectFromBus(u"plug-in"_s);
    }

    QByteArray fileBytes() const
    {
        QFile file(domainFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    TestBus bus;
    TemporaryHome home;
    fakes::FakeHostApplication icon;
};

/// A pane as its bundle makes it, up to the first showing.
class OpenPane
{
public:
    OpenPane(const TemporaryHome &home, fakes::FakeHostApplication &icon)
        : m_bundle(*foundation::Bundle::open(QStringLiteral(TARNWELL_PANE_BUNDLE)))
        , m_desktop({m_bundle.path(), home.home(), home.root(), icon})
        , pane(m_desktop.ports(), m_desktop.identityCache(), m_bundle)
    {
        m_desktop.setMissedNotificationsHandler([this] { m_joined = true; });
        QString error;
        m_view.reset(pane.loadMainView(&error));
        if (!m_view)
            qFatal("%s", qPrintable(error));
        pane.mainViewDidLoad();
        pane.willSelect();
    }
    bool hasJoinedTheBus() const { return m_joined; }

    QStringList shownItems() const
    {
        QStringList titles;
        const QAbstractItemModel *model = pane.scTable()->model();
        for (int row = 0; row < model->rowCount(); ++row)
            titles.append(model->index(row, 0).data().toString());
        return titles;
    }

private:
    foundation::Bundle m_bundle;
    pane::PaneDesktop m_desktop;
    std::unique_ptr<QWidget> m_view; // outlives the pane
    bool m_joined = false;

public:
    pane::TarnwellPref pane;
};

TEST_F(RealDomain, FollowsWhatAnotherProcessStoresAndPosts)
{
    for (const QString &form : {u"binary"_s, u"xml"_s}) {
        SCOPED_TRACE(form.toStdString());
        writeByOtherProcess(form, {u"Open"_s, u"Save"_s, u"Close"_s});
        OpenPane open(home, icon);
        EXPECT_EQ(open.shownItems(), (QStringList{u"Close"_s, u"Open"_s, u"Save"_s}));
        open.pane.scTable()->selectRow(2);
        ASSERT_TRUE(waitUntil([&] { return open.hasJoinedTheBus(); }));

        const QStringList titles{u"Import"_s, u"Save"_s};
        writeByOtherProcess(form, titles);
        const QByteArray written = fileBytes();
        postRefreshes(1);
        ASSERT_TRUE(waitUntil([&] { return open.shownItems() == titles; }));
        EXPECT_EQ(open.pane.scTable()->selectionModel()->currentIndex().data().toString(),
                  u"Save"_s);
        EXPECT_EQ(fileBytes(), written) << "a refresh writes nothing back";
    }
}

TEST_F(RealDomain, KeepsWhatItDoesNotKnow)
{
    writeByOtherProcess(u"binary"_s, {u"Open"_s});
    plist::Dictionary expected = plist::read(fileBytes()).toDictionary();
    expected.insert(u"MenuAcceleratorEnabled"_s, false);
    {
        OpenPane open(home, icon);
        open.pane.menuAccEnabled()->click();
    }
    EXPECT_EQ(plist::read(fileBytes()), plist::Value(expected));
}

TEST_F(RealDomain, RebuildsAFewTimesForABurstOfRefreshes)
{
    writeByOtherProcess(u"binary"_s, {u"Open"_s});
    OpenPane open(home, icon);
    ASSERT_TRUE(waitUntil([&] { return open.hasJoinedTheBus(); }));
    const CapturedLog log(CapturedLog::WithDetails);
    writeByOtherProcess(u"binary"_s, {u"Save"_s});
    postRefreshes(100);
    ASSERT_TRUE(waitUntil([&] { return open.shownItems() == QStringList{u"Save"_s}; }));
    // Whatever of the burst is still on its way comes before a last one with news of its own.
    writeByOtherProcess(u"binary"_s, {u"Close"_s});
    postRefreshes(1);
    ASSERT_TRUE(waitUntil([&] { return open.shownItems() == QStringList{u"Close"_s}; }));
    // Every rebuild looks at the one record twice: for the pop-up, and for the table.
    EXPECT_LE(log.containing(u"......"_s).size(), 2 * 15);
}

TEST_F(RealDomain, WaitsForNoPipeInThePlaceOfAFile)
{
    const QString folder = u"~/Library/Application Support/Varnit/Tarnwell"_s;
    home.makeFolder(folder + u"/Backups"_s);
    const QString pipe = home.path(folder + u"/HardcodedExcludeList.plist"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(pipe, home.path(folder + u"/Backups/Shortcuts 2026.plist"_s)));
    const CapturedLog log;
    OpenPane open(home, icon);
    EXPECT_EQ(log.containing(pipe + u" cannot be read: It is a pipe"_s).size(), 1);
    open.pane.doBringBack(nullptr);
    EXPECT_FALSE(open.pane.bringBackSheet()->isVisible()) << "there is nothing to bring back";
}

TEST_F(RealDomain, WorksWithoutABusAndWithoutAPlaceToWrite)
{
    bus.die();
    // No user, root included, can make a folder below a file.
    home.remove(u"~/Library"_s);
    home.write(u"~/Library"_s, "in the way");
    OpenPane open(home, icon);
    open.pane.menuAccEnabled()->click();
    EXPECT_FALSE(open.pane.menuAccEnabled()->isChecked());
    EXPECT_FALSE(open.pane.storeProblem()->text().isEmpty());
    EXPECT_EQ(open.pane.scPopup()->currentText(), u"No Applications Configured"_s);
}

TEST_F(RealDomain, ADamagedIconLeavesThatOfTheHostUnchanged)
{
    QImage picture(64, 64, QImage::Format_RGB32);
    for (int i = 0; i < 64 * 64; ++i) // nothing that could be packed into a few bytes
        picture.setPixel(i % 64, i / 64, QRgb(i * 2654435761U));
    QBuffer whole;
    picture.save(&whole, "PNG");
    QPixmap base(64, 64);
    base.fill(Qt::red);
    const std::pair<const char *, QByteArray> rows[] = {
        {"whole", whole.data()},
        {"empty", ""},
        {"nonsense", "icns\xff\xff\xff\xffic07"},
        {"torn", whole.data().first(whole.size() / 2)},
    };
    home.writeInfo(u"/Bare.prefPane/Contents/Info.plist"_s, {});
    for (const auto &[name, bytes] : rows) {
        home.write(u"/Bare.prefPane/Contents/Resources/Tarnwell.icns"_s, bytes);
        const auto bundle = foundation::Bundle::open(home.path(u"/Bare.prefPane"_s));
        pane::PaneDesktop desktop({bundle->path(), home.home(), home.root(), icon});
        pane::TarnwellPref pane(desktop.ports(), desktop.identityCache(), *bundle);
        const QIcon shown = pane.overlayIcon(QIcon(base), u"Tarnwell.icns"_s);
        const QImage drawn = shown.pixmap(64, 64).toImage().convertedTo(QImage::Format_RGB32);
        const bool isUnchanged = drawn == base.toImage().convertedTo(QImage::Format_RGB32);
        EXPECT_EQ(isUnchanged, name != "whole"_L1) << name;
    }
}

} // namespace tarnwell::tests
