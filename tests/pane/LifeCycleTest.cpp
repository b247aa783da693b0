#include "desktop/CapturedLog.h"
#include "pane/Catalogues.h"
#include "support/PaneFixture.h"
#include "ui/InterfaceFile.h"

#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

using LifeCycle = PaneFixture;

TEST_F(LifeCycle, InterfaceAndControllerKnowTheSameNames)
{
    openPane();
    const ui::InterfaceMismatch &mismatch = pane->interfaceMismatch();
    EXPECT_EQ(mismatch.outletsWithoutWidget, QStringList());
    EXPECT_EQ(mismatch.actionsWithoutControl, QStringList());
    EXPECT_EQ(mismatch.controlsWithoutAction, QStringList());
    EXPECT_EQ(mismatch.bindingsWithoutWidget, QStringList());
    EXPECT_EQ(mismatch.widgetsWithoutBinding, QStringList());
}

TEST_F(LifeCycle, EnablingNeedsThePluginAndAnOrdinaryUser)
{
    struct Row
    {
        const char *name;
        QString installedAt;
        quint32 userId;
        plist::Value disabled;
        bool checkedAfterAwaking;
        bool checkedAfterLoading;
        bool offered;
    };
    const Row rows[] = {
        {"in the home",
         u"/home/tester/Library/Hullforges/Tarnwell.zok"_s,
         1000,
         {},
         true,
         true,
         true},
        {"for everybody", u"/Library/Hullforges/Tarnwell.zok"_s, 1000, {}, true, true, true},
        {"in the disabled folder",
         u"/home/tester/Library/Hullforges (disabled)/Tarnwell.zok"_s,
         1000,
         {},
         true,
         true,
         false},
        {"nowhere", u"/elsewhere"_s, 1000, {}, true, true, false},
        {"switched off", u"/Library/Hullforges/Tarnwell.zok"_s, 1000, true, false, false, true},
        {"switched off in words", u"/Library/Hullforges/Tarnwell.zok"_s, 1000, u"YES"_s, false,
         false, true},
        {"of no meaning", u"/Library/Hullforges/Tarnwell.zok"_s, 1000,
         plist::Value(plist::Dictionary()), true, true, true},
        {"as root", u"/Library/Hullforges/Tarnwell.zok"_s, 0, {}, false, true, false},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        home = fakes::FakeHome();
        home.addFolder(row.installedAt);
        systemFacts.control().realUserId = row.userId;
        store(u"Disabled"_s, row.disabled);
        preferences.appSynchronize(prefs::pluginDomain);

        const auto bundle = foundation::Bundle::open(QStringLiteral(TARNWELL_PANE_BUNDLE));
        pane = std::make_unique<pane::TarnwellPref>(desktop(), identityCache, *bundle);
        QString error;
        view.reset(pane->loadMainView(&error));
        ASSERT_TRUE(view) << error.toStdString();
        EXPECT_EQ(pane->enabledCheckbox()->isChecked(), row.checkedAfterAwaking);
        pane->mainViewDidLoad();
        EXPECT_EQ(pane->enabledCheckbox()->isChecked(), row.checkedAfterLoading);
        EXPECT_EQ(pane->tutButton()->isEnabled(), row.checkedAfterLoading);
        pane->willSelect();
        EXPECT_EQ(pane->enabledCheckbox()->isEnabled(), row.offered);
        EXPECT_EQ(pane->pluginProblem()->isHidden(), row.offered);
        EXPECT_EQ(pane->enabledCheckbox()->accessibleDescription() == pane->pluginProblem()->text(),
                  !row.offered);
        EXPECT_EQ(pane->pluginProblem()->text().contains("root"_L1), row.userId == 0);
        TearDown();
    }
}

