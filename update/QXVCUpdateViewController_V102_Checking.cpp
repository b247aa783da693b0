// The check itself: starting and cancelling it, and what the updater reports of it.

#include "update/QXVCUpdateViewController_V102.h"

#include "foundation/ForeignText.h"
#include "foundation/Logging.h"
#include "foundation/PlainToolTip.h"
#include "foundation/StatusCodes.h"
#include "ports/LockFiles.h"
#include "ports/NotificationCenter.h"
#include "ports/Preferences.h"
#include "ports/Tasks.h"
#include "ports/Timers.h"
#include "prefs/PreferenceKeys.h"
#include "ui/ForeignLabel.h"
#include "update/FormattedDate.h"
#include "update/StatusText.h"
#include "update/UpdaterLaunch.h"

#include <QAccessible>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace tarnwell::update {

namespace keys = prefs::keys;

namespace {

constexpr qsizetype longestStatus = 300;
constexpr double patience = 2.0; // seconds that an updater's last report may take

enum ButtonTag : int { Idle = 0, Checking = 1 };

int tagOf(const QObject *control)
{
    return control->property("tag").toInt();
}

void setTag(QObject *control, ButtonTag tag)
{
    control->setProperty("tag", int(tag));
}

/// The button is named by what it does now, for a screen reader, too.
void setTitle(QAbstractButton *button, const QString &title)
{
    button->setText(title);
    button->setAccessibleName(QString(title).remove(u'&'));
}

} // namespace

void QXVCUpdateViewController_V102::checkNow(QObject *sender)
{
    showProgress();
    auto *button = qobject_cast<QAbstractButton *>(sender);
    if (button && tagOf(button) != Idle) {
        cancelCheck(button);
        return;
    }
    // Another process may have removed the plug-in meanwhile.
    const auto bundle = foundation::Bundle::open(zokBundle()->path());
    if (!bundle)
        return;
    m_focusOfCheckNow.disable(checkNow());
    launch(*bundle);
    m_focusOfCheckNow.enable(checkNow());
}

void QXVCUpdateViewController_V102::launch(const foundation::Bundle &bundle)
{
    synchronize();
    const plist::Value statusBefore = storedResult().status;
    UpdaterLaunch launched = launchUpdater(context(), bundle, zokBundleID());
    if (!launched.updater.isEmpty()) {
        setLaunchedUpdater(launched.updater);
        m_statusBeforeCheck = statusBefore;
        m_updaterWatch.reset();
        if (launched.processId != 0)
            m_updaterWatch =
                m_services.desktop.tasks.watch(launched.processId, [this] { updaterEnded(); });
    }
    if (launched.status != foundation::noErr) {
        showFailure(launched.status);
        return;
    }
    showCancel();
    m_services.desktop.preferences.setAppValue(keys::suLastCheckDate, now(), zokBundleID());
    synchronize();
    if (launched.lock)
        showLock(std::move(launched.lock));
}

void QXVCUpdateViewController_V102::cancelCheck(QAbstractButton *sender)
{
    if (checkingTimer() && checkingTimer()->isValid()) {
        checkingTimer()->invalidate();
        setCheckingTimer(nullptr);
    }
    withdrawOffer();
    m_focusOfCheckNow.disable(sender);
    m_services.desktop.distributedNotifications.post(
        {u"com.varnit.updater.CancelUpdate"_s, zokBundleID(), {}});
    m_endTimer =
        m_services.desktop.timers.scheduleOnce(patience, [this] { updateCheckComplete(); });
}

void QXVCUpdateViewController_V102::updaterEnded()
{
    m_updaterWatch.reset();
    // What it said last may still be on its way over the bus.
    if (!m_endTimer || !m_endTimer->isValid())
        m_endTimer = m_services.desktop.timers.scheduleOnce(patience, [this] {
            endCheck();
            if (storedResult().status == m_statusBeforeCheck)
                showStatusOverStored(now(), localized("The updater ended without a result."));
            announceStatus();
        });
}

void QXVCUpdateViewController_V102::stopDueCheck()
{
    if (checkingTimer() && checkingTimer()->isValid())
        updateCheckComplete();
}

