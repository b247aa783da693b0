#include "tutorial/MenuRecorder.h"

#include "foundation/KeyCodes.h"

#include <QKeyEvent>
#include <QMenu>

namespace tarnwell::tutorial {

namespace {

/// The item that the user points at. When the pointer has just left an open submenu, that one still
/// has the keys, and the item is in the menu that it belongs to.
QAction *pointedItem(const QMenu *menu)
{
    while (menu) {
        QAction *action = menu->activeAction();
        if (action && action->isSeparator())
            return nullptr;
        if (action)
            return action->menu() ? nullptr : action;
        menu = qobject_cast<const QMenu *>(menu->menuAction()->associatedObjects().value(0));
    }
    return nullptr;
}

} // namespace

void MenuRecorder::listenTo(QMenu *menu)
{
    menu->installEventFilter(this);
}

bool MenuRecorder::eventFilter(QObject *watched, QEvent *event)
{
    const auto *menu = qobject_cast<const QMenu *>(watched);
    if (!menu || !menu->isVisible())
        return false;
    if (event->type() == QEvent::ShortcutOverride) {
        // Otherwise the item that has the shortcut already would be triggered.
        if (!canBeShortcut(KeyPress::fromEvent(*static_cast<QKeyEvent *>(event))))
            return false;
        event->accept();
        return true;
    }
    if (event->type() == QEvent::KeyPress) {
        const auto &keyEvent = *static_cast<QKeyEvent *>(event);
        return takeKey(menu, KeyPress::fromEvent(keyEvent), keyEvent.isAutoRepeat());
    }
    return false;
}

bool MenuRecorder::takeKey(const QMenu *menu, const KeyPress &press, bool isRepeated)
{
    // Alt alone would close the menu, before the key that it is held for.
    if (foundation::isModifierKey(press.key))
        return true;
    const bool clears = press.modifiers == Qt::NoModifier &&
                        (press.key == Qt::Key_Backspace || press.key == Qt::Key_Delete);
    if (!clears && !canBeShortcut(press))
        return false;
    if (isRepeated)
        return true;
    QAction *action = pointedItem(menu);
    if (!action)
        Q_EMIT pressedOnNothing();
    else if (clears)
        Q_EMIT cleared(action);
    else
        Q_EMIT pressed(action, press);
    return true;
}

} // namespace tarnwell::tutorial