TEST(Catalogues, AreOfTheFirstLanguageThatThePaneSpeaks)
{
    const QString resources = QStringLiteral(TARNWELL_PANE_BUNDLE "/Contents/Resources");
    const QTemporaryDir toolkit;
    ASSERT_TRUE(QFile::copy(resources + "/tarnwell_de.qm"_L1, toolkit.filePath(u"qtbase_de.qm"_s)));
    struct Row
    {
        const char *name;
        QStringList languages;
        QString toolkitFolder;
        size_t catalogues;
    };
    const Row rows[] = {
        {"German", {u"de-AT"_s, u"de-Latn-AT"_s, u"de"_s}, toolkit.path(), 2},
        {"German without the toolkit's", {u"de"_s}, u"/nowhere"_s, 1},
        {"English before German", {u"en-GB"_s, u"en"_s, u"de-DE"_s, u"de"_s}, toolkit.path(), 0},
        {"German before English", {u"fr-FR"_s, u"fr"_s, u"de"_s, u"en"_s}, toolkit.path(), 2},
        {"none", {u"C"_s}, toolkit.path(), 0},
    };
    for (const Row &row : rows) {
        const auto catalogues = pane::loadCatalogues(row.languages, resources, row.toolkitFolder);
        EXPECT_EQ(catalogues.size(), row.catalogues) << row.name;
        for (const auto &catalogue : catalogues)
            EXPECT_EQ(catalogue->translate("TarnwellPref", "Restore"), u"Wiederherstellen"_s)
                << row.name;
    }
}

TEST_F(LifeCycle, ShowsWhatThePreferencesSay)
{
    store(u"MLEmailAddress"_s, u"someone@example.com"_s);
    store(u"DontShowTutorialSheet"_s, true);
    store(u"HidePredefinedExcludeListItems"_s, true);
    store(u"ExcludeListNoInternetSync"_s, true);
    store(u"MenuAcceleratorEnabled"_s, false);
    openPane();
    EXPECT_EQ(pane->mlEmailField()->text(), u"someone@example.com"_s);
    EXPECT_TRUE(pane->askedAboutTutorial());
    EXPECT_TRUE(pane->ieHideCheckbox()->isChecked());
    EXPECT_FALSE(pane->ieInternetCheckbox()->isChecked());
    EXPECT_FALSE(pane->ieHideCheckbox()->isVisibleTo(view.get()));
    EXPECT_FALSE(pane->ieInternetCheckbox()->isVisibleTo(view.get()));
    EXPECT_FALSE(pane->menuAccEnabled()->isChecked());
    EXPECT_TRUE(pane->storedAppFormatString().contains("%@"_L1));
    EXPECT_EQ(pane->appFormatField()->text(), u""_s);
    EXPECT_TRUE(preferences.control().writes().isEmpty()) << "opening the pane writes nothing";
}

TEST_F(LifeCycle, MenuAcceleratorNeedsRecentInterfaces)
{
    systemFacts.control().gestalt[ports::fourCharacterCode("sysv")] = 0x1039;
    openPane();
    EXPECT_FALSE(pane->menuAccEnabled()->isEnabled());
    EXPECT_FALSE(pane->setMenuAccHKButton()->isEnabled());
    EXPECT_EQ(pane->menuAccHotKey()->text(), u"10.4+ Only"_s);
}

TEST_F(LifeCycle, OptionCheckboxesWriteAtOnce)
{
    home.addFolder(u"/Library/Hullforges/Tarnwell.zok"_s);
    showPane();
    pane->enabledCheckbox()->click();
    EXPECT_EQ(stored(u"Disabled"_s), plist::Value(true));
    EXPECT_FALSE(pane->tutButton()->isEnabled());
    pane->enabledCheckbox()->click();
    EXPECT_EQ(stored(u"Disabled"_s), plist::Value(false));
    EXPECT_TRUE(pane->tutButton()->isEnabled());
    ASSERT_TRUE(pane->menuAccEnabled()->isChecked()) << "absent counts as on";
    pane->menuAccEnabled()->click();
    EXPECT_EQ(stored(u"MenuAcceleratorEnabled"_s), plist::Value(false));
    EXPECT_TRUE(distributedCenter.control().posted().isEmpty());
}

