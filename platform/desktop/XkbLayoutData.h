#pragma once

#include "foundation/UnicodeKeyLayoutBuilder.h"

#include <xkbcommon/xkbcommon.h>

namespace tarnwell::desktop {

/// Whether a keymap is one that a board can have, of whatever script: there is something on the
/// keys of the letters and digits, and Return and the space bar are in their places. Programs that
/// send keys make keymaps of just the symbols that they send.
bool isKeymapOfBoard(xkb_keymap *keymap);

/// The layout that one group of a keymap is, with eleven tables: a key alone, with Shift, with Caps
/// Lock and with both; the same four with Option, which reaches the third level; Command, and
/// Command with Shift; Control.
///
/// The tables for Command and Control hold Latin characters, because shortcuts are named by them
/// on every keyboard. A layout of another script takes them whole from the keymap's first Latin
/// group, or else from the US board: punctuation too, since its own sits elsewhere (a Russian
/// board would have two full stops, and a Hebrew one a slash where Quit is). A Latin layout takes
/// them for those keys only that type a character of another script.
foundation::KeyLayoutDescription describeKeymap(xkb_keymap *keymap, xkb_layout_index_t group);

} // namespace tarnwell::desktop
