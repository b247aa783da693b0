// The view itself: how it is made and placed, its settings and its windows.

#include "ViewFixture.h"
#include "ui/InterfaceFile.h"
#include "update/ViewPlacement.h"

#include <QCheckBox>
#include <QDialog>
#include <QGridLayout>
#include <QTextBrowser>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

class View : public ViewFixture
{
protected:
    /// What a bundle with no more than some files of the real one can do.
    update::UpdateViewServices bareServices(const QStringList &files)
    {
        disk.writeInfo(u"/Bare.prefPane/Contents/Info.plist"_s, {});
        for (const QString &name : files) {
            QFile file(QStringLiteral(TARNWELL_PANE_BUNDLE "/Contents/Resources/") + name);
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            disk.write(bareResources + name, file.readAll());
        }
        update::UpdateViewServices bare = services();
        bare.ownBundle = *foundation::Bundle::open(disk.path(u"/Bare.prefPane"_s));
        return bare;
    }

    const QString bareResources = u"/Bare.prefPane/Contents/Resources/"_s;
};

using Controller = update::QXVCUpdateViewController_V102;

TEST_F(View, InterfaceAndControllerKnowTheSameNames)
{
    openView();
    EXPECT_EQ(controller->interfaceMismatch().outletsWithoutWidget, QStringList());
    EXPECT_EQ(controller->interfaceMismatch().actionsWithoutControl, QStringList());
    EXPECT_EQ(controller->interfaceMismatch().controlsWithoutAction, QStringList());
    EXPECT_EQ(controller->lastStatusString().count("%@"_L1), 2);
}

TEST_F(View, NeedsAPlaceAModuleAndItsInterfaceFile)
{
    const auto isMade = [this](const update::UpdateViewServices &with, QWidget *place,
                               const QString &identifier) {
        return Controller::initWithSacrificialView(with, place, std::nullopt, identifier) !=
               nullptr;
    };
    const QString module = prefs::pluginDomain;
    EXPECT_FALSE(isMade(services(), nullptr, module));
    EXPECT_FALSE(isMade(services(), placeholder, QString()));
    EXPECT_FALSE(isMade(services(), placeholder, u"com.varnit.other"_s));
    EXPECT_FALSE(isMade(bareServices({}), placeholder, module));
    EXPECT_EQ(log.lines().size(), 2) << "of what the user has not installed";
    EXPECT_FALSE(placeholder->isHidden()) << "the placeholder stays";
}

TEST_F(View, LooksForThePluginInFourFolders)
{
    // From the last place to the first: each plug-in found outdoes the one before.
    disk.remove(u"~/Library/Hullforges/Tarnwell.zok"_s);
    for (const QString &folder :
         {u"/Library/Hullforges (Disabled)"_s, u"~/Library/Hullforges (Disabled)"_s,
          u"/Library/Hullforges"_s, u"~/Library/Hullforges"_s}) {
        writePlugin(folder + u"/Other name.zok"_s);
        openView();
        EXPECT_EQ(controller->zokBundle()->path(), disk.path(folder + u"/Other name.zok"_s));
        controller.reset();
        placeholder->show();
    }
    const QString framework = u"/Library/Frameworks/Hullforge.framework"_s;
    disk.writeInfo(framework + u"/Contents/Info.plist"_s, {});
    controller = Controller::initWithSacrificialView(services(), placeholder, std::nullopt,
                                                     u"com.varnit.zok"_s);
    ASSERT_TRUE(controller);
    EXPECT_EQ(controller->zokBundle()->path(), disk.path(framework));
}

