#pragma once

#include "foundation/plist/Value.h"

#include <QLatin1StringView>

namespace tarnwell::exclude {

/// The keys of one record of the exclude list. All but the identifier may be missing.
namespace record {

inline constexpr QLatin1StringView identifier{"ID"};
inline constexpr QLatin1StringView path{"Path"};
inline constexpr QLatin1StringView displayName{"DisplayName"};
inline constexpr QLatin1StringView comment{"Comment"};
inline constexpr QLatin1StringView aliasRecord{"AliasRecord"};
inline constexpr QLatin1StringView hardcoded{"Hardcoded"};

} // namespace record

/// Whether a record is one that came with the product. Hand-edited lists also say so by numbers and
/// words.
bool isPredefined(const plist::Dictionary &record);

} // namespace tarnwell::exclude
