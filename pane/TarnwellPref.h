#pragma once

#include "effects/CompositionLists.h"
#include "effects/Outline.h"
#include "foundation/Bundle.h"
#include "foundation/StyledString.h"
#include "foundation/plist/Value.h"
#include "ports/Desktop.h"
#include "ports/Preferences.h"
#include "prefs/CFPreferencesWrapper_Tarnwell.h"
#include "shortcuts/ShortcutList.h"
#include "ui/Field.h"
#include "ui/PreferencePane.h"

#include <QHash>
#include <QIcon>
#include <QPointer>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QAbstractButton;
class QAbstractItemView;
class QCheckBox;
class QComboBox;
class QDialog;
class QKeyEvent;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTableView;
class QTextBrowser;
class QTranslator;
class QTreeView;

namespace tarnwell::effects {
class OutlineModel;
class QCView;
struct EffectInformation;
} // namespace tarnwell::effects
namespace tarnwell::exclude {
class ExcludeTableModel;
}
namespace tarnwell::hotkey {
class LiTextField;
class LiWindow;
enum class Verdict;
struct HotKey;
} // namespace tarnwell::hotkey
namespace tarnwell::ports {
class ListFetch;
class Observation;
class Timer;
struct Notification;
} // namespace tarnwell::ports
namespace tarnwell::prefs {
struct ApplicationIdentityCache;
struct IdentityContext;
class StoreRetry;
} // namespace tarnwell::prefs
namespace tarnwell::shortcuts {
class LayoutKeyCommandTranslator;
class ShortcutBackups;
struct PopupEntry;
struct ShortcutCount;
class ShortcutTableModel;
} // namespace tarnwell::shortcuts
namespace tarnwell::ui {
class FirstPaint;
class InterfaceFileLoader;
class InterfaceOwner;
struct InterfaceMismatch;
} // namespace tarnwell::ui
namespace tarnwell::update {
class QXVCUpdateViewController_V102;
struct UpdateProcessState;
} // namespace tarnwell::update

namespace tarnwell::pane {

/// The pane's controller: it owns the rows behind the tables and every action lives on it.
///
/// A subsystem's methods are defined in the subsystem's folder. Each action makes a preferences
/// wrapper, reads what it needs, writes a changed copy of the whole value back and synchronises.
class TarnwellPref : public ui::PreferencePane
{
    Q_OBJECT

