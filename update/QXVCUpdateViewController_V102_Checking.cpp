// The check itself: starting and cancelling it, and what the updater reports of it.

#include "update/QXVCUpdateViewController_V102.h"

#include "foundation/Logging.h"
#include "foundation/StatusCodes.h"
#include "ports/NotificationCenter.h"
#include "ports/Preferences.h"
#include "ports/Timers.h"
#include "prefs/PreferenceKeys.h"
#include "update/FormattedDate.h"
#include "update/StatusText.h"
#include "update/UpdaterLaunch.h"

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

/// A tool tip takes what looks like markup for it.
QString plainToolTip(const QString &text)
{
    return Qt::mightBeRichText(text) ? text.toHtmlEscaped() : text;
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
    checkNow()->setEnabled(false);
    const int status = QXLaunchUpdater(context(), bundle, zokBundleID(), &m_launchedUpdater);
    if (status != foundation::noErr) {
        const QString comment =
            QString::fromLatin1(foundation::GetMacOSStatusCommentString(status));
        showStatus(now(), localized("Failed. Error %d. %s")
                              .replace("%d"_L1, QString::number(status))
                              .replace("%s"_L1, comment));
    } else {
        if (button)
            showCancel(button);
        m_services.desktop.preferences.setAppValue(keys::suLastCheckDate, now(), zokBundleID());
        synchronize();
    }
    checkNow()->setEnabled(true);
}

void QXVCUpdateViewController_V102::cancelCheck(QAbstractButton *sender)
{
    if (checkingTimer() && checkingTimer()->isValid()) {
        checkingTimer()->invalidate();
        setCheckingTimer(nullptr);
    }
    sender->setEnabled(false);
    m_services.desktop.distributedNotifications.post(
        {u"com.varnit.updater.CancelUpdate"_s, zokBundleID(), {}});
    m_cancelTimer = m_services.desktop.timers.scheduleOnce(patienceAfterCancel,
                                                           [this] { updateCheckComplete(); });
}

void QXVCUpdateViewController_V102::updateCheckComplete()
{
    // The updater may have answered a cancel: the next check must not be ended by the last one's
    // timer.
    if (m_cancelTimer)
        m_cancelTimer->invalidate();
    if (m_services.state.logsDiagnostics)
        TARNWELL_SYSTEM_LOG(u"Completed"_s);
    progessBar()->setRange(0, 1);
    progessBar()->hide();
    setTitle(checkNow(), oldCheckNowTitle());
    setTag(checkNow(), Idle);
    checkNow()->setEnabled(true);
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
    showStatus(date, status.toString());
    lastStatus()->repaint();
}

void QXVCUpdateViewController_V102::updateStatusString()
{
    const ports::Preferences &preferences = m_services.desktop.preferences;
    const plist::Value status = preferences.copyAppValue(keys::suLastCheckStatus, zokBundleID());
    const plist::Value date = preferences.copyAppValue(keys::suLastCheckDate, zokBundleID());
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
    lastStatus()->setToolTip(plainToolTip(text(FullDateStyle)));
}

void QXVCUpdateViewController_V102::showProgress()
{
    if (!progessBar()->isHidden())
        return;
    progessBar()->setRange(0, 0); // which is animated
    progessBar()->show();
}

void QXVCUpdateViewController_V102::showCancel(QAbstractButton *button)
{
    setTag(button, Checking);
    setTitle(button, localized("Cancel"));
}

} // namespace tarnwell::update
