// What becomes of changes that could not be stored at once: the line above the pages, trying again,
// and the question before they are lost.

#include "pane/TarnwellPref.h"

#include "foundation/ForeignText.h"
#include "foundation/Logging.h"
#include "ports/Preferences.h"
#include "ports/Sheets.h"
#include "prefs/PreferenceKeys.h"
#include "prefs/StoreRetry.h"
#include "ui/Announcement.h"
#include "ui/ForeignLabel.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace tarnwell::pane {

namespace {

/// Who looks for a file needs its whole path, within reason.
constexpr qsizetype longestShownPath = 300;

constexpr int tryAgain = 1;
constexpr int closeAnyway = -1;

} // namespace

void TarnwellPref::followStoring()
{
    m_storeRetry = std::make_unique<prefs::StoreRetry>(m_desktop.preferences, m_desktop.timers,
                                                       prefs::pluginDomain,
                                                       [this] { refreshWithoutWriting(); });
    m_desktop.preferences.setStoreHandler([self = QPointer(this)](
                                              const QString &domain,
                                              const ports::Preferences::StoreState &state) {
        if (!self || domain != prefs::pluginDomain)
            return;
        self->m_storeRetry->follow(state);
        self->showStoreState(
            state, localized("Your changes are kept in this window but could not be stored: %1"));
    });
}

void TarnwellPref::showStoreState(const ports::Preferences::StoreState &state,
                                  const QString &problemFormat)
{
    QStringList lines;
    if (!state.problem.isEmpty())
        lines += problemFormat.arg(foundation::shownText(state.problem, longestShownPath));
    if (state.isOvertaken)
        lines += localized("A change of yours could not be stored in time: another program has "
                           "changed the same setting. This window shows what is stored.");
    if (!state.setAside.isEmpty())
        lines += localized("The stored settings were damaged. They are kept as \"%1\", and new "
                           "ones were begun.")
                     .arg(foundation::shownText(state.setAside, longestShownPath));
    storeAgainButton()->setVisible(!state.problem.isEmpty());
    ui::showInLabel(storeProblem(), lines.join(u'\n'));
    storeProblemBox()->setVisible(!lines.isEmpty());
    if (!lines.isEmpty())
        ui::announce(storeProblem());
}

void TarnwellPref::doStoreAgain(QObject *)
{
    if (!m_storeRetry->tryNow())
        showStoreState(m_storeRetry->state(),
                       localized("Your changes are kept in this window but still could not be "
                                 "stored: %1"));
}

void TarnwellPref::askToClose(std::function<void(bool)> reply)
{
    if (!m_storeRetry) {
        reply(true);
        return;
    }
    m_storeRetry->settle([self = QPointer(this), reply = std::move(reply)](bool isStored) {
        if (isStored)
            reply(true);
        else
            self->askToDropChanges(reply);
    });
}

void TarnwellPref::askToDropChanges(const std::function<void(bool)> &reply)
{
    ports::Alert alert;
    alert.style = ports::AlertStyle::Critical;
    alert.title = localized("Your Changes Are Not Stored");
    alert.message =
        localized("Changes that you made in this window could not be stored: %1\n"
                  "If you close it without storing them, they are lost.")
            .arg(foundation::shownText(m_storeRetry->state().problem, longestShownPath));
    alert.defaultButton = localized("Try Again");
    alert.alternateButton = localized("Keep Open");
    alert.otherButton = localized("Close Without Storing");
    m_desktop.sheets.beginAlert(alert, m_mainView, [self = QPointer(this), reply](int returnCode) {
        if (self && returnCode == tryAgain)
            self->askToClose(reply);
        else
            reply(returnCode == closeAnyway);
    });
}

void TarnwellPref::willEnd()
{
    if (!m_storeRetry || m_storeRetry->tryNow())
        return;
    const ports::Preferences::StoreState &state = m_storeRetry->state();
    TARNWELL_SYSTEM_LOG(u"Changes in %1 were not stored before the end: %2"_s.arg(
        prefs::pluginDomain,
        state.problem.isEmpty() ? u"Another process is writing the file."_s : state.problem));
}

} // namespace tarnwell::pane
