#pragma once

#include "foundation/plist/Value.h"

#include <optional>

namespace tarnwell::plist::detail {

/// What one string or piece of data counts towards maximumExpansion.
constexpr quint64 leafWeight(qsizetype length)
{
    return 1 + quint64(length) / 16;
}

/// Adds without ever wrapping around.
constexpr quint64 addSaturated(quint64 a, quint64 b)
{
    return a + b < a ? ~quint64(0) : a + b;
}

struct Extent
{
    quint64 expanded = 0; // with what is shared counted wherever it is met; may be saturated
    quint64 stored = 0;   // with shared containers counted once
};

/// Measures a value in time linear in what it stores. Nothing if it is deeper than maximumDepth.
std::optional<Extent> extentOf(const Value &value);

} // namespace tarnwell::plist::detail
