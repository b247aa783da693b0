// The window as a user works it: menus are opened, keys are pressed, the store is looked at.

#include "tutorial/TutorialWindow.h"

#include "fakes/FakeKeyboardLayouts.h"
#include "fakes/FakeNotificationCenter.h"
#include "fakes/FakePreferences.h"
#include "prefs/PreferenceKeys.h"
#include "tutorial/Options.h"
#include "tutorial/ShortcutStore.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace tarnwell;
using namespace tarnwell::tutorial;
using namespace Qt::StringLiterals;

namespace {

const QString app = u"com.varnit.tarnwell.tutorial"_s;

/// Lets the window own preferences that the test keeps.
class Forwarded final : public ports::Preferences
{
public:
    explicit Forwarded(ports::Preferences &target)
        : m_target(target)
    {}
    plist::Value copyAppValue(const QString &key, const QString &domain) const override
    {
        return m_target.copyAppValue(key, domain);
    }
    void setAppValue(const QString &key, const plist::Value &value, const QString &domain) override
    {
        m_target.setAppValue(key, value, domain);
    }
    bool appSynchronize(const QString &domain) override { return m_target.appSynchronize(domain); }
    bool appStorePending(const QString &domain) override
    {
        return m_target.appStorePending(domain);
    }

private:
    ports::Preferences &m_target;
};

class TutorialWindowTest : public testing::Test
{
protected:
    TutorialWindowTest()
        : store([this] { return std::make_unique<Forwarded>(preferences); }, notifications, app,
                [this](ports::Preferences &, const QString &newSitting) {
                    if (!newSitting.isEmpty())
                        sitting = newSitting;
                    return sitting;
                })
        , window(store, layouts.port(),
                 [this](const QStringList &fields) { events.append(fields.join(u'|')); })
    {
        window.show();
        window.activateWindow();
        QApplication::processEvents();
        events.clear();
        notifications.control().clearPosted();
    }

    plist::Value stored()
    {
        return preferences.control().storedValue(prefs::keys::menuShortcuts, prefs::pluginDomain);
    }
    void storeElsewhere(const plist::Value &value)
    {
        preferences.control().setStoredValue(prefs::keys::menuShortcuts, value,
                                             prefs::pluginDomain);
    }

    QAction *action(const char *name) const
    {
        return window.findChild<QAction *>(QLatin1String(name));
    }

    /// Opens a menu and moves to one of its items with the arrow keys.
    QMenu *pointAt(const char *menuName, const char *itemName)
    {
        auto *menu = window.findChild<QMenu *>(QLatin1String(menuName));
        menu->popup(window.mapToGlobal(QPoint(0, 0)));
        QApplication::processEvents();
        for (int i = 0; i < menu->actions().size() && menu->activeAction() != action(itemName); ++i)
            QTest::keyClick(menu, Qt::Key_Down);
        EXPECT_EQ(menu->activeAction(), action(itemName));
        events.clear();
        return menu;
    }

    void closeMenus()
    {
        while (QWidget *popup = QApplication::activePopupWidget())
            popup->close();
    }

