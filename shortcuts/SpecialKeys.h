#pragma once

#include <QString>

#include <optional>

namespace tarnwell::shortcuts {

/// The text that menus show for a key that types no character of its own, such as an arrow key.
/// Nothing for code 0 and for keys that are not special.
std::optional<QString> SpecialKeyString(quint16 code);

/// The text that the table of special keys has for a menu glyph code; nothing for a code that it
/// doesn't have.
std::optional<QString> MenuGlyphString(quint32 glyphCode);

} // namespace tarnwell::shortcuts
