// Finding a shortcut in the table: by words, or by pressing its keys.

#include "pane/TarnwellPref.h"

#include "hotkey/KeyEvents.h"
#include "ports/Timers.h"
#include "shortcuts/KeyTranslation.h"
#include "shortcuts/ShortcutTableModel.h"
#include "shortcuts/SpokenKeys.h"
#include "ui/Announcement.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

namespace tarnwell::pane {

namespace {

bool isPlain(const QKeyEvent &event)
{
    return (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == Qt::NoModifier;
}

/// Keys by which the user leaves the field must go on doing so.
bool leavesTheField(const QKeyEvent &event)
{
    return isPlain(event) && (event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab ||
                              event.key() == Qt::Key_Escape);
}

} // namespace

void TarnwellPref::setUpShortcutFilter()
{
    connect(scFilterField(), &QLineEdit::textChanged, this, &TarnwellPref::filterShortcutsByWords);
    // The button's icon is searched for in all themes, so it comes with the first text to clear.
    connect(
        scFilterField(), &QLineEdit::textChanged, scFilterField(),
        [field = scFilterField()] { field->setClearButtonEnabled(true); },
        Qt::SingleShotConnection);
    connect(scFilterKeysButton(), &QPushButton::toggled, this,
            &TarnwellPref::filterShortcutsByKeys);
    // What the keys in the field are called is true of them alone.
    connect(scFilterField(), &QLineEdit::textChanged, scFilterField(),
            [field = scFilterField(),
             description = scFilterField()->accessibleDescription()](const QString &text) {
                if (text.isEmpty())
                    field->setAccessibleDescription(description);
            });
    connect(m_scModel, &QAbstractItemModel::modelReset, this, &TarnwellPref::showNoMatch);
    scFilterField()->installEventFilter(this);
}

void TarnwellPref::prepareFilter()
{
    // A slice a turn of the event loop, so that neither the focus nor the first letter has to wait
    // for a hundred thousand rows.
    constexpr qsizetype rowsOfASlice = 4000;
    m_filterTimer.reset();
    if (m_scModel->prepareSearch(rowsOfASlice))
        m_filterTimer = m_desktop.timers.scheduleOnce(0.0, [this] { prepareFilter(); });
}

void TarnwellPref::filterShortcutsByWords(const QString &text)
{
    // While keys are recorded the field shows them and searches for no words; only clearing it
    // counts.
    if (scFilterKeysButton()->isChecked() && !text.isEmpty())
        return;
    changeShownShortcuts([&] { m_scModel->setFilter(shortcuts::ShortcutFilter::byWords(text)); });
}

void TarnwellPref::filterShortcutsByKeys(bool on)
{
    static constexpr const char *wordsHint = QT_TR_NOOP("Filter by item, menu or shortcut");
    scFilterField()->clear();
    scFilterField()->setReadOnly(on);
    scFilterField()->setPlaceholderText(on ? localized("Press the keys of a shortcut")
                                           : localized(wordsHint));
    changeShownShortcuts([this] { m_scModel->setFilter({}); });
    scFilterField()->setFocus();
}

bool TarnwellPref::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_effectsPage && event->type() == QEvent::Show)
        effectsWillShow();
    if (watched == m_effectsPage && event->type() == QEvent::Hide)
        effectsDidHide();
    if (watched == scFilterField() && event->type() == QEvent::FocusIn)
        prepareFilter();
    const bool isKey =
        event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (watched != scFilterField() || !isKey)
        return PreferencePane::eventFilter(watched, event);
    const auto &press = static_cast<const QKeyEvent &>(*event);
    if (!scFilterKeysButton()->isChecked()) {
        if (press.key() != Qt::Key_Escape || scFilterField()->text().isEmpty())
            return PreferencePane::eventFilter(watched, event);
        // Escape first empties the field, and only then closes what is around it.
        event->accept();
        if (event->type() == QEvent::KeyPress)
            scFilterField()->clear();
        return true;
    }
    if (leavesTheField(press)) {
        if (press.key() == Qt::Key_Escape)
            scFilterKeysButton()->setChecked(false);
        return PreferencePane::eventFilter(watched, event);
    }
    // No shortcut of the host is executed by keys that are meant for the field.
    event->accept();
    if (event->type() == QEvent::KeyPress)
        showShortcutsWith(press);
    return true;
}

void TarnwellPref::showShortcutsWith(const QKeyEvent &press)
{
    const auto keys = hotkey::keyEventFromQt(press, m_desktop.keyboardLayouts);
    if (!keys)
        return;
    const auto shortcut = shortcuts::KeyCodeDisplayString(
        m_desktop.keyboardLayouts, keys->keyCode, hotkey::menuModifiers(keys->modifierFlags));
    if (!shortcut)
        return;
    scFilterField()->setText(*shortcut);
    scFilterField()->setAccessibleDescription(shortcuts::spokenShortcut(*shortcut));
    changeShownShortcuts(
        [&] { m_scModel->setFilter(shortcuts::ShortcutFilter::byShortcut(*shortcut)); });
}

void TarnwellPref::showNoMatch()
{
    const QString wanted = scFilterField()->text();
    const bool isNews = !scNoMatch()->isVisible() || scFilterKeysButton()->isChecked();
    scNoMatch()->setVisible(m_scModel->rowCount() == 0 && !wanted.isEmpty());
    if (scNoMatch()->isHidden())
        return;
    const QString format = localized("No shortcut matches “%@”.");
    // However much was pasted, the window stays as wide as it is.
    scNoMatch()->setText(
        withTexts(format, {scNoMatch()->fontMetrics().elidedText(
                              wanted, Qt::ElideRight, scTable()->viewport()->width() / 2)}));
    scNoMatch()->setAccessibleName(withTexts(format, {shortcuts::spokenShortcut(wanted)}));
    // Not again with every letter that is typed after the first in vain.
    if (isNews)
        ui::announce(scNoMatch());
}

} // namespace tarnwell::pane