    TARNWELL_FIELD(std::optional<foundation::Bundle>, tawlBundle, setTawlBundle)
    TARNWELL_FIELD(effects::CompositionGroups, qtzDict, setQtzDict)
    TARNWELL_FIELD(effects::EnabledCompositions, qtzEnabledList, setQtzEnabledList)
    TARNWELL_FIELD(bool, rootEnabled, setRootEnabled)
    TARNWELL_FIELD(bool, zokMissing, setZokMissing)
    TARNWELL_FIELD(QCheckBox *, enabledCheckbox, setEnabledCheckbox)
    TARNWELL_FIELD(QLabel *, appFormatField, setAppFormatField)
    TARNWELL_FIELD(QString, storedAppFormatString, setStoredAppFormatString)
    TARNWELL_FIELD(QLineEdit *, mlEmailField, setMlEmailField)
    TARNWELL_FIELD(hotkey::LiWindow *, hotkeySheet, setHotkeySheet)
    TARNWELL_FIELD(QLabel *, menuAccHotKey, setMenuAccHotKey)
    TARNWELL_FIELD(QCheckBox *, menuAccEnabled, setMenuAccEnabled)
    TARNWELL_FIELD(QPushButton *, setMenuAccHKButton, setSetMenuAccHKButton)
    TARNWELL_FIELD(QWidget *, sacrificeMeCaptian, setSacrificeMeCaptian)
    TARNWELL_FIELD(QIcon, mSystemPrefsIcon, setMSystemPrefsIcon)
    TARNWELL_FIELD(QIcon, mPrefPaneIcon, setMPrefPaneIcon)
    TARNWELL_FIELD(shortcuts::ShortcutList, scArray, setScArray)
    TARNWELL_FIELD(plist::Array, ieList, setIeList)
    TARNWELL_FIELD(std::shared_ptr<ports::Timer>, scrollTimer, setScrollTimer)
    TARNWELL_FIELD(QTableView *, ieListTable, setIeListTable)
    TARNWELL_FIELD(QTableView *, scTable, setScTable)
    TARNWELL_FIELD(QPushButton *, tutButton, setTutButton)
    TARNWELL_FIELD(bool, askedAboutTutorial, setAskedAboutTutorial)
    TARNWELL_FIELD(QCheckBox *, ieHideCheckbox, setIeHideCheckbox)
    TARNWELL_FIELD(QCheckBox *, ieInternetCheckbox, setIeInternetCheckbox)
    TARNWELL_FIELD(QTreeView *, seView, setSeView)
    TARNWELL_FIELD(QComboBox *, scPopup, setScPopup)
    TARNWELL_FIELD(bool, isInNotification, setIsInNotification)
    TARNWELL_FIELD(QTextBrowser *, aboutTextField, setAboutTextField)
    TARNWELL_FIELD(float, pos, setPos)
    TARNWELL_FIELD(QDialog *, aboutSheet, setAboutSheet)
    TARNWELL_FIELD(QCheckBox *, tutDontShowCheckbox, setTutDontShowCheckbox)
    TARNWELL_FIELD(QPushButton *, scRestoreButton, setScRestoreButton)
    TARNWELL_FIELD(hotkey::LiTextField *, hotKeyField, setMenuAccHotKeySheetField)
    TARNWELL_FIELD(QLabel *, hotkeyHint, setHotkeyHint)
    TARNWELL_FIELD(QPushButton *, ieRemoveButton, setIeRemoveButton)
    TARNWELL_FIELD(QPushButton *, ieExportButton, setIeExportButton)
    TARNWELL_FIELD(QPushButton *, scRemoveAppButton, setScRemoveAppButton)
    TARNWELL_FIELD(QDialog *, tutPanel, setTutPanel)
    TARNWELL_FIELD(effects::QCView *, previewView, setPreviewView)
    TARNWELL_FIELD(QLabel *, qcName, setQcName)
    TARNWELL_FIELD(QLabel *, authorName, setAuthorName)
    TARNWELL_FIELD(QLabel *, urlField, setUrlField)
    TARNWELL_FIELD(QLabel *, preInstructionView, setPreInstructionView)
    TARNWELL_FIELD(QPushButton *, mlSubscribeButton, setMlSubscribeButton)
    TARNWELL_FIELD(QDialog *, bringBackSheet, setBringBackSheet)
    TARNWELL_FIELD(QListWidget *, bringBackList, setBringBackList)
    TARNWELL_FIELD(QLineEdit *, scFilterField, setScFilterField)
    TARNWELL_FIELD(QWidget *, storeProblemBox, setStoreProblemBox)
    TARNWELL_FIELD(QLabel *, storeProblem, setStoreProblem)
    TARNWELL_FIELD(QPushButton *, storeAgainButton, setStoreAgainButton)
    TARNWELL_FIELD(QPushButton *, scFilterKeysButton, setScFilterKeysButton)
    TARNWELL_FIELD(QLabel *, scNoMatch, setScNoMatch)
    TARNWELL_FIELD(QLabel *, pluginProblem, setPluginProblem)
    TARNWELL_FIELD(QLabel *, statusLine, setStatusLine)

public:
    /// The services and the cache live longer than the pane; bundle is the pane's own.
    TarnwellPref(const ports::Desktop &desktop, prefs::ApplicationIdentityCache &identityCache,
                 const foundation::Bundle &bundle);
    ~TarnwellPref() override;

    QLabel *versionField() const { return m_versionField; }
    void setVersionField(QLabel *field) { m_versionField = field; }

    // Life cycle (pane/)
    QWidget *loadMainView(QString *errorMessage) override;
    void awakeFromNib();
    void mainViewDidLoad() override;
    void willSelect() override;
    void willUnselect() override;
    void hostDidBecomeActive() override;
    void askToClose(std::function<void(bool mayClose)> reply) override;
    void willEnd() override;
    void applicationDidBecomeActive(const ports::Notification &notification);
    /// The plug-in stored something: shows it, and writes nothing back.
    void tarnwellUpdate(const ports::Notification &notification);
    void doOptionsCheckboxes(QObject *sender);
    /// Fills the version label and its tool tip from the bundle.
    void setVersionField();
    QIcon overlayIcon(const QIcon &baseIcon, const QString &withProductIcon);

