#pragma once

#include "foundation/plist/Value.h"

#include <QString>

#include <optional>

namespace tarnwell::shortcuts {

/// Stored shortcuts outside of the preference domain: the form of backups and exports.
struct ShortcutArchive
{
    plist::Date date;            ///< when it was made
    plist::Dictionary shortcuts; ///< a whole "MenuShortcuts" value
};

/// How much a set of stored shortcuts holds.
struct ShortcutCount
{
    int applications = 0;
    int items = 0;

    friend bool operator==(const ShortcutCount &, const ShortcutCount &) = default;
};

ShortcutCount countShortcuts(const plist::Dictionary &shortcuts);

/// The bytes of an archive: a binary property list.
QByteArray writeArchive(const ShortcutArchive &archive);

/// Reads an archive. Nothing for anything else, with a message that says why. The records are
/// taken as they are: a backup must be able to hold whatever was stored.
std::optional<ShortcutArchive> readArchive(const QByteArray &bytes, QString *errorMessage);

/// What an import has to know of the records in an archive.
struct ShortcutReview
{
    QString damage;          ///< names the first malformed record and what is wrong; empty for none
    int incomplete = 0;      ///< well-formed items that lack a title or a key command
    QString firstIncomplete; ///< names the first of those and what it lacks
};

/// Looks at every record. Incomplete ones are no damage: the plug-in stores an item step by step,
/// so that whatever is exported or kept may hold a few.
ShortcutReview reviewShortcuts(const plist::Dictionary &shortcuts);

/// What importing an archive does to the stored shortcuts.
struct ShortcutImport
{
    plist::Dictionary shortcuts; ///< the stored ones afterwards
    int added = 0;
    int replaced = 0;
    int unchanged = 0; ///< in the archive just as they are stored
};

/// Takes the items of an archive into the stored shortcuts. An item that the application has
/// already, told by its title, is replaced where it stands; a new one joins the group of its menu.
/// Incomplete items are left out. Nothing that the archive does not name is touched.
ShortcutImport importShortcuts(const plist::Dictionary &stored, const plist::Dictionary &imported);

} // namespace tarnwell::shortcuts
