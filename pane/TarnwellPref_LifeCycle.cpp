#include "pane/TarnwellPref.h"

#include "foundation/BoundedFile.h"
#include "foundation/Logging.h"
#include "foundation/plist/PropertyList.h"
#include "pane/OverlayIcon.h"
#include "pane/VersionText.h"
#include "ports/Applications.h"
#include "ports/FileManager.h"
#include "ports/HostApplication.h"
#include "ports/KeyboardLayouts.h"
#include "ports/NotificationCenter.h"
#include "ports/SystemFacts.h"
#include "ports/Workspace.h"
#include "prefs/PreferenceKeys.h"
#include "shortcuts/ShortcutTableModel.h"
#include "update/QXVCUpdateViewController_V102.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace tarnwell::pane {

namespace {

/// The first level of the system interfaces that has what the Menu Accelerator needs.
constexpr qint32 menuAcceleratorSystemLevel = 0x1040;

bool isPluginInstalled(const ports::FileManager &fileManager)
{
    // A plug-in in one of the "(disabled)" folders is loaded by nobody, so it counts as missing.
    const QStringList activeLocations{u"~/Library/Hullforges/Tarnwell.zok"_s,
                                      u"/Library/Hullforges/Tarnwell.zok"_s};
    return std::any_of(activeLocations.begin(), activeLocations.end(),
                       [&fileManager](const QString &location) {
                           return fileManager.fileExists(fileManager.resolve(location));
                       });
}

void reportDamagedExcludeList(const ports::FileManager &fileManager)
{
    constexpr qint64 sizeLimit = 8LL * 1024 * 1024;
    const QString path = fileManager.resolve(
        u"~/Library/Application Support/Varnit/Tarnwell/HardcodedExcludeList.plist"_s);
    foundation::FileReadError fileError;
    const auto bytes = foundation::readBoundedFile(path, sizeLimit, &fileError);
    if (!bytes && fileError.systemCode == ENOENT)
        return;
    plist::ReadError error;
    if (!bytes)
        error.message = fileError.inWords(sizeLimit);
    if (!bytes || plist::read(*bytes, &error).isNull())
        TARNWELL_SYSTEM_LOG(u"%1 cannot be read: %2"_s.arg(path, error.message));
}

std::optional<QString> infoString(const foundation::Bundle &bundle, const QString &key)
{
    const plist::Value value = bundle.infoValue(key);
    if (value.isNull())
        return std::nullopt;
    return value.isString() ? value.toString() : plist::description(value);
}

} // namespace

void TarnwellPref::awakeFromNib()
{
    const auto wrapper = preferences();
    setRootEnabled(m_desktop.systemFacts.realUserId() == 0);
    const bool disabled = wrapper->boolForKey(prefs::keys::disabled);
    setZokMissing(rootEnabled() || !isPluginInstalled(m_desktop.fileManager));
    enabledCheckbox()->setChecked(!disabled && !rootEnabled());
    showPluginProblem();

    setStoredAppFormatString(appFormatField()->text());
    if (wrapper->keyExist(prefs::keys::mlEmailAddress))
        mlEmailField()->setText(wrapper->stringForKey(prefs::keys::mlEmailAddress).value_or(u""_s));
    appFormatField()->setText(u""_s);

    const std::optional<qint32> systemLevel =
        m_desktop.systemFacts.gestalt(ports::fourCharacterCode("sysv"));
    if (!systemLevel || *systemLevel < menuAcceleratorSystemLevel) {
        menuAccEnabled()->setEnabled(false);
        setMenuAccHKButton()->setEnabled(false);
        menuAccHotKey()->setText(localized("10.4+ Only"));
    } else {
        setUpHotKeySheet();
        updateMenuAccText(menuAccHotKey());
        showMenuAccEnabled(*wrapper);
    }

    makeUpdateController();
    setMSystemPrefsIcon(m_desktop.hostApplication.applicationIcon());
    setMPrefPaneIcon(overlayIcon(mSystemPrefsIcon(), u"Tarnwell.icns"_s));
}

void TarnwellPref::makeUpdateController()
{
    m_updateController = update::QXVCUpdateViewController_V102::initWithSacrificialView(
        {m_desktop, m_bundle, *m_updateState}, sacrificeMeCaptian(), std::nullopt,
        prefs::pluginDomain);
}

