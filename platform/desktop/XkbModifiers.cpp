#include "desktop/XkbModifiers.h"

#include "desktop/XkbKeymap.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <utility>

namespace tarnwell::desktop {

XkbModifierMasks modifierMasks(xkb_keymap *keymap)
{
    XkbModifierMasks masks;
    const std::pair<xkb_keysym_t, xkb_mod_mask_t *> wanted[] = {
        {XKB_KEY_Shift_L, &masks.shift},     {XKB_KEY_Caps_Lock, &masks.capsLock},
        {XKB_KEY_Control_L, &masks.control}, {XKB_KEY_Alt_L, &masks.alt},
        {XKB_KEY_Super_L, &masks.super},     {XKB_KEY_ISO_Level3_Shift, &masks.level3},
        {XKB_KEY_Num_Lock, &masks.numLock},
    };
    const xkb_keycode_t last = xkb_keymap_max_keycode(keymap);
    for (xkb_keycode_t key = xkb_keymap_min_keycode(keymap); key <= last; ++key) {
        const xkb_keysym_t *symbols = nullptr;
        if (xkb_keymap_key_get_syms_by_level(keymap, key, 0, 0, &symbols) != 1)
            continue;
        for (const auto &[keysym, mask] : wanted) {
            if (symbols[0] != keysym || *mask != 0)
                continue;
            const XkbStatePointer state(xkb_state_new(keymap));
            if (state == nullptr)
                continue;
            xkb_state_update_key(state.get(), key, XKB_KEY_DOWN);
            *mask = xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_EFFECTIVE);
        }
    }
    // Layouts may put something else on these keys, but the two modifiers always exist.
    const auto named = [&](const char *name) -> xkb_mod_mask_t {
        const xkb_mod_index_t index = xkb_keymap_mod_get_index(keymap, name);
        return index < 32 ? xkb_mod_mask_t{1} << index : 0;
    };
    if (masks.shift == 0)
        masks.shift = named(XKB_MOD_NAME_SHIFT);
    if (masks.capsLock == 0)
        masks.capsLock = named(XKB_MOD_NAME_CAPS);
    return masks;
}

} // namespace tarnwell::desktop
