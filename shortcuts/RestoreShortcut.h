#pragma once

#include "foundation/plist/Value.h"
#include "shortcuts/ShortcutListBuilder.h"
#include "shortcuts/ShortcutRow.h"

#include <QList>

namespace tarnwell::shortcuts {

/// The first row that carries a shortcut, as its original or as its current one; null when none
/// does. A missing key only equals a missing key; missing modifiers equal nothing.
const ShortcutRow *findKey(const QList<ShortcutRow> &rows, const foundation::StyledString &key,
                           const plist::Value &withModifiers, bool inOriginal);

/// What one application's groups come to when an original shortcut is restored.
struct RestoreResult
{
    plist::Array groups;
    bool changed = false;      ///< a record was removed or cleared
    bool groupRemoved = false; ///< a group had no item left, or never had one
};

/// Removes the records of the restored row's item. A conflict is the row that holds the restored
/// item's original shortcut now: its new shortcut is cleared. Records are told by their title and
/// both of their shortcuts, so that one which has changed since the rows were built stays.
RestoreResult restoreOriginal(const plist::Array &groups, const ShortcutRow &restored,
                              const ShortcutRow *conflict, KeyCommandTranslator &translator);

/// Puts an application's groups back into the stored shortcuts; without groups the application
/// goes.
plist::Dictionary withGroups(const plist::Dictionary &shortcuts, const QString &settingsKey,
                             const plist::Array &groups);

} // namespace tarnwell::shortcuts
