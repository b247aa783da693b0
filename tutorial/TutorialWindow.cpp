#include "tutorial/TutorialWindow.h"

#include "tutorial/MenuRecorder.h"
#include "tutorial/Page.h"
#include "tutorial/ShortcutStore.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

namespace tarnwell::tutorial {

using namespace Qt::StringLiterals;

TutorialWindow::TutorialWindow(ShortcutStore &store, const ports::KeyboardLayouts &layouts,
                               EventLog log)
    : m_store(store)
    , m_layouts(layouts)
    , m_log(std::move(log))
    , m_items(itemsOfMenus(layouts))
    , m_recorder(new MenuRecorder(this))
{
    setObjectName("tutorialWindow"_L1);
    setWindowTitle(tr("Tarnwell Tutorial"));
    buildContents();
    buildMenus();

    connect(m_recorder, &MenuRecorder::pressed, this, &TutorialWindow::takeKeys);
    connect(m_recorder, &MenuRecorder::cleared, this, &TutorialWindow::giveBack);
    connect(m_recorder, &MenuRecorder::pressedOnNothing, this,
            [this] { say(tr("Point at a menu item first, then press the keys.")); });

    QHash<QString, Shortcut> originals;
    for (const Item &item : m_items)
        originals.insert(item.title, item.original);
    apply(originals);
    refresh();
    say(tr("No shortcut has been changed yet in this sitting."));
}

void TutorialWindow::buildMenus()
{
    QList<QMenu *> open;
    for (const MenuEntry &entry : menuEntries()) {
        switch (entry.kind) {
        case MenuEntry::Kind::Menu:
        case MenuEntry::Kind::Submenu: {
            const bool isTop = entry.kind == MenuEntry::Kind::Menu;
            QMenu *menu = isTop ? menuBar()->addMenu(entry.text)
                                : open.constLast()->addMenu(QString(entry.text));
            menu->setObjectName(QLatin1StringView(entry.name));
            m_recorder->listenTo(menu);
            connect(menu, &QMenu::aboutToShow, this, [this, title = plainTitle(entry.text)] {
                m_log({u"menu"_s, title});
            });
            if (isTop)
                open = {menu};
            else
                open.append(menu);
            break;
        }
        case MenuEntry::Kind::EndOfSubmenu:
            open.removeLast();
            break;
        case MenuEntry::Kind::Separator:
            open.constLast()->addSeparator();
            break;
        case MenuEntry::Kind::Item:
        case MenuEntry::Kind::Toggle:
            addItem(open.constLast(), entry);
            break;
        }
    }
}

QAction *TutorialWindow::addItem(QMenu *menu, const MenuEntry &entry)
{
    QAction *action = menu->addAction(entry.text);
    const QString title = plainTitle(entry.text);
    action->setObjectName(QLatin1StringView(entry.name));
    action->setData(title);
    action->setCheckable(entry.kind == MenuEntry::Kind::Toggle);
    // Some desktops move items such as Quit elsewhere by their names; here each has its place.
    action->setMenuRole(QAction::NoRole);
    connect(action, &QAction::triggered, this, [this, action] { trigger(action); });
    connect(action, &QAction::hovered, this, [this, title] { m_log({u"highlighted"_s, title}); });
    m_actions.insert(title, action);
    return action;
}

void TutorialWindow::trigger(QAction *action)
{
    const QString title = action->data().toString();
    m_log({u"triggered"_s, title});
    if (action->objectName() == "quit"_L1) {
        close();
        return;
    }
    m_page->perform(action->objectName());
    const Shortcut shortcut = m_shortcuts.value(title);
    say(shortcut.isNone()
            ? tr("“%1” was chosen. It has no shortcut yet.").arg(title)
            : tr("“%1” was chosen. Its shortcut is %2.").arg(title, spoken(shortcut)));
}

void TutorialWindow::takeKeys(QAction *action, const KeyPress &press)
{
    const QString title = action->data().toString();
    const std::optional<Shortcut> shortcut = shortcutOfKeyPress(press, m_layouts);
    if (!shortcut || keySequence(*shortcut, m_layouts).isEmpty()) {
        m_log({u"refused"_s, title});
        say(tr("This key cannot be a shortcut. Please press another one."));
        return;
    }
    if (opensMenu(press)) {
        m_log({u"refused"_s, title});
        say(tr("%1 opens a menu of this window. Please press other keys.").arg(spoken(*shortcut)));
        return;
    }
    assign(title, *shortcut);
}

void TutorialWindow::giveBack(QAction *action)
{
    if (const Item *item = itemOf(action))
        assign(item->title, item->original);
}

void TutorialWindow::assign(const QString &title, const Shortcut &shortcut)
{
    const std::optional<QStringList> displaced = m_store.assign(m_items, title, shortcut);
    if (!displaced) {
        m_log({u"failed"_s, title});
        say(tr("The shortcut could not be stored. Is the disk full?"));
        return;
    }
    // Applied first, so that the refresh finds only what others did.
    QHash<QString, Shortcut> now = m_shortcuts;
    now.insert(title, shortcut);
    for (const QString &other : *displaced)
        now.insert(other, Shortcut());
    apply(now);
    m_log({u"assigned"_s, title, displayText(shortcut, m_layouts)});
    for (const QString &other : *displaced)
        m_log({u"cleared"_s, other});
    refresh();

    QString text = shortcut.isNone()
                       ? tr("“%1” has no shortcut, as it was in the beginning.").arg(title)
                       : tr("“%1” now has the shortcut %2. Close the menu with Escape and try it.")
                             .arg(title, spoken(shortcut));
    for (const QString &other : *displaced)
        text += u' ' + tr("“%1” had it before and has none now.").arg(other);
    say(text);
}

void TutorialWindow::refresh()
{
    const QHash<QString, Shortcut> now = m_store.shortcuts(m_items);
    if (now == m_shortcuts)
        return;
    QStringList restored;
    QStringList changed;
    for (const Item &item : m_items) {
        const Shortcut shortcut = now.value(item.title);
        if (shortcut == m_shortcuts.value(item.title))
            continue;
        (shortcut == item.original ? restored : changed).append(item.title);
    }
    apply(now);
    for (const QString &title : restored)
        m_log({u"restored"_s, title});
    for (const QString &title : changed) {
        const Shortcut shortcut = now.value(title);
        if (shortcut.isNone())
            m_log({u"cleared"_s, title});
        else
            m_log({u"changed"_s, title, displayText(shortcut, m_layouts)});
    }
    if (restored.size() == 1)
        say(tr("“%1” has its original shortcut again.").arg(restored.constFirst()));
    else if (!restored.isEmpty())
        say(tr("%n menu items have their original shortcuts again.", nullptr,
               int(restored.size())));
    else if (!changed.isEmpty())
        say(tr("The shortcuts were changed elsewhere."));
}

void TutorialWindow::startAgain()
{
    m_log({u"started again"_s});
    m_store.begin();
    refresh();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void TutorialWindow::useCurrentLayout()
{
    m_items = itemsOfMenus(m_layouts);
    apply(m_store.shortcuts(m_items));
}

void TutorialWindow::apply(const QHash<QString, Shortcut> &shortcuts)
{
    m_shortcuts = shortcuts;
    // All are taken away first: the toolkit must never see two items with one shortcut.
    for (auto action = m_actions.cbegin(); action != m_actions.cend(); ++action) {
        const auto sequence = keySequence(m_shortcuts.value(action.key()), m_layouts);
        if (action.value()->shortcut() != sequence)
            action.value()->setShortcut({});
    }
    for (auto action = m_actions.cbegin(); action != m_actions.cend(); ++action) {
        const auto sequence = keySequence(m_shortcuts.value(action.key()), m_layouts);
        if (action.value()->shortcut() != sequence)
            action.value()->setShortcut(sequence);
    }
}

const Item *TutorialWindow::itemOf(const QAction *action) const
{
    const auto item = std::ranges::find(m_items, action->data().toString(), &Item::title);
    return item == m_items.cend() ? nullptr : &*item;
}

QString TutorialWindow::spoken(const Shortcut &shortcut) const
{
    const QString signs = displayText(shortcut, m_layouts);
    const QString words = keySequence(shortcut, m_layouts).toString(QKeySequence::NativeText);
    return words.isEmpty() || words == signs ? signs : tr("%1 (%2)").arg(signs, words);
}

bool TutorialWindow::opensMenu(const KeyPress &press) const
{
    const QKeySequence keys(QKeyCombination(press.modifiers, Qt::Key(press.key)));
    return std::ranges::any_of(menuBar()->actions(), [&keys](const QAction *menu) {
        return QKeySequence::mnemonic(menu->text()) == keys;
    });
}

void TutorialWindow::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    // Back from another window, where something may have been restored.
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        refresh();
}

void TutorialWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (!std::exchange(m_isShown, true))
        QMetaObject::invokeMethod(
            this, [this] { m_log({u"ready"_s}); }, Qt::QueuedConnection);
}

} // namespace tarnwell::tutorial
