#include "pane/AboutScroller.h"
#include "support/PaneFixture.h"

#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBrowser>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

using PaneSheets = PaneFixture;

TEST(AboutScroller, WrapsAtBothEnds)
{
    struct Row
    {
        const char *name;
        float offset;
        float maximum;
        bool backwards;
        float next;
    };
    const Row rows[] = {
        {"forwards", 4, 10, false, 5},
        {"from the bottom to the top", 9, 10, false, 0},
        {"backwards", 4, 10, true, 3},
        {"from 1 to the bottom", 1, 10, true, 10},
        {"from the top", 0, 10, true, 10},
        {"short text", 0, 0, false, 0},
        {"text shorter than its view", 0, -5, false, 0},
    };
    for (const Row &row : rows)
        EXPECT_EQ(pane::nextAboutOffset(row.offset, row.maximum, row.backwards), row.next)
            << row.name;
}

TEST_F(PaneSheets, AboutScrollsUntilItIsDismissed)
{
    showPane();
    pane->aboutSheet()->resize(300, 200);
    find<QPushButton>("aboutButton")->click();
    ASSERT_TRUE(sheetsControl.isOpen(pane->aboutSheet()));
    EXPECT_FALSE(pane->aboutTextField()->toPlainText().isEmpty());
    pane->aboutSheet()->show();
    ASSERT_GT(pane->aboutTextField()->verticalScrollBar()->maximum(), 10);
    timers.control().advance(0.25);
    EXPECT_EQ(pane->pos(), 5.0F);
    EXPECT_EQ(pane->aboutTextField()->verticalScrollBar()->value(), 5);
    keyboard.holdModifiers(0x4000);
    timers.control().advance(0.1);
    EXPECT_EQ(pane->pos(), 3.0F);
    pane->aboutSheet()->findChild<QPushButton *>(u"aboutDoneButton"_s)->click();
    sheetsControl.turn();
    EXPECT_FALSE(pane->aboutSheet()->isVisible());
    EXPECT_FALSE(timers.control().scheduledIntervals().contains(0.05));
    find<QPushButton>("aboutButton")->click();
    EXPECT_EQ(pane->aboutTextField()->verticalScrollBar()->value(), 0) << "again from the top";
}

TEST_F(PaneSheets, TheTutorialIsOfferedOnceThreeSecondsAfterNothingWasFound)
{
    showPane();
    timers.control().advance(2.9);
    EXPECT_FALSE(sheetsControl.isOpen(pane->tutPanel()));
    timers.control().advance(0.1);
    ASSERT_TRUE(sheetsControl.isOpen(pane->tutPanel()));
    pane->tutPanel()->findChild<QPushButton *>(u"tutCloseButton"_s)->click();
    sheetsControl.turn();
    EXPECT_TRUE(stored(u"DontShowTutorialSheet"_s).isNull()) << "an unticked box writes nothing";
    pane->willSelect();
    timers.control().advance(10);
    EXPECT_FALSE(sheetsControl.isOpen(pane->tutPanel()));
}

TEST_F(PaneSheets, TheTutorialIsNotOfferedToWhoDoesNotWantIt)
{
    for (const QString &key : {u"Disabled"_s, u"DontShowTutorialSheet"_s}) {
        SCOPED_TRACE(key.toStdString());
        preferences.control().setStoredDomain(prefs::pluginDomain, {{key, true}});
        preferences.appSynchronize(prefs::pluginDomain);
        showPane();
        timers.control().advance(10);
        EXPECT_FALSE(sheetsControl.isOpen(pane->tutPanel()));
        TearDown();
    }
}

TEST_F(PaneSheets, TheTutorialStartsWithoutItsOldSettings)
{
    store(u"CustomSettings"_s,
          plist::Dictionary{{u"com.varnit.tarnwell.tutorial"_s, plist::Dictionary{{u"a"_s, 1}}},
                            {u"com.example.other"_s, plist::Dictionary{{u"b"_s, 2}}}});
    showPane();
    timers.control().advance(3);
    pane->tutDontShowCheckbox()->setChecked(true);
    const QString tutorial =
        QStringLiteral(TARNWELL_PANE_BUNDLE "/Contents/Resources/Tarnwell Tutorial.app");
    home.addApplication(tutorial, u"com.varnit.tarnwell.tutorial"_s, u"Tarnwell Tutorial"_s);
    pane->tutPanel()->findChild<QPushButton *>(u"tutOpenButton"_s)->click();
    sheetsControl.turn();
    EXPECT_EQ(stored(u"DontShowTutorialSheet"_s), plist::Value(true));
    EXPECT_EQ(applications.control().opened,
              (QList<fakes::FakeApplicationsControl::Opened>{{tutorial, {}, {}}}));
    EXPECT_EQ(
        stored(u"CustomSettings"_s),
        plist::Value(plist::Dictionary{{u"com.example.other"_s, plist::Dictionary{{u"b"_s, 2}}}}));
}

TEST_F(PaneSheets, SubscribingKeepsTheAddressAsItWasTyped)
{
    showPane();
    auto *button = find<QPushButton>("mlSubscribeButton");
    button->click();
    EXPECT_TRUE(stored(u"MLEmailAddress"_s).isNull());
    pane->mlEmailField()->setText(u"me@example.com"_s);
    button->click();
    EXPECT_EQ(stored(u"MLEmailAddress"_s), plist::Value(u"me@example.com"_s));
    ASSERT_EQ(workspace.control().openedUrls.size(), 1);
    EXPECT_TRUE(workspace.control().openedUrls.first().toString().endsWith(
        u"/list-subscribe.php?list=quillets&email=me@example.com"_s));
    pane->mlEmailField()->setText(u"not an address"_s);
    button->click();
    EXPECT_EQ(stored(u"MLEmailAddress"_s), plist::Value(u"not an address"_s));
    EXPECT_EQ(workspace.control().openedUrls.size(), 1) << "no address opens for it";
}

TEST_F(PaneSheets, HelpShowsTheReadMe)
{
    showPane();
    find<QPushButton>("helpButton")->click();
    auto *text = view->findChild<QTextBrowser *>(u"helpText"_s);
    ASSERT_TRUE(text);
    EXPECT_TRUE(text->window()->isVisible());
    EXPECT_FALSE(text->toPlainText().isEmpty());
    EXPECT_EQ(text->textCursor().position(), 0) << "read from the start";
}

} // namespace tarnwell::tests
