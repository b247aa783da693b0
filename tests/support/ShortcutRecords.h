#pragma once

#include "foundation/plist/Value.h"

#include <QString>

namespace tarnwell::tests {

/// Stored shortcut records in a few words.
inline plist::Dictionary command(int keyCode, int modifiers, const QString &title)
{
    return {{QStringLiteral("kc"), keyCode},
            {QStringLiteral("cK"), 0},
            {QStringLiteral("mod"), modifiers},
            {QStringLiteral("t"), title}};
}

inline plist::Dictionary item(const QString &title, const plist::Dictionary &original,
                              const plist::Dictionary &changed)
{
    return {{QStringLiteral("MenuItemTitle"), title},
            {QStringLiteral("OriginalKeyCommands"), plist::Value(original)},
            {QStringLiteral("NewKeyCommands"), plist::Value(changed)}};
}

/// An item that had Command and one key and has Command and another one now.
inline plist::Dictionary changedItem(const QString &title, int originalKeyCode = 0x00,
                                     int newKeyCode = 0x0B)
{
    return item(title, command(originalKeyCode, 0x0100, title), command(newKeyCode, 0x0100, title));
}

inline plist::Dictionary group(const QString &parentTitle, const plist::Array &items)
{
    return {{QStringLiteral("ParentTitle"), parentTitle},
            {QStringLiteral("Keys"), plist::Value(items)}};
}

} // namespace tarnwell::tests