    /// Tries once more to store what could not be stored.
    void doStoreAgain(QObject *sender);

    // Sheets (pane/)
    void doAbout(QObject *sender);
    void scrollAboutText();
    void doHelp(QObject *sender);
    void showTutorialSheet();
    void doTutorialSheet(QObject *sender);
    void doTutorial(QObject *sender);
    void doMLSubscribe(QObject *sender);
    /// Does nothing, and no interface file can name it: kept for callers that know the pane's
    /// methods.
    void doMLAction(QObject *sender);
    /// Ends the sheet that the sender stands in, with the sender's tag.
    void doSheetDismiss(QObject *sender);
    void customSheetDidEnd(QWidget *sheet, int returnCode);

    // Shortcuts (shortcuts/)
    void rebuildPopup();
    void doPopup(QObject *sender);
    /// Appends the changed shortcuts of one application to scArray.
    void buildSCArray(const QString &settingsKey);
    /// Where the application of a settings key is installed; empty when it is not found.
    QUrl urlForAppID(const QString &identifier) const;
    const shortcuts::ShortcutRow *findKey(const foundation::StyledString &key,
                                          const plist::Value &withModifiers, bool inOriginal) const;
    void doRestoreOriginal(QObject *sender);
    /// Restores the item that was asked about, if it is still the selected one.
    void restoreSheetDidEnd(const shortcuts::ShortcutRow &asked, int returnCode,
                            const std::optional<shortcuts::ShortcutRow> &contextInfo);
    void doRemoveApp(QObject *sender);
    void removeSheetDidEnd(const QString &askedSettingsKey, int returnCode);
    void doBringBack(QObject *sender);
    void doExportShortcuts(QObject *sender);
    void doImportShortcuts(QObject *sender);
    int numberOfRowsInTableView(const QTableView *table) const;
    std::optional<foundation::StyledString>
    objectValueForTableColumn(const QTableView *table, int columnIdentifier, int row) const;
    void tableViewSelectionDidChange(const QTableView *table);
    std::optional<QString> translateKey(const plist::Value &kc,
                                        const plist::Value &andCmdKey) const;
    foundation::StyledString
    translatedStringFromKeyDictionary(const plist::Dictionary &keyDictionary) const;
    foundation::StyledString shortcutStringFor(const std::optional<QString> &character,
                                               const plist::Value &modifiers) const;
    foundation::StyledString smallFontFor(const std::optional<QString> &string, bool useBold,
                                          bool disabled) const;

    bool eventFilter(QObject *watched, QEvent *event) override;

    // Exclude list (exclude/)
    /// Shows what is stored of the exclude list.
    void buildIEList();
    void ieAddApp(QObject *sender);
    void ieOpenPanelDidEnd(const QStringList &panelPaths, int returnCode);
    void ieRemoveApp(QObject *sender);
    void ieHideCheckbox(QObject *sender);
    void ieInternetCheckbox(QObject *sender);
    /// Downloads the predefined list when that is due. Waits for the server, but not for long.
    void ieCheckInternet();
    void doExportExcludeList(QObject *sender);
    void doImportExcludeList(QObject *sender);

    // Effects (effects/)
    /// Looks for compositions and keeps what is found: the groups, which are returned, and those
    /// that may be played. Without the plug-in both stay as they are.
    const effects::CompositionGroups &getQTZDict();
    /// Whether effects are played. Absent counts as no.
    bool sillyEffect();
    void setSillyEffect(bool on);
    /// Whether the plug-in's own compositions take part.
    bool includesBundledEffects();
    void setIncludesBundledEffects(bool include);
    /// Whether this display cannot play compositions.
    bool hideSillyEffects() const;
    // What the outline shows of an item. All look for compositions first if none are known.
    int numberOfChildrenOfItem(const effects::OutlineItem &item);
    bool isItemExpandable(const effects::OutlineItem &item) const;
    effects::OutlineItem child(int index, const effects::OutlineItem &ofItem);
    QVariant objectValueForTableColumn(const QString &column, const effects::OutlineItem &byItem);
    bool shouldEditTableColumn(const QString &column, const effects::OutlineItem &item) const;
    effects::OutlineItem itemForPersistentObject(const effects::OutlineItem &object) const;
    effects::OutlineItem persistentObjectForItem(const effects::OutlineItem &item) const;
    /// Switches a composition or a whole group, and shows what results.
    void setObjectValue(const QVariant &value, const QString &forTableColumn,
                        const effects::OutlineItem &byItem);
    /// Previews the selected composition; a group leaves the preview alone.
    void outlineViewSelectionDidChange(QTreeView *outline);

