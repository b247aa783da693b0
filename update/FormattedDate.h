#pragma once

#include "foundation/plist/Value.h"

#include <QString>

#include <optional>

namespace tarnwell::update {

enum DateStyle : int { NoDateStyle = 0, ShortDateStyle = 1, FullDateStyle = 4 };

/// A date in the user's locale and time zone; nothing for a value that is no date, or one beyond
/// every calendar. Styles up to 2 are short ones, above them long ones with the weekday.
std::optional<QString> QXCopyFormattedDate(const plist::Value &date, int dateStyle, int timeStyle);

} // namespace tarnwell::update
