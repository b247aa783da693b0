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

/// Applications are the values that are arrays; others are none of ours.
ShortcutCount countShortcuts(const plist::Dictionary &shortcuts);

/// The bytes of an archive: a binary property list.
QByteArray writeArchive(const ShortcutArchive &archive);

/// Reads an archive. Nothing for anything else, with a message that says why. The records are
/// taken as they are: a backup must be able to hold whatever was stored.
std::optional<ShortcutArchive> readArchive(const QByteArray &bytes, QString *errorMessage);

/// How many items an archive may hold to be imported: more than anybody makes by hand, and few
/// enough to be shown.
inline constexpr int mostImportedItems = 100'000;

/// What an import has to know of the records in an archive.
struct ShortcutReview
{
    QString damage;     ///< names the first malformed record and what is wrong, or says that there
                        ///< are too many; empty for none
    int incomplete = 0; ///< what is left out: well-formed items that lack a title or a key command,
                        ///< and values that are no application's
    QString firstIncomplete; ///< names the first of those and what it lacks
};

/// Looks at every record. Incomplete ones are no damage: the plug-in stores an item step by step,
/// and things of its own beside the applications, so that whatever is exported or kept may hold a
/// few.
ShortcutReview reviewShortcuts(const plist::Dictionary &shortcuts);

/// What the stored shortcuts become when kept ones are brought back. Values that are no
/// application's stay as they are stored now: they are not the user's to go back in time with.
plist::Dictionary bringBackShortcuts(const plist::Dictionary &present,
                                     const plist::Dictionary &kept);

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