TEST_F(View, StoresWhatTheUserChooses)
{
    store(u"SUCheckInterval"_s, 604800.0);
    openIdleView();
    EXPECT_EQ(controller->frequencyPopup()->currentText(), u"Weekly"_s);
    EXPECT_TRUE(controller->checkUpdatesButton()->isChecked()) << "absent counts as on";
    EXPECT_EQ(stored(u"SUCheckForUpdates"_s), plist::Value(true));

    controller->checkUpdatesButton()->click();
    EXPECT_EQ(stored(u"SUCheckForUpdates"_s), plist::Value(false));
    QComboBox *popup = controller->frequencyPopup();
    for (const auto &[title, seconds] :
         {std::pair{u"Daily"_s, 86400}, {u"Weekly"_s, 604800}, {u"Monthly"_s, 2592000}}) {
        popup->setCurrentText(title);
        Q_EMIT popup->activated(popup->currentIndex());
        EXPECT_EQ(stored(u"SUCheckInterval"_s), plist::Value(seconds));
    }
    popup->setItemData(popup->currentIndex(), 1);
    Q_EMIT popup->activated(popup->currentIndex());
    EXPECT_EQ(stored(u"SUCheckInterval"_s), plist::Value(2592000)) << "no interval";
}

TEST_F(View, FollowsWhatOthersStore)
{
    storeLastCheck(60.0);
    showPane();
    const struct
    {
        const char *name;
        bool automatic;
        int interval;
        QString frequency;
        std::function<void()> follow;
    } rows[] = {
        {"refreshed", false, 86400, u"Daily"_s, [this] { postRefresh(); }},
        {"active again", true, 2592000, u"Monthly"_s, [this] { pane->hostDidBecomeActive(); }},
        {"shown again", false, 604800, u"Weekly"_s, [this] { pane->willSelect(); }},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        store(u"SUCheckForUpdates"_s, row.automatic);
        store(u"SUCheckInterval"_s, row.interval);
        store(u"SULastCheckStatus"_s, row.frequency);
        preferences.control().clearRecord();
        row.follow();
        EXPECT_EQ(find<QCheckBox>("checkUpdatesButton")->isChecked(), row.automatic);
        EXPECT_EQ(find<QComboBox>("frequencyPopup")->currentText(), row.frequency);
        EXPECT_TRUE(find<QLabel>("lastStatus")->text().endsWith(row.frequency));
        EXPECT_TRUE(preferences.control().writes().isEmpty());
    }
}

TEST_F(View, ShowsTheLastResultAndTheWholeDate)
{
    openView();
    controller->updateStatusString();
    EXPECT_TRUE(status().endsWith(": Never checked for updates."_L1)) << qPrintable(status());
    store(u"SULastCheckStatus"_s, u"Version 2 is there."_s);
    preferences.appSynchronize(prefs::pluginDomain);
    controller->updateStatusString();
    const QString whole = controller->lastStatus()->toolTip();
    EXPECT_TRUE(whole.endsWith(": Version 2 is there."_L1));
    EXPECT_TRUE(whole.contains("2023"_L1) && whole.size() > status().size()) << qPrintable(whole);
}

TEST_F(View, TakesThePlaceAndTheTabsOfItsPlaceholder)
{
    auto *before = new QPushButton(u"before"_s);
    auto *after = new QPushButton(u"after"_s);
    auto *layout = static_cast<QVBoxLayout *>(window.layout());
    layout->insertWidget(0, before);
    layout->addWidget(after);
    QWidget::setTabOrder(before, after);
    openIdleView();
    EXPECT_TRUE(placeholder->isHidden());
    EXPECT_EQ(layout->indexOf(controller->updaterView()), 1);
    EXPECT_TRUE(controller->updaterView()->isVisible());
    QStringList order;
    for (QWidget *widget = before; order.isEmpty() || widget != before;
         widget = widget->nextInFocusChain()) {
        if ((widget->focusPolicy() & Qt::TabFocus) && widget->window() == &window)
            order.append(widget->objectName().isEmpty() ? static_cast<QPushButton *>(widget)->text()
                                                        : widget->objectName());
    }
    EXPECT_EQ(order,
              (QStringList{u"before"_s, u"checkUpdatesButton"_s, u"frequencyPopup"_s,
                           u"privacyButton"_s, u"removeLockButton"_s, u"checkNow"_s, u"after"_s}));
    QPointer<QWidget> shownView = controller->updaterView();
    controller.reset();
    EXPECT_FALSE(shownView) << "controls without a controller";
}

