#pragma once

#include <QString>

#include <xkbcommon/xkbcommon.h>

#include <memory>

namespace tarnwell::desktop {

/// Drops the owner's reference to an object of xkbcommon.
struct XkbUnref
{
    void operator()(xkb_context *context) const { xkb_context_unref(context); }
    void operator()(xkb_keymap *keymap) const { xkb_keymap_unref(keymap); }
    void operator()(xkb_state *state) const { xkb_state_unref(state); }
};
using XkbContextPointer = std::unique_ptr<xkb_context, XkbUnref>;
using XkbKeymapPointer = std::unique_ptr<xkb_keymap, XkbUnref>;
using XkbStatePointer = std::unique_ptr<xkb_state, XkbUnref>;

/// The names that a keymap is made from; layouts and variants are lists divided by commas.
struct XkbNames
{
    QString model;
    QString layout;
    QString variant;
    QString options;

    friend bool operator==(const XkbNames &, const XkbNames &) = default;
};

/// A context that reads the installed keyboard database and keeps its complaints to itself. Null
/// when memory is short.
XkbContextPointer makeXkbContext();

/// The keymap of some names; null when the keyboard database doesn't have them. A name left empty
/// is the database's own default, whatever the environment says.
XkbKeymapPointer compileKeymap(xkb_context *context, const XkbNames &names);

/// The name of the layout that is the given group of a keymap made from names: "de(nodeadkeys)".
QString layoutName(const XkbNames &names, xkb_layout_index_t group);

} // namespace tarnwell::desktop
