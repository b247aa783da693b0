#pragma once

#include "foundation/plist/Value.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace tarnwell::ports {
class Preferences;
}

namespace tarnwell::exclude {

/// The user's own records of a stored list, as the bytes of a file to keep or to take elsewhere;
/// empty when there is none. Predefined ones stay behind: they come with the product.
QByteArray exportedList(const plist::Array &stored);

/// Whether a stored list has a record that an export would hold.
bool hasRecordsToExport(const plist::Array &stored);

/// The records of an exported file, with the values that records have and no others. Nothing when
/// the file is damaged or another one; the message then says what is wrong, and where.
std::optional<plist::Array> readExportedList(const QByteArray &bytes, QString *errorMessage);

/// What taking in an exported list would change.
struct ImportPlan
{
    plist::Array added;        ///< in the order of the file
    QStringList addedNames;    ///< one each
    QStringList alreadyListed; ///< names of records that stay as they are
};

ImportPlan planImport(const plist::Array &imported, const plist::Array &stored);

/// The plan in words for the user, names of applications included.
QString description(const ImportPlan &plan);

/// Appends the records that are not listed by the time they are stored. Does not write when all
/// are.
void importRecords(ports::Preferences &preferences, const QString &domain,
                   const plist::Array &records);

} // namespace tarnwell::exclude
