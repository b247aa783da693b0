#include "update/QXVCUpdateViewController_V102.h"

#include "foundation/Logging.h"
#include "ports/Clock.h"
#include "ports/LockFiles.h"
#include "ports/NotificationCenter.h"
#include "ports/Preferences.h"
#include "ports/Tasks.h"
#include "ports/Timers.h"
#include "prefs/PreferenceKeys.h"
#include "ui/InterfaceFile.h"
#include "update/FormattedDate.h"
#include "update/PluginSearch.h"
#include "update/UpdateModule.h"
#include "update/UpdateSettings.h"
#include "update/ViewPlacement.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTextBrowser>

using namespace Qt::StringLiterals;

namespace tarnwell::update {

namespace keys = prefs::keys;

namespace {

constexpr double delayOfDueCheck = 10.0; // seconds

QString orNull(const QString &text)
{
    return text.isEmpty() ? u"(null)"_s : text;
}

} // namespace

std::unique_ptr<QXVCUpdateViewController_V102>
QXVCUpdateViewController_V102::initWithSacrificialView(
    const UpdateViewServices &services, QWidget *view,
    const std::optional<foundation::Bundle> &forBundle, const QString &withBundleID)
{
    if (!view || (!forBundle && withBundleID.isEmpty()))
        return nullptr;
    std::unique_ptr<QXVCUpdateViewController_V102> self(
        new QXVCUpdateViewController_V102(services));
    services.state.logsDiagnostics =
        services.desktop.preferences.appBooleanValue(keys::logStuff, prefs::updaterDomain);

    auto bundle = forBundle;
    QString identifier = withBundleID;
    if (identifier.isEmpty())
        identifier = moduleIdentifier(*bundle);
    if (!bundle)
        bundle = self->findBundle(identifier);
    if (!bundle || identifier.isEmpty()) {
        TARNWELL_SYSTEM_LOG(u"Cannot match up ZOK Bundle (%1) and ZOK Bundle Identifier (%2)"_s.arg(
            bundle ? bundle->path() : u"(null)"_s, orNull(identifier)));
        return nullptr;
    }
    self->setZokBundle(bundle);
    self->setZokBundleID(identifier);
    self->setSacrificialView(view);
    if (!self->loadInterface()) {
        TARNWELL_SYSTEM_LOG(u"Cannot find nib named \"UpdaterView\"."_s);
        return nullptr;
    }
    self->awakeFromNib();
    return self;
}

QXVCUpdateViewController_V102::QXVCUpdateViewController_V102(const UpdateViewServices &services)
    : m_services(services)
    , m_interfaceMismatch(std::make_unique<ui::InterfaceMismatch>())
{}

QXVCUpdateViewController_V102::~QXVCUpdateViewController_V102()
{
    m_observations.clear();
    // Controls that send their actions to nobody must not be left behind in the pane.
    QWidget *const view = m_updaterView;
    m_updaterView.clear();
    delete view;
}

std::optional<foundation::Bundle>
QXVCUpdateViewController_V102::findBundle(const QString &identifier) const
{
    std::optional<foundation::Bundle> found;
    if (identifier == "com.varnit.zok"_L1) {
        found = foundation::Bundle::open(
            m_services.desktop.fileManager.resolve(u"/Library/Frameworks/Hullforge.framework"_s));
    }
    using ports::FolderDomain;
    const std::pair<FolderDomain, QString> places[] = {
        {FolderDomain::User, u"Hullforges"_s},
        {FolderDomain::Local, u"Hullforges"_s},
        {FolderDomain::User, u"Hullforges (Disabled)"_s},
        {FolderDomain::Local, u"Hullforges (Disabled)"_s},
    };
    for (const auto &[domain, folder] : places) {
        if (!found)
            found = findZOKWithBundleID(identifier, domain, folder);
    }
    return found;
}

std::optional<foundation::Bundle> QXVCUpdateViewController_V102::findZOKWithBundleID(
    const QString &identifier, ports::FolderDomain inDomain, const QString &withZOKFolderName) const
{
    const QString library =
        m_services.desktop.fileManager.folder(inDomain, ports::FolderKind::Library);
    return findPlugin(library + u'/' + withZOKFolderName, identifier,
                      m_services.state.logsDiagnostics);
}

bool QXVCUpdateViewController_V102::loadInterface()
{
    QStringList files;
    for (const QString &name : {u"UpdaterView"_s, u"UpdaterPrivacy"_s}) {
        files.append(m_services.ownBundle.resourcePath(name, u"ui"_s));
        if (files.last().isEmpty())
            return false;
    }
    ui::InterfaceOwner owner;
    addOutlets(owner);
    addActions(owner);
    QString error;
    m_windows = ui::InterfaceFileLoader().load(files, owner, m_interfaceMismatch.get(), &error);
    if (!error.isEmpty())
        TARNWELL_SYSTEM_LOG(error);
    return !m_windows.empty() && m_interfaceMismatch->outletsWithoutWidget.isEmpty();
}

void QXVCUpdateViewController_V102::addOutlets(ui::InterfaceOwner &owner)
{
    // NOLINTBEGIN(bugprone-macro-parentheses): a type cannot stand in any
#define TARNWELL_OUTLET(Widget, name, setter)                                                      \
    owner.addOutlet<Widget>(QStringLiteral(#name), [this](Widget *widget) { setter(widget); })

    // NOLINTEND(bugprone-macro-parentheses)
    TARNWELL_OUTLET(QWidget, updaterView, setUpdaterView);
    TARNWELL_OUTLET(QCheckBox, checkUpdatesButton, setCheckUpdatesButton);
    TARNWELL_OUTLET(QComboBox, frequencyPopup, setFrequencyPopup);
    TARNWELL_OUTLET(QLabel, lastStatus, setLastStatus);
    TARNWELL_OUTLET(QLabel, lastCheckDate, setLastCheckDate);
    TARNWELL_OUTLET(QPushButton, checkNow, setCheckNow);
    TARNWELL_OUTLET(QProgressBar, progessBar, setProgessBar);
    TARNWELL_OUTLET(QTextBrowser, privacyText, setPrivacyText);
    TARNWELL_OUTLET(QDialog, privacyWindow, setPrivacyWindow);

#undef TARNWELL_OUTLET
    owner.addOutlet<QPushButton>(u"removeLockButton"_s,
                                 [this](QPushButton *button) { m_removeLockButton = button; });
}

void QXVCUpdateViewController_V102::addActions(ui::InterfaceOwner &owner)
{
#define TARNWELL_ACTION(name)                                                                      \
    owner.addAction(QStringLiteral(#name ":"), [this](QObject *sender) { name(sender); })

    TARNWELL_ACTION(changeAutoUpdate);
    TARNWELL_ACTION(changeFrequency);
    TARNWELL_ACTION(checkNow);
    TARNWELL_ACTION(removeLock);
    TARNWELL_ACTION(privacyPolicy);
    TARNWELL_ACTION(dismissPrivacy);

#undef TARNWELL_ACTION
}

void QXVCUpdateViewController_V102::awakeFromNib()
{
    // The items of a pop-up have no tags of their own in an interface file.
    const QStringList tags = frequencyPopup()->property("tags").toStringList();
    for (int i = 0; i < frequencyPopup()->count(); ++i)
        frequencyPopup()->setItemData(i, tags.value(i).toLongLong());
    privacyWindow()->installEventFilter(this);

    observeUpdater();
    synchronize();
    setLastStatusString(lastStatus()->text());
    setOldCheckNowTitle(checkNow()->text());
    updateStatusString();
    const UpdateSettings settings =
        settingsWithDefaults(m_services.desktop.preferences, zokBundleID(), *zokBundle());
    checkUpdatesButton()->setChecked(settings.checksAutomatically);
    if (settings.checksAutomatically)
        prepareDueCheck(settings.interval);
    selectFrequency(settings.interval);
    if (settings.wroteDefaults)
        synchronize();
    placeView();
}

void QXVCUpdateViewController_V102::observeUpdater()
{
    ports::NotificationCenter &center = m_services.desktop.distributedNotifications;
    m_observations.push_back(
        center.addObserver(u"com.varnit.updater.statuschange"_s, zokBundleID(),
                           [this](const ports::Notification &sent) { statusChange(sent); }));
    m_observations.push_back(
        center.addObserver(u"com.varnit.updater.UpdateCheckCompleted"_s, zokBundleID(),
                           [this](const ports::Notification &) { updateCheckComplete(); }));
}

void QXVCUpdateViewController_V102::prepareDueCheck(double interval)
{
    const plist::Value last =
        m_services.desktop.preferences.copyAppValue(keys::suLastCheckDate, zokBundleID());
    const double present = m_services.desktop.clock.absoluteTime();
    if (!isCheckDue(last, interval, present))
        return;
    if (m_services.state.logsDiagnostics && last.isDate()) {
        TARNWELL_SYSTEM_LOG(u"Last check plus interval (%1) is earlier than now (%2)"_s.arg(
            plist::description(plist::Date{last.toDate().absoluteTime + interval}),
            plist::description(now())));
    }
    showProgress();
    showStatus(now(), localized("Checking..."));
    showCancel();
    setCheckingTimer(
        m_services.desktop.timers.scheduleOnce(delayOfDueCheck, [this] { checkNow(nullptr); }));
}

void QXVCUpdateViewController_V102::selectFrequency(double interval)
{
    QList<qint64> offered;
    for (int i = 0; i < frequencyPopup()->count(); ++i)
        offered.append(frequencyPopup()->itemData(i).toLongLong());
    frequencyPopup()->setCurrentIndex(indexOfInterval(offered, interval));
}

void QXVCUpdateViewController_V102::placeView()
{
    QWidget *const placeholder = m_sacrificialView;
    if (auto *button = qobject_cast<QAbstractButton *>(placeholder)) {
        connect(button, &QAbstractButton::clicked, this,
                [this, button] { showUpdateSheet(button); });
        return;
    }
    putInPlaceOf(placeholder, m_updaterView);
}

void QXVCUpdateViewController_V102::showStoredSettings()
{
    synchronize();
    const StoredUpdateSettings stored =
        storedSettings(m_services.desktop.preferences, zokBundleID());
    const bool automatically = stored.checksAutomatically.value_or(true);
    checkUpdatesButton()->setChecked(automatically);
    selectFrequency(stored.interval.value_or(defaultCheckInterval(*zokBundle())));
    if (!automatically)
        stopDueCheck();
    followStoredStatus();
}

void QXVCUpdateViewController_V102::changeAutoUpdate(QObject *sender)
{
    const auto *checkbox = qobject_cast<QAbstractButton *>(sender);
    if (!checkbox)
        return;
    m_services.desktop.preferences.setAppValue(keys::suCheckForUpdates, checkbox->isChecked(),
                                               zokBundleID());
    synchronize();
    if (!checkbox->isChecked())
        stopDueCheck();
}

void QXVCUpdateViewController_V102::changeFrequency(QObject *sender)
{
    const auto *popup = qobject_cast<QComboBox *>(sender);
    const qint64 seconds = popup ? popup->currentData().toLongLong() : 0;
    if (seconds < 2)
        return;
    m_services.desktop.preferences.setAppValue(keys::suCheckInterval, seconds, zokBundleID());
    synchronize();
}

void QXVCUpdateViewController_V102::synchronize()
{
    m_services.desktop.preferences.appSynchronize(zokBundleID());
}

UpdateContext QXVCUpdateViewController_V102::context() const
{
    const ports::Desktop &desktop = m_services.desktop;
    return {desktop.preferences, desktop.applications, desktop.fileManager, desktop.clock,
            desktop.systemFacts, desktop.session,      desktop.lockFiles,   m_services.state};
}

plist::Value QXVCUpdateViewController_V102::now() const
{
    return plist::Date{m_services.desktop.clock.absoluteTime()};
}

QString QXVCUpdateViewController_V102::localized(const char *text)
{
    // The pane's own texts: the view is a part of it to whoever translates them.
    return QCoreApplication::translate("TarnwellPref", text);
}

} // namespace tarnwell::update
