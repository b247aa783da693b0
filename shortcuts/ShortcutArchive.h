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

/// Looks at every record as an import must. Empty when all are well-formed and complete, else a
/// message that names the first bad one and what is wrong with it.
QString findDamage(const plist::Dictionary &shortcuts);

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
/// Nothing that the archive does not name is touched.
ShortcutImport importShortcuts(const plist::Dictionary &stored, const plist::Dictionary &imported);

} // namespace tarnwell::shortcuts
