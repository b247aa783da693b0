#pragma once

#include "foundation/Bundle.h"
#include "foundation/plist/Value.h"
#include "ports/Desktop.h"
#include "ports/FileManager.h"
#include "ui/Field.h"
#include "ui/KeptFocus.h"
#include "update/UpdateContext.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

class QAbstractButton;
class QCheckBox;
class QComboBox;
class QDialog;
class QLabel;
class QProgressBar;
class QPushButton;
class QTextBrowser;
class QWidget;

namespace tarnwell::ports {
class Observation;
class ProcessWatch;
class StandingLock;
class Timer;
struct Notification;
} // namespace tarnwell::ports
namespace tarnwell::ui {
class InterfaceOwner;
struct InterfaceMismatch;
} // namespace tarnwell::ui

namespace tarnwell::update {

/// What the controller stands on. All of it lives longer than the controller.
struct UpdateViewServices
{
    ports::Desktop desktop;
    foundation::Bundle ownBundle; ///< which holds the interface files and the privacy statement
    UpdateProcessState &state;
};

/// The settings of a module's update checks: whether and how often, the last result, a check now.
///
/// It takes the place of a view that the pane sets aside for it, or opens as a sheet where that
/// view is a button. It works for any module: every setting lives in the preference domain that
/// the module's identifier names. Between checks it is idle; from the start of a check until the
/// updater reports its end, or two seconds after the user cancelled or the updater ended without
/// such a report, its button cancels.
class QXVCUpdateViewController_V102 : public QObject
{
    TARNWELL_FIELD(std::optional<foundation::Bundle>, zokBundle, setZokBundle)
    TARNWELL_FIELD(QString, zokBundleID, setZokBundleID)
    TARNWELL_FIELD(QPointer<QWidget>, sacrificialView, setSacrificialView)
    TARNWELL_FIELD(QPointer<QWidget>, updaterView, setUpdaterView)
    TARNWELL_FIELD(QCheckBox *, checkUpdatesButton, setCheckUpdatesButton)
    TARNWELL_FIELD(QComboBox *, frequencyPopup, setFrequencyPopup)
    TARNWELL_FIELD(QLabel *, lastStatus, setLastStatus)
    TARNWELL_FIELD(QLabel *, lastCheckDate, setLastCheckDate)
    TARNWELL_FIELD(QPushButton *, checkNow, setCheckNow)
    TARNWELL_FIELD(QProgressBar *, progessBar, setProgessBar)
    TARNWELL_FIELD(QTextBrowser *, privacyText, setPrivacyText)
    TARNWELL_FIELD(QDialog *, privacyWindow, setPrivacyWindow)
    TARNWELL_FIELD(QString, lastStatusString, setLastStatusString)
    TARNWELL_FIELD(QString, oldCheckNowTitle, setOldCheckNowTitle)
    TARNWELL_FIELD(std::shared_ptr<ports::Timer>, checkingTimer, setCheckingTimer)
    TARNWELL_FIELD(QString, launchedUpdater, setLaunchedUpdater)

public:
    /// A controller whose view is in its place. The bundle may be left out, and is then looked for
    /// in the folders of plug-ins; or the identifier, which is then the bundle's. Null, after a
    /// log line where it is a surprise, when there is nothing to control or no interface for it.
    static std::unique_ptr<QXVCUpdateViewController_V102>
    initWithSacrificialView(const UpdateViewServices &services, QWidget *view,
                            const std::optional<foundation::Bundle> &forBundle,
                            const QString &withBundleID);
    /// Takes its view along.
    ~QXVCUpdateViewController_V102() override;
    Q_DISABLE_COPY_MOVE(QXVCUpdateViewController_V102)

    std::optional<foundation::Bundle> findZOKWithBundleID(const QString &identifier,
                                                          ports::FolderDomain inDomain,
                                                          const QString &withZOKFolderName) const;

    void awakeFromNib();

    // Settings
    /// Shows what other processes stored. Writes nothing.
    void showStoredSettings();
    void changeAutoUpdate(QObject *sender);
    void changeFrequency(QObject *sender);

    // Checking
    /// Starts a check, or cancels the one that the sender's tag says is running. The timer of a
    /// due check sends it with a null sender.
    void checkNow(QObject *sender);
    void updateCheckComplete();
    void statusChange(const ports::Notification &notification);
    void updateStatusString();
    /// Removes the lock that the status line tells of, and goes on with the check.
    void removeLock(QObject *sender);

    // Windows
    void showUpdateSheet(QObject *sender);
    void sheetDidEnd(QWidget *sheet, int returnCode);
    void privacyPolicy(QObject *sender);
    void windowWillClose();
    void dismissPrivacy(QObject *sender);

    bool eventFilter(QObject *watched, QEvent *event) override;

    /// What interface files and controller do not share; empty when they fit.
    const ui::InterfaceMismatch &interfaceMismatch() const { return *m_interfaceMismatch; }

private:
    /// What is stored of the last check.
    struct StoredResult
    {
        plist::Value status;
        plist::Value date;

        friend bool operator==(const StoredResult &, const StoredResult &) = default;
    };

    explicit QXVCUpdateViewController_V102(const UpdateViewServices &services);

    std::optional<foundation::Bundle> findBundle(const QString &identifier) const;
    bool loadInterface();
    void addOutlets(ui::InterfaceOwner &owner);
    void addActions(ui::InterfaceOwner &owner);
    void observeUpdater();
    void prepareDueCheck(double interval);
    void selectFrequency(double interval);
    void placeView();

    void stopDueCheck();
    void followStoredStatus();
    void launch(const foundation::Bundle &bundle);
    void cancelCheck(QAbstractButton *sender);
    void updaterEnded();
    void endCheck();
    void showProgress();
    void hideProgress();
    void showCancel();
    void showStatus(const plist::Value &date, const QString &status);
    void showStatusOverStored(const plist::Value &date, const QString &status);
    void showFailure(int status);
    void showLock(std::unique_ptr<ports::StandingLock> lock);
    void offerToRemoveLock();
    void withdrawOffer();
    void announceStatus();
    StoredResult storedResult() const;
    void synchronize();
    UpdateContext context() const;
    plist::Value now() const;
    static QString localized(const char *text);

    void beginSheet(QWidget *sheet, QWidget *onWindowOf);
    void runModally(QWidget *window, QWidget *over);
    void loadPrivacyStatement(const QString &path);

    UpdateViewServices m_services;
    std::unique_ptr<ui::InterfaceMismatch> m_interfaceMismatch;
    std::vector<std::unique_ptr<QWidget>> m_windows; ///< of the interface files
    std::unique_ptr<ports::Timer>
        m_endTimer; ///< from a cancel, or the updater's end, to that of checking
    std::unique_ptr<ports::ProcessWatch> m_updaterWatch; ///< of the updater that this view started
    ui::KeptFocus m_focusOfCheckNow;
    plist::Value m_statusBeforeCheck; ///< as it was stored when the updater was started
    /// What was stored when the status line began to show something newer; nothing while it shows
    /// what is stored.
    std::optional<StoredResult> m_storedBelow;
    QPushButton *m_removeLockButton = nullptr;
    std::unique_ptr<ports::StandingLock> m_lock; ///< that the status line tells of; or null
    std::unique_ptr<ports::Timer> m_lockTimer;   ///< until it is old enough to be removed
    std::vector<std::unique_ptr<ports::Observation>> m_observations;
};

} // namespace tarnwell::update
