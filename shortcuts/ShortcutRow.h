#pragma once

#include "foundation/StyledString.h"
#include "foundation/plist/Value.h"

#include <QString>

namespace tarnwell::shortcuts {

/// One menu item of one application whose shortcut was changed, merged from every stored record of
/// its title. A null value or an empty styled string stands for a missing one.
struct ShortcutRow
{
    QString key;            ///< the item's title as stored; its identity within the application
    QString settingsKey;    ///< the application's identifier
    plist::Dictionary item; ///< the first stored record of the item, unknown keys included
    plist::Value title;     ///< the title as it stood when the shortcut was captured
    plist::Value parentTitle;

    plist::Value originalKeyCode;
    plist::Value originalCmdKey;
    plist::Value originalModifiers;
    foundation::StyledString originalTranslatedKey;

    plist::Value keyCode;
    plist::Value cmdKey;
    plist::Value modifiers;
    foundation::StyledString translatedKey;

    friend bool operator==(const ShortcutRow &, const ShortcutRow &) = default;
};

/// Prints a row for a log line.
QString description(const ShortcutRow &row);

} // namespace tarnwell::shortcuts
