#pragma once

#include <xkbcommon/xkbcommon.h>

namespace tarnwell::desktop {

/// The real modifiers that a keymap's modifier keys set.
struct XkbModifierMasks
{
    xkb_mod_mask_t shift = 0;
    xkb_mod_mask_t capsLock = 0;
    xkb_mod_mask_t control = 0;
    xkb_mod_mask_t alt = 0;
    xkb_mod_mask_t super = 0;
    xkb_mod_mask_t level3 = 0; ///< 0 when no key reaches the third level
    xkb_mod_mask_t numLock = 0;
};

/// Finds the modifiers by pressing the keys.
XkbModifierMasks modifierMasks(xkb_keymap *keymap);

} // namespace tarnwell::desktop