TEST_F(View, IsCentredWhereNoLayoutKeepsThePlace)
{
    QWidget bare;
    auto *frame = new QWidget(&bare);
    frame->setGeometry(100, 50, 1001, 301);
    placeholder = frame;
    openIdleView();
    const QRect geometry = controller->updaterView()->geometry();
    EXPECT_LE((geometry.center() - frame->geometry().center()).manhattanLength(), 2);
    controller.reset();

    EXPECT_EQ(update::centredOver({0, 0, 100, 50}, {40, 20}), QRect(30, 15, 40, 20));
    EXPECT_EQ(update::centredOver({0, 0, 101, 50}, {40, 21}), QRect(30, 14, 41, 22))
        << "half points round outward";
    EXPECT_EQ(update::centredOver({10, 10, 20, 20}, {60, 40}), QRect(-10, 0, 60, 40));
}

TEST_F(View, OpensAsASheetBehindAButton)
{
    storeLastCheck(60.0);
    auto *button = new QPushButton(u"Updates"_s, &window);
    placeholder = button;
    openView();
    EXPECT_FALSE(button->isHidden());
    QWidget *sheet = controller->updaterView()->window();
    ASSERT_NE(sheet, &window);
    button->click();
    EXPECT_TRUE(sheetsControl.isOpen(sheet));
    controller->checkNow()->click();
    EXPECT_TRUE(isChecking());

    // The privacy statement stands over the sheet, and is not one itself.
    sheet->findChild<QPushButton *>(u"privacyButton"_s)->click();
    EXPECT_TRUE(controller->privacyWindow()->isVisible());
    EXPECT_EQ(controller->privacyWindow()->windowModality(), Qt::ApplicationModal);
    EXPECT_FALSE(sheetsControl.isOpen(controller->privacyWindow()));
    controller->privacyWindow()->reject();
    EXPECT_EQ(controller->privacyWindow()->windowModality(), Qt::NonModal);
    EXPECT_TRUE(sheetsControl.isOpen(sheet));

    sheet->findChild<QPushButton *>(u"updaterDoneButton"_s)->click();
    sheetsControl.turn();
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_FALSE(sheetsControl.isOpen(sheet));
}

TEST_F(View, ShowsThePrivacyStatementInASheet)
{
    openIdleView();
    QDialog *privacy = controller->privacyWindow();
    auto *open = window.findChild<QPushButton *>(u"privacyButton"_s);
    for (int round = 0; round < 2; ++round) {
        open->click();
        EXPECT_TRUE(sheetsControl.isOpen(privacy));
        EXPECT_TRUE(controller->privacyText()->toPlainText().contains("What this pane does"_L1));
        EXPECT_EQ(controller->privacyText()->textCursor().position(), 0) << "read from the start";
        privacy->findChild<QPushButton *>(u"privacyDoneButton"_s)->click();
        sheetsControl.turn();
        EXPECT_FALSE(privacy->isVisible());
        EXPECT_FALSE(sheetsControl.isOpen(privacy));
    }
}

TEST_F(View, SaysWhichPrivacyStatementItCannotLoad)
{
    controller = Controller::initWithSacrificialView(
        bareServices({u"UpdaterView.ui"_s, u"UpdaterPrivacy.ui"_s}), placeholder, std::nullopt,
        prefs::pluginDomain);
    ASSERT_TRUE(controller);
    window.show();
    auto *open = window.findChild<QPushButton *>(u"privacyButton"_s);
    open->click();
    EXPECT_TRUE(log.lines().contains(u"Cannot find path for SUPrivacyStatement.rtfd"_s));
    EXPECT_FALSE(controller->privacyWindow()->isVisible());

    const QString package = disk.makeFolder(bareResources + u"SUPrivacyStatement.rtfd"_s);
    open->click();
    EXPECT_EQ(controller->privacyText()->toPlainText(), u"Cannot load "_s + package);
}

} // namespace tarnwell::tests
