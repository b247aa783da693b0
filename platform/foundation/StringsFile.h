#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

namespace tarnwell::foundation {

/// Reads a table of localised texts: lines of "key" = "value"; with comments, in UTF-8 or UTF-16,
/// or a property list with a dictionary of strings. What cannot be read is left out: a damaged
/// file gives the pairs before the damage.
QHash<QString, QString> readStringsFile(const QByteArray &bytes);

} // namespace tarnwell::foundation