void TarnwellPref::mainViewDidLoad()
{
    setVersionField();
    setUpExcludeTable();
    setUpShortcutTable();
    setScArray({});

    m_observations.push_back(m_desktop.localNotifications.addObserver(
        QString(ports::applicationDidBecomeActiveNotification), std::nullopt,
        [this](const ports::Notification &notification) {
            applicationDidBecomeActive(notification);
        }));
    // Everything is read again, so that one look serves all the refreshes that wait.
    m_observations.push_back(m_desktop.distributedNotifications.addMergingObserver(
        u"com.varnit.tarnwell.refresh"_s, [this] { refreshWithoutWriting(); }));
    // Every shortcut shows the characters of the layout that types now.
    connect(&m_desktop.keyboardLayouts, &ports::KeyboardLayouts::currentKeyboardLayoutChanged, this,
            &TarnwellPref::refreshWithoutWriting);

    followStoring();

    const auto wrapper = preferences();
    showDisabled(*wrapper);
    setAskedAboutTutorial(wrapper->boolForKey(prefs::keys::dontShowTutorialSheet));
    ieHideCheckbox()->setChecked(wrapper->boolForKey(prefs::keys::hidePredefinedExcludeListItems));
    ieInternetCheckbox()->setChecked(!wrapper->boolForKey(prefs::keys::excludeListNoInternetSync));
    // Both options stay in force through the preferences but are not offered.
    ieHideCheckbox()->hide();
    ieInternetCheckbox()->hide();

    // Nothing shown here comes from the predefined list; a damaged one is at least logged.
    reportDamagedExcludeList(m_desktop.fileManager);

    // Its rows come when they are first to be seen, and are laid out then.
    setUpEffects();
}

void TarnwellPref::willSelect()
{
    enabledCheckbox()->setEnabled(!zokMissing());
    m_desktop.applications.refresh();
    buildIEList();
    rebuildPopup();
    doPopup(scPopup());
    refreshEffects();
    if (m_updateController)
        m_updateController->showStoredSettings();
    m_desktop.hostApplication.setApplicationIcon(mPrefPaneIcon());
    scheduleInternetCheck();
}

void TarnwellPref::willUnselect()
{
    cancelInternetCheck();
    m_desktop.hostApplication.setApplicationIcon(mSystemPrefsIcon());
}

void TarnwellPref::applicationDidBecomeActive(const ports::Notification &)
{
    m_desktop.applications.refresh();
    rebuildPopupKeepingSelection();
    doPopup(scPopup());
    showStoredOptions();
    refreshIEList();
    refreshEffects();
    if (m_updateController)
        m_updateController->showStoredSettings();
}

void TarnwellPref::showDisabled(const prefs::CFPreferencesWrapper_Tarnwell &wrapper)
{
    const bool disabled = wrapper.boolForKey(prefs::keys::disabled);
    enabledCheckbox()->setChecked(!disabled);
    tutButton()->setEnabled(!disabled);
}

void TarnwellPref::showPluginProblem()
{
    pluginProblem()->setVisible(zokMissing());
    if (!zokMissing())
        return;
    const QString problem =
        rootEnabled() ? localized("Tarnwell does not change the applications of the root user.")
                      : localized("Tarnwell does not run: its plug-in is not installed in "
                                  "Library/Hullforges.");
    pluginProblem()->setText(problem);
    enabledCheckbox()->setAccessibleDescription(problem);
}

void TarnwellPref::showMenuAccEnabled(const prefs::CFPreferencesWrapper_Tarnwell &wrapper)
{
    menuAccEnabled()->setChecked(!wrapper.keyExist(prefs::keys::menuAcceleratorEnabled) ||
                                 wrapper.boolForKey(prefs::keys::menuAcceleratorEnabled));
}

void TarnwellPref::showStoredOptions()
{
    const auto wrapper = preferences();
    showDisabled(*wrapper);
    if (!menuAccEnabled()->isEnabled())
        return;
    showMenuAccEnabled(*wrapper);
    showStoredHotKey(menuAccHotKey());
}

void TarnwellPref::rebuildPopupKeepingSelection()
{
    const QVariant remembered = scPopup()->currentData();
    rebuildPopup();
    const int index = remembered.isValid() ? scPopup()->findData(remembered) : -1;
    if (index >= 0)
        scPopup()->setCurrentIndex(index);
}

void TarnwellPref::tarnwellUpdate(const ports::Notification &notification)
{
    setIsInNotification(true);
    applicationDidBecomeActive(notification);
    setIsInNotification(false);
}

void TarnwellPref::refreshWithoutWriting()
{
    tarnwellUpdate({});
}

void TarnwellPref::doOptionsCheckboxes(QObject *sender)
{
    const auto *checkbox = qobject_cast<QCheckBox *>(sender);
    if (!checkbox)
        return;
    const bool value = checkbox->isChecked();
    const auto wrapper = preferences();
    if (checkbox == enabledCheckbox()) {
        tutButton()->setEnabled(value);
        wrapper->setObject(!value, prefs::keys::disabled);
    } else if (checkbox == menuAccEnabled()) {
        wrapper->setObject(value, prefs::keys::menuAcceleratorEnabled);
    } else {
        return;
    }
    wrapper->synchronize();
}

void TarnwellPref::setVersionField()
{
    const VersionText text = versionText(infoString(m_bundle, u"CFBundleShortVersionString"_s),
                                         infoString(m_bundle, u"VarnitBuildNumber"_s));
    versionField()->setText(text.label);
    versionField()->setToolTip(text.toolTip);
}

QIcon TarnwellPref::overlayIcon(const QIcon &baseIcon, const QString &withProductIcon)
{
    const QFileInfo name(withProductIcon);
    const QString path = m_bundle.resourcePath(name.completeBaseName(), name.suffix());
    return overlaidIcon(baseIcon,
                        path.isEmpty() ? QIcon() : m_desktop.workspace.iconFromImageFile(path));
}

} // namespace tarnwell::pane
