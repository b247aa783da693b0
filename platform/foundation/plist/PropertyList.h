#pragma once

#include "foundation/plist/Value.h"

#include <QByteArrayView>
#include <QString>

namespace tarnwell::plist {

enum class Format { Binary, Xml };

/// Why a property list could not be read, in words that name what is wrong and where.
struct ReadError
{
    QString message;
};

/// Reads a property list of either format, told apart by its first bytes. Null on an error, which
/// is then described. Every input ends in bounded time and memory.
Value read(QByteArrayView bytes, ReadError *error = nullptr);

/// The bytes of a property list; empty for a null value.
QByteArray write(const Value &value, Format format);

} // namespace tarnwell::plist
