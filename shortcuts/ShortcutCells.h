#pragma once

#include "foundation/StyledString.h"
#include "shortcuts/ShortcutRow.h"

#include <optional>

namespace tarnwell::shortcuts {

/// The columns of the shortcut table, by the identifiers that the interface file gives them.
enum class ShortcutColumn { MenuItem = 0, NewShortcut = 1, OriginalShortcut = 2, Menu = 3 };

/// The titles from the menu bar down to the item, joined by pointers; empty when none is stored.
QString menuPathText(const plist::Dictionary &item);

/// The same for a screen reader, which would read the pointers out.
QString spokenMenuPath(const plist::Dictionary &item);

/// What a cell shows; nothing in a column that the table does not know.
std::optional<foundation::StyledString> shortcutCellText(const ShortcutRow &row,
                                                         int columnIdentifier);

/// The same for who draws the cell: the log's details say of which row it is.
std::optional<foundation::StyledString> shortcutCellValue(const ShortcutRow &row,
                                                          int columnIdentifier);

} // namespace tarnwell::shortcuts
