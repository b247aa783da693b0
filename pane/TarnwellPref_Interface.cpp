// What the pane and its interface files know of each other by name.

#include "pane/TarnwellPref.h"

#include "effects/QCView.h"
#include "hotkey/LiTextField.h"
#include "hotkey/LiWindow.h"
#include "ui/InterfaceFile.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTableView>
#include <QTextBrowser>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace tarnwell::pane {

void TarnwellPref::registerInterfaceClasses(ui::InterfaceFileLoader &loader)
{
    loader.registerClass(u"LiWindow"_s,
                         [](QWidget *parent) { return new hotkey::LiWindow(parent); });
    loader.registerClass(u"LiTextField"_s,
                         [](QWidget *parent) { return new hotkey::LiTextField(parent); });
    registerEffectsClasses(loader);
}

void TarnwellPref::addOutlets(ui::InterfaceOwner &owner)
{
#define TARNWELL_OUTLET(Widget, name, setter)                                                      \
    owner.addOutlet<Widget>(QStringLiteral(#name), [this](Widget *widget) { setter(widget); })

    TARNWELL_OUTLET(QCheckBox, enabledCheckbox, setEnabledCheckbox);
    TARNWELL_OUTLET(QLabel, appFormatField, setAppFormatField);
    TARNWELL_OUTLET(QLineEdit, mlEmailField, setMlEmailField);
    TARNWELL_OUTLET(hotkey::LiWindow, hotkeySheet, setHotkeySheet);
    TARNWELL_OUTLET(QLabel, menuAccHotKey, setMenuAccHotKey);
    TARNWELL_OUTLET(QCheckBox, menuAccEnabled, setMenuAccEnabled);
    TARNWELL_OUTLET(QPushButton, setMenuAccHKButton, setSetMenuAccHKButton);
    TARNWELL_OUTLET(QWidget, sacrificeMeCaptian, setSacrificeMeCaptian);
    TARNWELL_OUTLET(QLabel, versionField, setVersionField);
    TARNWELL_OUTLET(QTableView, ieListTable, setIeListTable);
    TARNWELL_OUTLET(QTableView, scTable, setScTable);
    TARNWELL_OUTLET(QPushButton, tutButton, setTutButton);
    TARNWELL_OUTLET(QCheckBox, ieHideCheckbox, setIeHideCheckbox);
    TARNWELL_OUTLET(QCheckBox, ieInternetCheckbox, setIeInternetCheckbox);
    TARNWELL_OUTLET(QTreeView, seView, setSeView);
    TARNWELL_OUTLET(QComboBox, scPopup, setScPopup);
    TARNWELL_OUTLET(QTextBrowser, aboutTextField, setAboutTextField);
    TARNWELL_OUTLET(QDialog, aboutSheet, setAboutSheet);
    TARNWELL_OUTLET(QCheckBox, tutDontShowCheckbox, setTutDontShowCheckbox);
    TARNWELL_OUTLET(QPushButton, scRestoreButton, setScRestoreButton);
    TARNWELL_OUTLET(hotkey::LiTextField, menuAccHotKeySheetField, setMenuAccHotKeySheetField);
    TARNWELL_OUTLET(QLabel, hotkeyHint, setHotkeyHint);
    TARNWELL_OUTLET(QPushButton, ieRemoveButton, setIeRemoveButton);
    TARNWELL_OUTLET(QPushButton, ieExportButton, setIeExportButton);
    TARNWELL_OUTLET(QPushButton, scRemoveAppButton, setScRemoveAppButton);
    TARNWELL_OUTLET(QDialog, tutPanel, setTutPanel);
    TARNWELL_OUTLET(effects::QCView, previewView, setPreviewView);
    TARNWELL_OUTLET(QLabel, qcName, setQcName);
    TARNWELL_OUTLET(QLabel, authorName, setAuthorName);
    TARNWELL_OUTLET(QLabel, urlField, setUrlField);
    TARNWELL_OUTLET(QLabel, preInstructionView, setPreInstructionView);
    TARNWELL_OUTLET(QPushButton, mlSubscribeButton, setMlSubscribeButton);
    TARNWELL_OUTLET(QDialog, bringBackSheet, setBringBackSheet);
    TARNWELL_OUTLET(QListWidget, bringBackList, setBringBackList);
    TARNWELL_OUTLET(QLineEdit, scFilterField, setScFilterField);
    TARNWELL_OUTLET(QWidget, storeProblemBox, setStoreProblemBox);
    TARNWELL_OUTLET(QLabel, storeProblem, setStoreProblem);
    TARNWELL_OUTLET(QPushButton, storeAgainButton, setStoreAgainButton);
    TARNWELL_OUTLET(QPushButton, scFilterKeysButton, setScFilterKeysButton);
    TARNWELL_OUTLET(QLabel, scNoMatch, setScNoMatch);
    TARNWELL_OUTLET(QLabel, pluginProblem, setPluginProblem);
    TARNWELL_OUTLET(QLabel, statusLine, setStatusLine);

#undef TARNWELL_OUTLET

    addEffectsBindings(owner);
}

void TarnwellPref::addActions(ui::InterfaceOwner &owner)
{
#define TARNWELL_ACTION(name)                                                                      \
    owner.addAction(QStringLiteral(#name ":"), [this](QObject *sender) { name(sender); })

    TARNWELL_ACTION(doOptionsCheckboxes);
    TARNWELL_ACTION(doStoreAgain);
    TARNWELL_ACTION(doPopup);
    TARNWELL_ACTION(doRestoreOriginal);
    TARNWELL_ACTION(doRemoveApp);
    TARNWELL_ACTION(doBringBack);
    TARNWELL_ACTION(doExportShortcuts);
    TARNWELL_ACTION(doImportShortcuts);
    TARNWELL_ACTION(doAbout);
    TARNWELL_ACTION(doHelp);
    TARNWELL_ACTION(doTutorial);
    TARNWELL_ACTION(doTutorialSheet);
    TARNWELL_ACTION(doMLSubscribe);
    TARNWELL_ACTION(doSheetDismiss);
    TARNWELL_ACTION(setHotKey);
    TARNWELL_ACTION(ieAddApp);
    TARNWELL_ACTION(ieRemoveApp);
    TARNWELL_ACTION(ieHideCheckbox);
    TARNWELL_ACTION(ieInternetCheckbox);
    TARNWELL_ACTION(doExportExcludeList);
    TARNWELL_ACTION(doImportExcludeList);

#undef TARNWELL_ACTION
}

} // namespace tarnwell::pane