    fakes::FakePreferences preferences;
    fakes::FakeNotificationCenter notifications;
    fakes::FakeKeyboardLayouts layouts;
    QString sitting;
    QStringList events;
    ShortcutStore store;
    TutorialWindow window;
};

const QKeySequence ctrlShiftK(Qt::CTRL | Qt::SHIFT | Qt::Key_K);

TEST_F(TutorialWindowTest, keysOnAnOpenMenusItemBecomeItsShortcut)
{
    QMenu *menu = pointAt("viewMenu", "bigger");
    QTest::keyClick(menu, Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(events, QStringList{u"assigned|Bigger|⇧⌃K"_s});
    EXPECT_EQ(action("bigger")->shortcut(), ctrlShiftK);
    EXPECT_TRUE(menu->isVisible()) << "the new shortcut is to be seen in the menu";

    ASSERT_EQ(notifications.control().posted().size(), 1);
    EXPECT_EQ(notifications.control().posted().at(0).name, u"com.varnit.tarnwell.refresh"_s);
    const plist::Dictionary group =
        stored().toDictionary().value(app).toArray().at(0).toDictionary();
    EXPECT_EQ(group.value(u"ParentTitle").toString(), u"View"_s);
    EXPECT_EQ(
        group.value(u"Keys").toArray().at(0).toDictionary().value(u"NewKeyCommands").toDictionary(),
        (plist::Dictionary{
            {u"kc"_s, 0x28}, {u"cK"_s, 0x4B}, {u"mod"_s, 0x1200}, {u"t"_s, u"Bigger"_s}}));
    closeMenus();
}

TEST_F(TutorialWindowTest, theNewShortcutWorksAndTheOldOneDoesNot)
{
    QTest::keyClick(pointAt("editMenu", "upperCase"), Qt::Key_K, Qt::ControlModifier);
    closeMenus();
    events.clear();
    auto *page = window.findChild<QPlainTextEdit *>(u"page"_s);
    page->setPlainText(u"abc"_s);
    page->setFocus();
    QTest::keyClick(page, Qt::Key_U, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(page->toPlainText(), u"abc"_s);
    QTest::keyClick(page, Qt::Key_K, Qt::ControlModifier);
    EXPECT_EQ(page->toPlainText(), u"ABC"_s);
    EXPECT_EQ(events, QStringList{u"triggered|Upper Case"_s});
}

TEST_F(TutorialWindowTest, aShortcutInUseMovesToTheItem)
{
    // The keys of an item of the open menu itself must not trigger it.
    QTest::keyClick(pointAt("fileMenu", "newPage"), Qt::Key_T, Qt::ControlModifier);
    EXPECT_EQ(events, (QStringList{u"assigned|New Page|⌃T"_s, u"cleared|Sample Text"_s}));
    EXPECT_TRUE(action("sampleText")->shortcut().isEmpty());
    EXPECT_EQ(action("newPage")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_T));
    closeMenus();
}

TEST_F(TutorialWindowTest, plainKeysStillMoveThroughTheMenu)
{
    QMenu *menu = pointAt("viewMenu", "bigger");
    QTest::keyClick(menu, Qt::Key_Shift);
    QTest::keyClick(menu, Qt::Key_Alt);
    QTest::keyClick(menu, Qt::Key_Down);
    EXPECT_TRUE(menu->isVisible());
    EXPECT_EQ(events, QStringList{u"highlighted|Smaller"_s});
    QTest::keyClick(menu, Qt::Key_C);
    EXPECT_EQ(events.last(), u"triggered|Coloured Paper"_s);
    EXPECT_EQ(stored(), plist::Value());
    closeMenus();
}

TEST_F(TutorialWindowTest, keysThatOpenAMenuAreRefused)
{
    QTest::keyClick(pointAt("viewMenu", "bigger"), Qt::Key_F, Qt::AltModifier);
    EXPECT_EQ(events, QStringList{u"refused|Bigger"_s});
    EXPECT_EQ(stored(), plist::Value());
    closeMenus();
}

TEST_F(TutorialWindowTest, backspaceGivesTheOriginalBack)
{
    QMenu *menu = pointAt("viewMenu", "bigger");
    QTest::keyClick(menu, Qt::Key_F9);
    EXPECT_FALSE(stored().isNull());
    QTest::keyClick(menu, Qt::Key_Backspace);
    EXPECT_EQ(stored(), plist::Value());
    EXPECT_EQ(action("bigger")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_B));
    closeMenus();
}

TEST_F(TutorialWindowTest, keysOnASubmenusTitleGoNowhere)
{
    auto *menu = window.findChild<QMenu *>(u"editMenu"_s);
    menu->popup(QPoint(0, 0));
    menu->setActiveAction(window.findChild<QMenu *>(u"symbolMenu"_s)->menuAction());
    QTest::keyClick(menu, Qt::Key_K, Qt::ControlModifier);
    EXPECT_EQ(stored(), plist::Value());
    closeMenus();
}

TEST_F(TutorialWindowTest, followsWhatIsRestoredElsewhere)
{
    QTest::keyClick(pointAt("viewMenu", "bigger"), Qt::Key_K,
                    Qt::ControlModifier | Qt::ShiftModifier);
    closeMenus();
    const plist::Value changed = stored();
    events.clear();
    notifications.control().clearPosted();

    storeElsewhere({});
    window.refresh();
    EXPECT_EQ(events, QStringList{u"restored|Bigger"_s});
    EXPECT_EQ(action("bigger")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_B));

    storeElsewhere(changed);
    window.refresh();
    EXPECT_EQ(events.last(), u"changed|Bigger|⇧⌃K"_s);
    EXPECT_EQ(action("bigger")->shortcut(), ctrlShiftK);
    window.refresh();
    EXPECT_EQ(events.size(), 2);
    EXPECT_TRUE(notifications.control().posted().isEmpty()) << "nobody else is told what is known";
}

TEST_F(TutorialWindowTest, aWriteThatFailsChangesNothing)
{
    preferences.control().setSynchronizeFails(true);
    QTest::keyClick(pointAt("viewMenu", "bigger"), Qt::Key_F9);
    EXPECT_EQ(events, QStringList{u"failed|Bigger"_s});
    EXPECT_EQ(action("bigger")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_B));
    EXPECT_TRUE(notifications.control().posted().isEmpty());
    closeMenus();
}

TEST_F(TutorialWindowTest, aNewSittingStartsAfresh)
{
    QTest::keyClick(pointAt("viewMenu", "bigger"), Qt::Key_F9);
    closeMenus();
    store.begin();
    EXPECT_FALSE(stored().isNull()) << "the sitting goes on";
    sitting.clear();
    notifications.control().clearPosted();
    store.begin();
    EXPECT_EQ(stored(), plist::Value());
    EXPECT_EQ(notifications.control().posted().size(), 1);
}

TEST(FolderWatcher, seesFilesOfAFolderThatIsMadeLater)
{
    const QTemporaryDir home;
    FolderWatcher watcher(home.filePath(u"Library/Preferences"_s));
    QSignalSpy changed(&watcher, &FolderWatcher::changed);
    QDir(home.path()).mkpath(u"Library/Preferences"_s);
    ASSERT_TRUE(changed.wait());
    changed.clear();
    QFile file(home.filePath(u"Library/Preferences/a"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_TRUE(changed.wait());
}

TEST(TutorialOptions, argumentsGoBeforeTheEnvironment)
{
    QProcessEnvironment environment;
    environment.insert(u"TARNWELL_HOME"_s, u"/e"_s);
    EXPECT_EQ(parseOptions({}, environment).home, u"/e"_s);
    EXPECT_EQ(parseOptions({u"--home"_s, u"/a"_s, u"note.txt"_s}, environment).home, u"/a"_s);
    EXPECT_EQ(parseOptions({u"--root=/r"_s}, environment).root, u"/r"_s);
    EXPECT_FALSE(parseOptions({u"--home"_s}, environment).error.isEmpty());
    EXPECT_FALSE(parseOptions({u"--home"_s, u"--verbose"_s}, environment).error.isEmpty());
    EXPECT_FALSE(parseOptions({u"--hom"_s}, environment).error.isEmpty());
    EXPECT_FALSE(parseOptions({u"--color-scheme=blue"_s}, environment).error.isEmpty());
}

} // namespace
