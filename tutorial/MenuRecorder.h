#pragma once

#include "tutorial/Keys.h"

#include <QObject>

class QAction;
class QMenu;

namespace tarnwell::tutorial {

/// Listens to the keys while menus are open. Those that can be a shortcut are taken for the item
/// that the user points at; the others still move through the menus.
class MenuRecorder : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    void listenTo(QMenu *menu);

Q_SIGNALS:
    /// Keys were pressed on an item.
    void pressed(QAction *action, const tarnwell::hotkey::KeyPress &press);
    /// Backspace was pressed on an item.
    void cleared(QAction *action);
    /// Keys were pressed while no item was pointed at.
    void pressedOnNothing();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool takeKey(const QMenu *menu, const KeyPress &press, bool isRepeated);
};

} // namespace tarnwell::tutorial
