// A lock that keeps the updater from starting, and what can be done about it.

#include "update/QXVCUpdateViewController_V102.h"

#include "foundation/Logging.h"
#include "foundation/StatusCodes.h"
#include "ports/Clock.h"
#include "ports/LockFiles.h"
#include "ports/Tasks.h"
#include "ports/Timers.h"
#include "update/FormattedDate.h"
#include "update/StatusText.h"

#include <QProgressBar>
#include <QPushButton>

namespace tarnwell::update {

namespace {

/// Seconds after which a lock is nobody's any more: starting the updater takes less than one.
constexpr double ageOfLeftLock = 600.0;

} // namespace

void QXVCUpdateViewController_V102::showLock(std::unique_ptr<ports::StandingLock> lock)
{
    const auto since =
        QXCopyFormattedDate(plist::Date{lock->madeAt()}, ShortDateStyle, ShortDateStyle);
    showStatus(now(), formatted(localized("Since %@, a lock of the user %@ has kept the updater "
                                          "from starting."),
                                {since.value_or(QString()), lock->owner()}));
    m_lock = std::move(lock);
    offerToRemoveLock();
    announceStatus();
}

void QXVCUpdateViewController_V102::offerToRemoveLock()
{
    if (!m_lock->isOurs())
        return;
    const double age = m_services.desktop.clock.absoluteTime() - m_lock->madeAt();
    if (age >= ageOfLeftLock) {
        m_removeLockButton->show();
    } else {
        m_lockTimer = m_services.desktop.timers.scheduleOnce(ageOfLeftLock - age,
                                                             [this] { offerToRemoveLock(); });
    }
}

void QXVCUpdateViewController_V102::withdrawOffer()
{
    m_lockTimer.reset();
    m_lock.reset();
    const bool hadFocus = m_removeLockButton->window()->focusWidget() == m_removeLockButton;
    m_removeLockButton->hide();
    if (hadFocus)
        checkNow()->setFocus();
}

void QXVCUpdateViewController_V102::removeLock(QObject *)
{
    if (!m_lock)
        return;
    const int status = m_lock->remove();
    // One that is gone, or has made room for another's, is not in the way any more.
    if (status != foundation::noErr && status != foundation::fnfErr) {
        showFailure(status);
        return;
    }
    TARNWELL_SYSTEM_LOG(QStringLiteral("Removed the updater lock of %1.").arg(zokBundleID()));
    showStatus(now(), localized("Checking..."));
    checkNow(nullptr);
}

} // namespace tarnwell::update
