#pragma once

#include <QString>

#include <optional>

namespace tarnwell::plist::detail {

/// A date as "2001-01-01T00:00:00Z", from seconds since the first moment of 2001. Drops fractions
/// of a second; holds what is outside of the years 0 to 9999 at their edges; NaN becomes 2001.
QString dateText(double absoluteTime);

/// Reads such a text, also with a fraction of the second. Nothing if it is none.
std::optional<double> parseDate(QStringView text);

} // namespace tarnwell::plist::detail