    // Hot key (hotkey/)
    /// Opens the sheet that takes a new hot key.
    void setHotKey(QObject *sender);
    /// Shows the stored hot key in a label or field; stores the default first if there is none.
    void updateMenuAccText(QWidget *field);

    /// What interface file and controller do not share; empty once the interface is loaded well.
    const ui::InterfaceMismatch &interfaceMismatch() const { return *m_interfaceMismatch; }

protected:
    /// Shows what is stored without writing back, as after a refresh of the plug-in.
    void refreshWithoutWriting();

private:
    std::unique_ptr<prefs::CFPreferencesWrapper_Tarnwell> preferences() const;
    prefs::IdentityContext identityContext() const;
    /// A text of the pane in the user's language.
    static QString localized(const char *text);

    void registerInterfaceClasses(ui::InterfaceFileLoader &loader);
    void addOutlets(ui::InterfaceOwner &owner);
    void addActions(ui::InterfaceOwner &owner);
    void loadTranslation();
    /// The texts in the places of a format, each as one line that is fit to be shown.
    static QString withTexts(const QString &format, const QStringList &texts);
    static QString countInWords(const shortcuts::ShortcutCount &count);
    void showMessage(const QString &title, const QString &message);
    /// Says below the pages what an action came to, until the next action; an empty text hides it.
    void showStatus(const QString &text);

    void setUpShortcutTable();
    std::optional<shortcuts::ShortcutRow> selectedShortcut() const;
    void rebuildPopupKeepingSelection();
    void showDisabled(const prefs::CFPreferencesWrapper_Tarnwell &wrapper);
    /// Says why Tarnwell can't be enabled here, if it can't.
    void showPluginProblem();
    void showMenuAccEnabled(const prefs::CFPreferencesWrapper_Tarnwell &wrapper);
    /// Shows what another process may have changed, shortcuts apart.
    void showStoredOptions();
    /// Shows from now on how the storing of changes goes, and sees to it that it gets done.
    void followStoring();
    /// Says what there is to say of the storing of changes, if anything.
    void showStoreState(const ports::Preferences::StoreState &state, const QString &problemFormat);
    void askToDropChanges(const std::function<void(bool mayClose)> &reply);
    shortcuts::ShortcutBackups shortcutBackups() const;
    /// Keeps the stored shortcuts and stores others in their place; none at all removes the key.
    /// False, with nothing stored, when the stored ones could not be kept. The user is then asked
    /// whether to go on without, and if so, `again` is to do the whole action once more.
    bool changeShortcuts(
        const std::function<plist::Dictionary(const plist::Dictionary &present)> &change,
        const std::function<void()> &again);
    void askToGoOnWithoutBackup(const QString &error, const std::function<void()> &again);
    /// Whether some applications' values may go: they are in a backup now.
    bool canDrop(const plist::Dictionary &dropped, const plist::Dictionary &present) const;
    void bringBack(const plist::Dictionary &kept);
    void importShortcuts(const plist::Dictionary &imported);
    /// Does what buildSCArray() does, and returns the groups that the rows were made of.
    plist::Value appendRowsOf(const QString &settingsKey);
    /// Removes applications from the stored shortcuts, those that still have these groups.
    void dropApplications(const plist::Dictionary &groupsByApplication);
    void askToBringBack(const QString &backup);
    void askToImport(const QString &path);
    void reloadShortcutTable();
    /// Has the table show other rows, the selected item staying selected.
    void changeShownShortcuts(const std::function<void()> &change);
    void setUpShortcutFilter();
    void prepareFilter();
    void filterShortcutsByWords(const QString &text);
    void filterShortcutsByKeys(bool on);
    void showShortcutsWith(const QKeyEvent &press);
    /// Says in the empty table what no shortcut matched.
    void showNoMatch();
    /// Goes on in the table where a row went, for whoever works with the keyboard.
    void continueAtRow(int row);
    void offerTutorial(const prefs::CFPreferencesWrapper_Tarnwell &wrapper);
    void fillPopup(const QList<shortcuts::PopupEntry> &entries);
    QString selectedSettingsKey() const;
    void setUpExcludeTable();
    int selectedExcludeRow() const; ///< -1 for none
    void selectExcludeRow(int row);
    void updateExcludeButtons();
    /// Builds the exclude list again if another process changed it.
    void refreshIEList();
    /// Has the check run when the pane is to be seen next.
    void scheduleInternetCheck();
    /// Once a day, and without keeping anybody waiting.
    void checkInternetInBackground();
    void cancelInternetCheck();
    void askToImportExcludeList(const QString &path);