TEST_F(LifeCycle, OptionsFollowWhatAnotherProcessStores)
{
    store(u"MenuAccKeyCode"_s, 46);
    store(u"MenuAccMods"_s, 0x1800);
    showPane();
    const QString before = pane->menuAccHotKey()->text();
    preferences.control().clearRecord();
    store(u"Disabled"_s, true);
    store(u"MenuAcceleratorEnabled"_s, false);
    store(u"MenuAccKeyCode"_s, 45);
    store(u"ExcludeList"_s, plist::Array{plist::Value(plist::Dictionary{
                                {u"ID"_s, u"com.example.left"_s}, {u"DisplayName"_s, u"Left"_s}})});
    postRefresh();
    EXPECT_FALSE(pane->enabledCheckbox()->isChecked());
    EXPECT_FALSE(pane->tutButton()->isEnabled());
    EXPECT_FALSE(pane->menuAccEnabled()->isChecked());
    EXPECT_NE(pane->menuAccHotKey()->text(), before);
    EXPECT_EQ(pane->ieList().size(), 1);
    EXPECT_TRUE(preferences.control().writes().isEmpty());
}

TEST_F(LifeCycle, SaysWhileChangesCannotBeStored)
{
    showPane();
    preferences.control().setSynchronizeFails(true);
    postRefresh();
    EXPECT_FALSE(pane->storeProblem()->isVisible()) << "nothing waits to be stored";
    pane->menuAccEnabled()->click();
    EXPECT_TRUE(pane->storeProblem()->isVisible());
    const QString said = pane->storeProblem()->text();
    EXPECT_TRUE(said.contains("disk full"_L1));
    EXPECT_FALSE(pane->menuAccEnabled()->isChecked()) << "the change is kept";
    pane->storeAgainButton()->click();
    EXPECT_NE(pane->storeProblem()->text(), said) << "the button is seen to have done something";
    preferences.control().setSynchronizeFails(false);
    postRefresh();
    EXPECT_TRUE(stored(u"MenuAcceleratorEnabled"_s).isNull()) << "a refresh stores nothing";
    timers.control().advance(1.0);
    EXPECT_FALSE(pane->storeProblem()->isVisible());
    EXPECT_EQ(stored(u"MenuAcceleratorEnabled"_s), plist::Value(false));

    preferences.control().setSynchronizeFails(true);
    pane->menuAccEnabled()->click();
    preferences.control().setSynchronizeFails(false);
    pane->storeAgainButton()->click();
    EXPECT_EQ(stored(u"MenuAcceleratorEnabled"_s), plist::Value(true));
    EXPECT_FALSE(pane->storeAgainButton()->isVisible());
}

TEST_F(LifeCycle, ShowsWhatWasStoredInPlaceOfADelayedChange)
{
    showPane();
    preferences.control().setSynchronizeFails(true);
    pane->menuAccEnabled()->click();
    ASSERT_FALSE(pane->menuAccEnabled()->isChecked());
    store(u"MenuAcceleratorEnabled"_s, true);
    preferences.control().setSynchronizeFails(false);
    timers.control().advance(1.0);
    EXPECT_TRUE(pane->menuAccEnabled()->isChecked());
    EXPECT_EQ(stored(u"MenuAcceleratorEnabled"_s), plist::Value(true));
    EXPECT_TRUE(pane->storeProblem()->text().contains("another program"_L1));
    EXPECT_FALSE(pane->storeAgainButton()->isVisible()) << "nothing is left to store";
}

