#pragma once

#include <QString>

#include <xkbcommon/xkbcommon.h>

namespace tarnwell::desktop {

/// A dead key, which changes the letter that is typed after it.
struct XkbDeadKey
{
    xkb_keysym_t keysym;
    char16_t spacing;        ///< the accent as a character; 0 when there is none
    char16_t combining;      ///< the accent as a combining mark; 0 for a key that is not an accent
    const char16_t *letters; ///< lower-case letters that combine besides the mark's own
    const char16_t *combinations; ///< what they become, one for each
};

/// The dead key of a keysym; null when it is none that is known.
const XkbDeadKey *xkbDeadKey(xkb_keysym_t keysym);

/// What a dead key shows when it stands alone: its spacing accent, or else its mark on the circle
/// that stands for any letter.
QString spacingText(const XkbDeadKey &deadKey);

/// The one character that a dead key makes of a text; empty when it doesn't combine.
QString combine(const XkbDeadKey &deadKey, const QString &text);

} // namespace tarnwell::desktop
