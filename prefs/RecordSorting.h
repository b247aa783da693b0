#pragma once

#include "foundation/plist/Value.h"

namespace tarnwell::ports {
class FileManager;
}

namespace tarnwell::prefs {

/// Orders records by their "Title", without regard to case: negative, zero or positive. A record
/// without a title comes first.
int titleCompare(const plist::Dictionary &a, const plist::Dictionary &b);

/// The same order over the titles themselves, for records that are held in another form.
int titleCompare(const QString &a, const QString &b);

/// What an exclude record is sorted by: the file's display name for a record with a "Path", else
/// its "DisplayName". A file that is gone goes by the name that it was stored with, else by the
/// last component of its path.
QString displayNameOf(const ports::FileManager &fileManager, const plist::Dictionary &record);

/// Orders exclude records by their names, without regard to case.
int displayNameCompare(const ports::FileManager &fileManager, const plist::Dictionary &a,
                       const plist::Dictionary &b);

} // namespace tarnwell::prefs
