// One shortcut's way through two programs: it is given to a menu item in the tutorial, with real
// key presses, shows in the pane, works, is restored in the pane, and the tutorial follows.

#include "desktop/TestBus.h"
#include "fakes/FakeHostApplication.h"
#include "pane/PaneDesktop.h"
#include "pane/TarnwellPref.h"
#include "support/TemporaryHome.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QProcess>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

/// The tutorial as a process, and what it tells of itself.
class Tutorial
{
public:
    explicit Tutorial(const TemporaryHome &home)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral(TARNWELL_PANE_BUNDLE
                                       "/Contents/Resources/Tarnwell Tutorial.app/Contents/Linux/"
                                       "tarnwell-tutorial"),
                        {u"--verbose"_s, u"--home"_s, home.home(), u"--root"_s, home.root()});
        EXPECT_TRUE(m_process.waitForStarted());
    }
    ~Tutorial()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    /// Waits for a line that begins like this.
    bool says(const QString &beginning)
    {
        return waitUntil([&] {
            m_said += QString::fromUtf8(m_process.readAllStandardOutput());
            return m_said.contains(beginning);
        });
    }
    QString said() const { return m_said; }

private:
    QProcess m_process;
    QString m_said;
};

int xdotool(const QStringList &arguments)
{
    return QProcess::execute(u"xdotool"_s, arguments);
}

} // namespace

class TutorialRoad : public testing::Test
{
protected:
    void SetUp() override
    {
        qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toUtf8());
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(home.makeFolder(u"/run"_s)));
    }
    void TearDown() override
    {
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        runtime.isNull() ? qunsetenv("XDG_RUNTIME_DIR") : qputenv("XDG_RUNTIME_DIR", runtime);
    }

    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    TestBus bus;
    TemporaryHome home;
    fakes::FakeHostApplication icon;
};

TEST_F(TutorialRoad, AssignedShownUsedRestoredFollowed)
{
    const auto bundle = foundation::Bundle::open(QStringLiteral(TARNWELL_PANE_BUNDLE));
    ASSERT_TRUE(bundle);
    pane::PaneDesktop desktop({bundle->path(), home.home(), home.root(), icon});
    bool joined = false;
    desktop.setMissedNotificationsHandler([&joined] { joined = true; });
    pane::TarnwellPref pane(desktop.ports(), desktop.identityCache(), *bundle);
    pane.setAskedAboutTutorial(true);
    QString error;
    std::unique_ptr<QWidget> view(pane.loadMainView(&error));
    ASSERT_TRUE(view) << error.toStdString();
    pane.mainViewDidLoad();
    pane.setAskedAboutTutorial(true);
    pane.willSelect();
    view->show();
    ASSERT_TRUE(waitUntil([&joined] { return joined; }));

    Tutorial tutorial(home);
    ASSERT_EQ(xdotool({u"search"_s, u"--sync"_s, u"--onlyvisible"_s, u"--name"_s,
                       u"^Tarnwell Tutorial$"_s, u"windowfocus"_s, u"--sync"_s}),
              0);
    // View, Bigger.
    ASSERT_EQ(xdotool({u"key"_s, u"alt+v"_s, u"ctrl+alt+k"_s, u"Escape"_s, u"Escape"_s}), 0);
    ASSERT_TRUE(tutorial.says(u"assigned\tBigger\t"_s)) << tutorial.said().toStdString();
    ASSERT_TRUE(waitUntil([&pane] { return pane.scTable()->model()->rowCount() == 1; }));
    EXPECT_EQ(pane.scPopup()->currentData().toString(), u"com.varnit.tarnwell.tutorial"_s);
    EXPECT_EQ(pane.scTable()->model()->index(0, 0).data().toString(), u"View \u261E Bigger"_s);
    EXPECT_EQ(pane.scTable()->model()->index(0, 1).data().toString(), u"\u2303\u2325K"_s);
    EXPECT_EQ(pane.scTable()->model()->index(0, 2).data().toString(), u"\u2303B"_s);

    ASSERT_EQ(xdotool({u"key"_s, u"ctrl+alt+k"_s}), 0);
    ASSERT_TRUE(tutorial.says(u"triggered\tBigger"_s)) << "the new shortcut works";

    pane.scTable()->selectRow(0);
    pane.scRestoreButton()->click();
    QDialog *question = nullptr;
    ASSERT_TRUE(waitUntil([&] {
        question = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        return question != nullptr;
    }));
    for (QPushButton *button : question->findChildren<QPushButton *>()) {
        if (button->text().remove(u'&') == "Restore"_L1)
            button->click();
    }
    ASSERT_TRUE(waitUntil([&pane] { return pane.scTable()->model()->rowCount() == 0; }));
    ASSERT_TRUE(tutorial.says(u"restored\tBigger"_s)) << tutorial.said().toStdString();
}

TEST_F(TutorialRoad, TheButtonBringsTheTutorialToTheFront)
{
    const auto bundle = foundation::Bundle::open(QStringLiteral(TARNWELL_PANE_BUNDLE));
    ASSERT_TRUE(bundle);
    pane::PaneDesktop desktop({bundle->path(), home.home(), home.root(), icon});
    pane::TarnwellPref pane(desktop.ports(), desktop.identityCache(), *bundle);
    {
        Tutorial killed(home);
        ASSERT_TRUE(killed.says(u"ready"_s));
    }
    Tutorial tutorial(home);
    ASSERT_TRUE(tutorial.says(u"ready"_s)) << "a socket without a listener is in nobody's way";
    ASSERT_EQ(xdotool({u"search"_s, u"--sync"_s, u"--onlyvisible"_s, u"--name"_s,
                       u"^Tarnwell Tutorial$"_s, u"windowfocus"_s, u"--sync"_s}),
              0);
    ASSERT_EQ(xdotool({u"key"_s, u"alt+v"_s, u"ctrl+alt+k"_s, u"Escape"_s, u"Escape"_s}), 0);
    ASSERT_TRUE(tutorial.says(u"assigned\tBigger\t"_s)) << tutorial.said().toStdString();

    QWidget other;
    other.resize(600, 400);
    other.show();
    other.activateWindow();
    ASSERT_TRUE(waitUntil([&other] { return other.isActiveWindow(); }));
    pane.doTutorial(nullptr);
    ASSERT_TRUE(tutorial.says(u"started again"_s)) << tutorial.said().toStdString();
    ASSERT_TRUE(tutorial.says(u"restored\tBigger"_s)) << "it begins afresh";
    EXPECT_TRUE(waitUntil([&other] { return !other.isActiveWindow(); }));
    QProcess windows;
    windows.start(u"xdotool"_s,
                  {u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^Tarnwell Tutorial$"_s});
    ASSERT_TRUE(windows.waitForFinished());
    EXPECT_EQ(windows.readAllStandardOutput().count('\n'), 1);
}

} // namespace tarnwell::tests

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    // A screen of its own: real key presses go to whatever has the focus.
    QProcess server;
    server.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1280x1024x24"_s,
                             u"-noreset"_s, u"-nolisten"_s, u"tcp"_s});
    if (!server.waitForStarted() || !server.waitForReadyRead(60000))
        qFatal("Xvfb does not start.");
    qputenv("DISPLAY", ':' + server.readLine().trimmed());
    qputenv("QT_QPA_PLATFORM", "xcb");
    int result = 1;
    {
        QApplication application(argc, argv);
        result = RUN_ALL_TESTS();
    }
    server.terminate();
    server.waitForFinished();
    return result;
}
