#pragma once

#include "foundation/plist/Value.h"

#include <QByteArrayView>
#include <QString>

namespace tarnwell::plist {

enum class Format { Binary, Xml };

/// How large a value may be when everything that it shares is counted wherever it is met: each
/// value counts one, and strings and data one more for every 16 units of their length.
///
/// A small binary property list can nest shared arrays so that they spread out without end. What
/// exceeds both this and the size of its own file is refused, so that whoever walks the values that
/// were read need not care.
inline constexpr quint64 maximumExpansion = 1 << 24;

/// Why a property list could not be read, in words that name what is wrong and where.
struct ReadError
{
    QString message;
};

/// Reads a property list of either format, told apart by its first bytes. Null on an error, which
/// is then described. Every input ends in bounded time and memory.
///
/// Sets are read as arrays. Of several equal keys in one dictionary the last counts. In XML, a
/// dictionary with the one key "CF$UID" and a number under it is read as the reference that such a
/// dictionary stands for.
Value read(QByteArrayView bytes, ReadError *error = nullptr);

/// The bytes of a property list; the same for equal values of the same types. Empty for a null
/// value, and for one that read() would refuse: nested deeper than maximumDepth, or larger than
/// maximumExpansion allows.
///
/// The binary format keeps every value as it is. XML cannot: characters that it has no place for
/// (most control characters, lone surrogates, U+FFFE and U+FFFF) become U+FFFD; dates lose the
/// fractions of their seconds, are held within the years 0 to 9999, and become the first moment of
/// 2001 if not a number; a real forgets that it fitted four bytes.
QByteArray write(const Value &value, Format format);

} // namespace tarnwell::plist
