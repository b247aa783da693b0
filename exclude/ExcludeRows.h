#pragma once

#include "foundation/StyledString.h"
#include "foundation/plist/Value.h"

namespace tarnwell::ports {
class FileManager;
}

namespace tarnwell::exclude {

/// The records that the table shows, sorted by name. Elements of the stored list that are no
/// records have nothing to show; predefined ones are left out on wish.
plist::Array excludeRows(const plist::Array &stored, bool hidePredefined,
                         const ports::FileManager &fileManager);

/// The name that a row shows. A record that names nothing shows its identifier.
QString excludeName(const plist::Dictionary &record, const ports::FileManager &fileManager);

/// The text of a row: the name, and the comment in small grey letters below.
foundation::StyledString excludeCellValue(const plist::Dictionary &record,
                                          const ports::FileManager &fileManager);

/// The same, fit to be shown: others wrote it.
foundation::StyledString shownExcludeCell(const plist::Dictionary &record,
                                          const ports::FileManager &fileManager);

} // namespace tarnwell::exclude