    void registerEffectsClasses(ui::InterfaceFileLoader &loader);
    void addEffectsBindings(ui::InterfaceOwner &owner);
    void setUpEffects();
    void effectsWillShow();
    void effectsDidHide();
    /// Until it is known, the controls are shown.
    void showWhetherEffectsPlay(bool canPlay);
    void setUpOutline();
    void showEffectSwitches();
    /// Shows what others stored or installed meanwhile.
    void refreshEffects();
    /// The compositions that are known, after looking for them if none are.
    effects::Outline knownOutline();
    /// Shows them, once the outline has rows at all.
    void reloadOutline();
    void previewComposition(const QString &path);
    void showInformation(const effects::EffectInformation &information);

    void setUpHotKeySheet();
    bool showStoredHotKey(QWidget *field);
    QString showHotKey(QWidget *field, const hotkey::HotKey &hotKey);
    void showHotKeyInOtherLayout();
    void explainRefusedKey(hotkey::Verdict why);
    void showRecordedHotKey();
    void tellInSheet(const QString &text);
    /// Stores what the sheet recorded, if it did.
    void storeHotKey();

    void makeUpdateController();

    ports::Desktop m_desktop;
    prefs::ApplicationIdentityCache &m_identityCache;
    foundation::Bundle m_bundle;

    QLabel *m_versionField = nullptr;
    std::unique_ptr<ui::InterfaceMismatch> m_interfaceMismatch;
    std::vector<std::unique_ptr<QTranslator>> m_translators;
    std::unique_ptr<ports::Timer> m_tutorialTimer;
    std::unique_ptr<ports::Timer> m_filterTimer;
    float m_maximumAboutOffset = 0.0F; ///< computed when the text first scrolls, then kept
    bool m_goesWithoutBackup = false;  ///< the user said so, for the change that is being made
    bool m_isHotKeyRecorded = false;   ///< what the sheet shows was pressed, not stored
    std::unique_ptr<QWidget> m_helpWindow;
    QTextBrowser *m_helpText = nullptr; ///< in the help window
    std::unique_ptr<prefs::StoreRetry> m_storeRetry;
    std::unique_ptr<update::UpdateProcessState> m_updateState;
    std::unique_ptr<update::QXVCUpdateViewController_V102> m_updateController;
    /// Sheets of the interface; the main view belongs to the host.
    std::vector<std::unique_ptr<QWidget>> m_sheets;
    QPointer<QWidget> m_mainView;
    std::vector<std::unique_ptr<ports::Observation>> m_observations;
    std::unique_ptr<shortcuts::LayoutKeyCommandTranslator> m_scTranslator;
    shortcuts::ShortcutTableModel *m_scModel = nullptr; ///< a child of the table
    exclude::ExcludeTableModel *m_ieModel = nullptr;    ///< a child of the table
    effects::OutlineModel *m_seModel = nullptr;         ///< a child of the outline, once it showed
    bool m_sillyEffect = false;
    bool m_canPlayEffects = true;
    bool m_isReloadingOutline = false;
    QAbstractButton *m_sillyEffectSwitch = nullptr;
    QAbstractButton *m_includesBundledEffectsSwitch = nullptr;
    QWidget *m_effectsPage = nullptr;       ///< around all of those
    QList<QWidget *> m_hiddenWithEffects;   ///< where the display can't play them
    QList<QWidget *> m_shownWithoutEffects; ///< instead of those
    std::unique_ptr<ui::FirstPaint> m_ieFirstPaint;
    std::unique_ptr<ports::Timer> m_ieInternetTimer;
    std::unique_ptr<ports::ListFetch> m_ieFetch;
};

} // namespace tarnwell::pane
