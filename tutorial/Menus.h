#pragma once

#include "tutorial/Records.h"

#include <QLatin1StringView>

#include <span>

namespace tarnwell::ports {
class KeyboardLayouts;
}

namespace tarnwell::tutorial {

/// One line of the menus: a menu, an item or a separator.
struct MenuEntry
{
    enum class Kind { Menu, Submenu, EndOfSubmenu, Item, Toggle, Separator };

    Kind kind = Kind::Separator;
    const char *name = "";       ///< the object's name; of items also what the page does
    QLatin1StringView text = {}; ///< with its mnemonic
    char16_t character = 0;      ///< of the original shortcut
    int specialKey = 0;          ///< likewise, for keys without a character
    quint32 modifiers = 0;
};

/// The menus of the tutorial, in order.
std::span<const MenuEntry> menuEntries();

/// A text without its mnemonic.
QString plainTitle(QLatin1StringView text);

/// The items with the shortcuts that the tutorial gives them on the current layout.
QList<Item> itemsOfMenus(const ports::KeyboardLayouts &layouts);

} // namespace tarnwell::tutorial
