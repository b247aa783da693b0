// The check itself: starting and cancelling it, and what the updater reports of it.

#include "update/QXVCUpdateViewController_V102.h"

#include "foundation/Logging.h"
#include "foundation/PlainToolTip.h"
#include "foundation/StatusCodes.h"
#include "ports/NotificationCenter.h"
#include "ports/Preferences.h"
#include "ports/Timers.h"
#include "prefs/PreferenceKeys.h"
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

constexpr double patienceAfterCancel = 2.0; // seconds

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
    if (!bundle) {
        if (tagOf(checkNow()) == Idle)
            hideProgress();
        return;
    }
    m_focusOfCheckNow.disable(checkNow());
    const int status = QXLaunchUpdater(context(), bundle, zokBundleID(), &m_launchedUpdater);
    if (status != foundation::noErr) {
        const QString comment =
            QString::fromLatin1(foundation::GetMacOSStatusCommentString(status));
        showStatus(now(), localized("Failed. Error %d. %s")
                              .replace("%d"_L1, QString::number(status))
                              .replace("%s"_L1, comment));
        announceStatus();
    } else {
        showCancel();
        m_services.desktop.preferences.setAppValue(keys::suLastCheckDate, now(), zokBundleID());
        synchronize();
    }
    m_focusOfCheckNow.enable(checkNow());
}

void QXVCUpdateViewController_V102::cancelCheck(QAbstractButton *sender)
{
    if (checkingTimer() && checkingTimer()->isValid()) {
        checkingTimer()->invalidate();
        setCheckingTimer(nullptr);
    }
    m_focusOfCheckNow.disable(sender);
    m_services.desktop.distributedNotifications.post(
        {u"com.varnit.updater.CancelUpdate"_s, zokBundleID(), {}});
    m_cancelTimer = m_services.desktop.timers.scheduleOnce(patienceAfterCancel,
                                                           [this] { updateCheckComplete(); });
}

void QXVCUpdateViewController_V102::stopDueCheck()
{
    if (checkingTimer() && checkingTimer()->isValid())
        updateCheckComplete();
}

void QXVCUpdateViewController_V102::updateCheckComplete()
{
    // The updater may have answered a cancel, or somebody else's check: no timer of this one may
    // end or repeat the next.
    for (ports::Timer *timer : {m_cancelTimer.get(), checkingTimer().get()}) {
        if (timer)
            timer->invalidate();
    }
    if (m_services.state.logsDiagnostics)
        TARNWELL_SYSTEM_LOG(u"Completed"_s);
    hideProgress();
    setTitle(checkNow(), oldCheckNowTitle());
    setTag(checkNow(), Idle);
    m_focusOfCheckNow.enable(checkNow());
    synchronize();
    updateStatusString();
    announceStatus();
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
    showStatus(date, status.toString());
    lastStatus()->repaint();
}

void QXVCUpdateViewController_V102::updateStatusString()
{
    const plist::Value status = storedStatus();
    const plist::Value date =
        m_services.desktop.preferences.copyAppValue(keys::suLastCheckDate, zokBundleID());
    showStatus(date.isDate() ? date : now(),
               status.isString() ? status.toString() : localized("Never checked for updates."));
}

void QXVCUpdateViewController_V102::showStatus(const plist::Value &date, const QString &status)
{
    const auto text = [&](DateStyle style) {
        return formatted(
            lastStatusString(),
            {QXCopyFormattedDate(date, style, style).value_or(QString()), shortStatus(status)});
    };
    lastStatus()->setText(text(ShortDateStyle));
    lastStatus()->setToolTip(foundation::plainToolTip(text(FullDateStyle)));
}

/// A label is never focused, so no screen reader would say by itself how a check ended.
void QXVCUpdateViewController_V102::announceStatus()
{
    QAccessibleEvent alert(lastStatus(), QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

plist::Value QXVCUpdateViewController_V102::storedStatus() const
{
    return m_services.desktop.preferences.copyAppValue(keys::suLastCheckStatus, zokBundleID());
}

void QXVCUpdateViewController_V102::followStoredStatus()
{
    // A new result is the end of a check, even if the notification of it was lost.
    if (progessBar()->isHidden())
        updateStatusString();
    else if (storedStatus() != m_statusBeforeCheck)
        updateCheckComplete();
}

void QXVCUpdateViewController_V102::showProgress()
{
    if (!progessBar()->isHidden())
        return;
    m_statusBeforeCheck = storedStatus();
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
