#pragma once

#include "tutorial/Keys.h"
#include "tutorial/Menus.h"

#include <QHash>
#include <QMainWindow>

#include <functional>

class QAction;
class QLabel;
class QMenu;

namespace tarnwell::tutorial {

class MenuRecorder;
class Page;
class ShortcutStore;

/// The window of the tutorial: steps to follow, a page, and menus whose items take new shortcuts.
class TutorialWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// Told of everything that happens, as fields: first the event, then what it happened to.
    using EventLog = std::function<void(const QStringList &fields)>;

    /// The store and the layouts outlive the window.
    TutorialWindow(ShortcutStore &store, const ports::KeyboardLayouts &layouts, EventLog log);

    /// Takes up what is stored, whoever stored it.
    void refresh();

    /// Comes to the front, and begins afresh if somebody took the old shortcuts away, as a new
    /// start would do.
    void startAgain();

    /// Takes up another keyboard layout.
    void useCurrentLayout();

protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void buildContents();
    void buildMenus();
    QAction *addItem(QMenu *menu, const MenuEntry &entry);
    void trigger(QAction *action);
    void takeKeys(QAction *action, const KeyPress &press);
    void giveBack(QAction *action);
    void assign(const QString &title, const Shortcut &shortcut);
    void apply(const QHash<QString, Shortcut> &shortcuts);
    void say(const QString &text);
    const Item *itemOf(const QAction *action) const;
    QString spoken(const Shortcut &shortcut) const;
    bool opensMenu(const KeyPress &press) const;

    ShortcutStore &m_store;
    const ports::KeyboardLayouts &m_layouts;
    EventLog m_log;
    QList<Item> m_items;
    QHash<QString, Shortcut> m_shortcuts; ///< what the actions have now, by title
    QHash<QString, QAction *> m_actions;  ///< by title
    MenuRecorder *m_recorder = nullptr;
    Page *m_page = nullptr;
    QLabel *m_status = nullptr;
    bool m_isShown = false;
};

} // namespace tarnwell::tutorial