void QXVCUpdateViewController_V102::updateCheckComplete()
{
    endCheck();
    announceStatus();
}

void QXVCUpdateViewController_V102::endCheck()
{
    // The updater may have answered a cancel, or somebody else's check: no timer of this one may
    // end or repeat the next.
    for (ports::Timer *timer : {m_endTimer.get(), checkingTimer().get()}) {
        if (timer)
            timer->invalidate();
    }
    m_updaterWatch.reset();
    if (m_services.state.logsDiagnostics)
        TARNWELL_SYSTEM_LOG(u"Completed"_s);
    hideProgress();
    setTitle(checkNow(), oldCheckNowTitle());
    setTag(checkNow(), Idle);
    m_focusOfCheckNow.enable(checkNow());
    synchronize();
    updateStatusString();
}

void QXVCUpdateViewController_V102::statusChange(const ports::Notification &notification)
{
    if (m_services.state.logsDiagnostics)
        TARNWELL_SYSTEM_LOG(plist::description(notification.userInfo));
    const plist::Dictionary &info = notification.userInfo.toDictionary();
    const plist::Value date = info.value(u"Date"_s);
    const plist::Value status = info.value(u"Status"_s);
    if (!date.isDate() || !status.isString())
        return;
    if (progessBar()->isHidden())
        synchronize(); // so that nothing older is taken for new later
    showStatusOverStored(date, status.toString());
    lastStatus()->repaint();
}

void QXVCUpdateViewController_V102::updateStatusString()
{
    m_storedBelow.reset();
    const StoredResult stored = storedResult();
    showStatus(stored.date.isDate() ? stored.date : now(),
               stored.status.isString() ? stored.status.toString()
                                        : localized("Never checked for updates."));
}

void QXVCUpdateViewController_V102::showStatusOverStored(const plist::Value &date,
                                                         const QString &status)
{
    showStatus(date, status);
    m_storedBelow = storedResult();
}

void QXVCUpdateViewController_V102::showFailure(int status)
{
    showStatus(now(), localized("Failed. Error %d. %s")
                          .replace("%d"_L1, QString::number(status))
                          .replace("%s"_L1, QString::fromLatin1(
                                                foundation::GetMacOSStatusCommentString(status))));
    announceStatus();
}

void QXVCUpdateViewController_V102::showStatus(const plist::Value &date, const QString &status)
{
    withdrawOffer();
    const auto text = [&](DateStyle style) {
        return formatted(lastStatusString(),
                         {QXCopyFormattedDate(date, style, style).value_or(QString()),
                          foundation::shownText(shortStatus(status), longestStatus)});
    };
    ui::showInLabel(lastStatus(), text(ShortDateStyle));
    lastStatus()->setToolTip(foundation::plainToolTip(text(FullDateStyle)));
}

/// A label is never focused, so no screen reader would say by itself how a check ended.
void QXVCUpdateViewController_V102::announceStatus()
{
    QAccessibleEvent alert(lastStatus(), QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

QXVCUpdateViewController_V102::StoredResult QXVCUpdateViewController_V102::storedResult() const
{
    const ports::Preferences &preferences = m_services.desktop.preferences;
    return {preferences.copyAppValue(keys::suLastCheckStatus, zokBundleID()),
            preferences.copyAppValue(keys::suLastCheckDate, zokBundleID())};
}

void QXVCUpdateViewController_V102::followStoredStatus()
{
    // During a check the updater may store how far it is, which is no end of it.
    if (progessBar()->isHidden() && m_storedBelow != storedResult())
        updateStatusString();
}

void QXVCUpdateViewController_V102::showProgress()
{
    if (!progessBar()->isHidden())
        return;
    progessBar()->setRange(0, 0); // which is animated
    progessBar()->show();
}

void QXVCUpdateViewController_V102::hideProgress()
{
    progessBar()->setRange(0, 1);
    progessBar()->hide();
}

void QXVCUpdateViewController_V102::showCancel()
{
    setTag(checkNow(), Checking);
    setTitle(checkNow(), localized("Cancel"));
}

} // namespace tarnwell::update
