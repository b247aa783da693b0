#pragma once

#include <QLatin1StringView>
#include <QString>

/// The spelling of the stored shortcut records. Four levels: applications, menu groups, items and
/// key commands.
namespace tarnwell::shortcuts::record {

// Menu group
inline constexpr QLatin1StringView parentTitle{"ParentTitle"};
inline constexpr QLatin1StringView keys{"Keys"};

// Item
inline constexpr QLatin1StringView menuItemTitle{"MenuItemTitle"};
inline constexpr QLatin1StringView originalKeyCommands{"OriginalKeyCommands"};
inline constexpr QLatin1StringView newKeyCommands{"NewKeyCommands"};
inline constexpr QLatin1StringView menuPath{"MenuPath"};

// Key command
inline constexpr QLatin1StringView keyCode{"kc"};
inline constexpr QLatin1StringView commandKey{"cK"};
inline constexpr QLatin1StringView modifiers{"mod"};
inline constexpr QLatin1StringView title{"t"};

} // namespace tarnwell::shortcuts::record
