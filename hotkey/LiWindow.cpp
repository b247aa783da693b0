#include "hotkey/LiWindow.h"

#include "hotkey/KeyEvents.h"
#include "hotkey/LiTextField.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLayout>
#include <QWindow>

namespace tarnwell::hotkey {

LiWindow::LiWindow(QWidget *parent)
    : QDialog(parent)
{}

bool LiWindow::performKeyEquivalent(const KeyEvent &event)
{
    if (!m_prefPane)
        return false;
    const Capture captured = capture(m_prefPane->keyboardLayouts(), event);
    if (captured.verdict != Verdict::Accepted) {
        Q_EMIT keyRefused(captured.verdict);
        return false;
    }
    if (LiTextField *field = m_prefPane->hotKeyField())
        field->setText(captured.text);
    setHotKeyEvent(event);
    Q_EMIT keyAccepted();
    return true;
}

void LiWindow::setPrefpane(const std::shared_ptr<HotKeyPane> &prefPane)
{
    m_prefPane = prefPane;
}

void LiWindow::setPrefPane(HotKeyPane *prefPane)
{
    m_prefPane = std::shared_ptr<HotKeyPane>(std::shared_ptr<HotKeyPane>(), prefPane);
}

void LiWindow::showEvent(QShowEvent *event)
{
    // The controls are known only now that the sheet is complete.
    const auto controls = findChildren<QWidget *>();
    for (QWidget *control : controls)
        control->installEventFilter(this);
    growToContents();
    QDialog::showEvent(event);
}

bool LiWindow::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::WindowActivate:
        inhibitShortcuts();
        break;
    case QEvent::WindowDeactivate:
    case QEvent::Hide:
        m_inhibition.reset();
        break;
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
        if (takesKey(this, static_cast<QKeyEvent &>(*event)))
            return true;
        break;
    default:
        break;
    }
    const bool isHandled = QDialog::event(event);
    if (event->type() == QEvent::LayoutRequest)
        growToContents();
    return isHandled;
}

/// Texts that wrap get all their lines, in each language and also when a warning joins them: a
/// window's layout by itself sees to their width alone.
void LiWindow::growToContents()
{
    const int needed =
        layout() && layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width()) : 0;
    if (needed > height())
        resize(width(), needed);
}

bool LiWindow::eventFilter(QObject *watched, QEvent *event)
{
    const bool isKey =
        event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (isKey && takesKey(watched, static_cast<QKeyEvent &>(*event)))
        return true;
    // The display system sends it ahead of the Menu key, which can be the hot key.
    if (event->type() == QEvent::ContextMenu &&
        static_cast<QContextMenuEvent &>(*event).reason() == QContextMenuEvent::Keyboard)
        return true;
    return QDialog::eventFilter(watched, event);
}

bool LiWindow::takesKey(QObject *focus, QKeyEvent &press)
{
    if (!m_prefPane || isModifierKey(press))
        return false;
    if (press.isAutoRepeat()) {
        // A key that is held down was taken once. Whoever lets go of the modifiers first shall not
        // see Control+Return end the sheet.
        press.accept();
        return true;
    }
    const auto event = keyEventFromQt(press, m_prefPane->keyboardLayouts());
    if (event && worksTheSheet(press.key(), event->modifierFlags))
        return false;
    if (press.type() == QEvent::ShortcutOverride) {
        // Neither a mnemonic nor a shortcut may take the key first.
        press.accept();
        return true;
    }
    const bool isInField = focus == m_prefPane->hotKeyField();
    if (!event) {
        if (isInField)
            Q_EMIT keyRefused(Verdict::NotShowable);
        return false;
    }
    // The space bar on a button presses the button.
    const bool isTaken =
        isInField || capture(m_prefPane->keyboardLayouts(), *event).verdict == Verdict::Accepted;
    if (!isTaken)
        return false;
    performKeyEquivalent(*event);
    press.accept();
    return true;
}

void LiWindow::inhibitShortcuts()
{
    if (!m_inhibition && m_prefPane && windowHandle())
        m_inhibition = m_prefPane->windowServer().inhibitShortcuts(*windowHandle());
}

} // namespace tarnwell::hotkey