TEST_F(LifeCycle, WaitsForAnotherProcessThatWritesTheDomain)
{
    showPane();
    preferences.control().setBeingWritten(true);
    pane->menuAccEnabled()->click();
    store(u"Disabled"_s, true);
    EXPECT_FALSE(pane->storeProblem()->isVisible()) << "no problem yet";
    std::optional<bool> mayClose;
    pane->askToClose([&mayClose](bool may) { mayClose = may; });
    EXPECT_EQ(mayClose, std::nullopt);
    timers.control().advance(0.2);
    preferences.control().setBeingWritten(false);
    timers.control().advance(0.05);
    EXPECT_EQ(mayClose, true);
    EXPECT_EQ(stored(u"MenuAcceleratorEnabled"_s), plist::Value(false));
    EXPECT_FALSE(pane->enabledCheckbox()->isChecked()) << "what is read again is shown";
}

TEST_F(LifeCycle, AsksBeforeChangesAreLost)
{
    struct Row
    {
        const char *name;
        bool fails;           ///< also when the window is to be closed
        QList<int> answers;   ///< to the question
        bool failsAfterwards; ///< once it was asked
        bool mayClose;
        bool isStored;
    };
    const Row rows[] = {
        {"storable again", false, {}, false, true, true},
        {"kept open", true, {0}, true, false, false},
        {"dropped", true, {-1}, true, true, false},
        {"tried again", true, {1}, false, true, true},
        {"tried again and kept open", true, {1, 0}, true, false, false},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        store(u"MenuAcceleratorEnabled"_s, {});
        preferences.appSynchronize(prefs::pluginDomain);
        showPane();
        QList<bool> replies;
        const auto reply = [&replies](bool mayClose) { replies += mayClose; };
        pane->askToClose(reply);
        EXPECT_EQ(std::exchange(replies, {}), QList<bool>{true}) << "nothing waits";

        preferences.control().setSynchronizeFails(true);
        pane->menuAccEnabled()->click();
        preferences.control().setSynchronizeFails(row.fails);
        pane->askToClose(reply);
        preferences.control().setSynchronizeFails(row.failsAfterwards);
        for (const int answer : row.answers) {
            EXPECT_TRUE(replies.isEmpty());
            ASSERT_TRUE(sheetsControl.hasOpenAlert());
            EXPECT_TRUE(sheetsControl.alerts().last().alert.message.contains("disk full"_L1));
            ASSERT_TRUE(sheetsControl.answer(answer));
        }
        EXPECT_FALSE(sheetsControl.hasOpenAlert());
        EXPECT_EQ(replies, QList<bool>{row.mayClose});
        EXPECT_EQ(!stored(u"MenuAcceleratorEnabled"_s).isNull(), row.isStored);

        const CapturedLog log;
        pane->willEnd();
        EXPECT_EQ(log.containing(u"disk full"_s).size(), row.isStored ? 0 : 1);
        preferences.control().setSynchronizeFails(false);
        pane->willEnd();
        EXPECT_EQ(stored(u"MenuAcceleratorEnabled"_s), plist::Value(false));
        TearDown();
    }
}

TEST_F(LifeCycle, AnotherSenderWritesNothing)
{
    openPane();
    QCheckBox stranger;
    pane->doOptionsCheckboxes(&stranger);
    pane->doOptionsCheckboxes(nullptr);
    EXPECT_TRUE(preferences.control().writes().isEmpty());
}

TEST_F(LifeCycle, LendsItsIconToTheHostWhileShown)
{
    QPixmap base(64, 64);
    base.fill(Qt::red);
    hostApplication.setApplicationIcon(QIcon(base));
    showPane();
    const QImage shown = hostApplication.applicationIcon().pixmap(64, 64).toImage();
    EXPECT_EQ(shown.pixelColor(8, 8), QColor(Qt::red)) << "the base shows in the upper left";
    QImage lowerRight = shown.copy(32, 32, 32, 32);
    QImage untouched(lowerRight.size(), lowerRight.format());
    untouched.fill(Qt::red);
    EXPECT_NE(lowerRight, untouched) << "the product icon fills the lower right quarter";
    pane->willUnselect();
    EXPECT_EQ(hostApplication.applicationIcon().pixmap(64, 64).toImage().pixelColor(48, 48),
              QColor(Qt::red));
}

} // namespace tarnwell::tests
