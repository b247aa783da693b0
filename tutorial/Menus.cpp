#include "tutorial/Menus.h"

#include "tutorial/Keys.h"

namespace tarnwell::tutorial {

namespace {

using Kind = MenuEntry::Kind;

constexpr QLatin1StringView text(const char *latin1)
{
    return QLatin1StringView(latin1);
}

// Each title occurs once: a shortcut is remembered under the title alone.
constexpr MenuEntry entries[] = {
    // clang-format off
    {Kind::Menu, "fileMenu", text("&File")},
    {Kind::Item, "newPage", text("&New Page"), u'n', 0, controlBit},
    {Kind::Item, "sampleText", text("&Sample Text"), u't', 0, controlBit},
    {Kind::Separator},
    {Kind::Item, "quit", text("&Quit Tutorial"), u'q', 0, controlBit},
    {Kind::Menu, "editMenu", text("&Edit")},
    {Kind::Item, "undo", text("&Undo"), u'z', 0, controlBit},
    {Kind::Item, "redo", text("&Redo"), u'z', 0, controlBit | shiftBit},
    {Kind::Separator},
    {Kind::Item, "upperCase", text("U&pper Case"), u'u', 0, controlBit | shiftBit},
    {Kind::Item, "lowerCase", text("&Lower Case")},
    {Kind::Item, "insertDate", text("Insert &Date"), 0, Qt::Key_F5, 0},
    {Kind::Submenu, "symbolMenu", text("Insert &Symbol")},
    {Kind::Item, "insertStar", text("S&tar"), u'1', 0, controlBit},
    {Kind::Item, "insertHeart", text("&Heart"), u'2', 0, controlBit},
    {Kind::Item, "insertNote", text("&Music Note")},
    {Kind::EndOfSubmenu},
    {Kind::Menu, "viewMenu", text("&View")},
    {Kind::Item, "bigger", text("&Bigger"), u'b', 0, controlBit},
    {Kind::Item, "smaller", text("&Smaller"), u'b', 0, controlBit | shiftBit},
    {Kind::Item, "normalSize", text("&Normal Size"), u'0', 0, controlBit},
    {Kind::Separator},
    {Kind::Toggle, "colouredPaper", text("&Coloured Paper"), 0, Qt::Key_F6, 0},
    // clang-format on
};

Shortcut originalOf(const MenuEntry &entry, const ports::KeyboardLayouts &layouts)
{
    if (entry.specialKey != 0)
        return shortcutOfSpecialKey(entry.specialKey, entry.modifiers);
    if (entry.character != 0)
        return shortcutOfCharacter(entry.character, entry.modifiers, layouts);
    return {};
}

} // namespace

std::span<const MenuEntry> menuEntries()
{
    return entries;
}

QString plainTitle(QLatin1StringView text)
{
    return QString(text).remove(u'&');
}

QList<Item> itemsOfMenus(const ports::KeyboardLayouts &layouts)
{
    QList<Item> items;
    QStringList menus;
    for (const MenuEntry &entry : entries) {
        switch (entry.kind) {
        case Kind::Menu:
            menus = {plainTitle(entry.text)};
            break;
        case Kind::Submenu:
            menus.append(plainTitle(entry.text));
            break;
        case Kind::EndOfSubmenu:
            menus.removeLast();
            break;
        case Kind::Item:
        case Kind::Toggle:
            items.append({plainTitle(entry.text), menus, originalOf(entry, layouts)});
            break;
        case Kind::Separator:
            break;
        }
    }
    return items;
}

} // namespace tarnwell::tutorial
