#pragma once

#include "foundation/StyledString.h"
#include "foundation/plist/Value.h"
#include "ports/KeyboardLayouts.h"
#include "shortcuts/SpecialKeys.h"

#include <QString>

#include <optional>

/// Shortcuts as menus show them: the glyphs of the modifier keys, then the key.
///
/// Menu-modifier bits: 1 Shift, 2 Option, 4 Control, 8 no Command.
/// Event-modifier bits: 0x0100 Command, 0x0200 Shift, 0x0800 Option, 0x1000 Control.
namespace tarnwell::shortcuts {

/// The status of KeyCodeForCharacter() for an input source without layout data.
inline constexpr int missingLayoutDataErr = -30581;

/// The upper-cased characters that the current layout types for a key with Command held; empty for
/// a key that types nothing. Nothing when there is no current layout or it has no layout data.
std::optional<QString> LayoutKeyString(const ports::KeyboardLayouts &layouts, quint16 code);

/// The glyphs of menu-modifier bits, in the order of menus; nothing when there is none to show.
std::optional<QString> MenuModifierGlyphs(quint32 menuBits);

/// The menu-modifier bits that mean the same as event-modifier bits.
quint32 MenuModifiersForEventModifiers(quint32 eventModifiers);

/// A key with its modifiers. Nothing for a key that neither the special keys nor the layout know.
std::optional<QString> KeyCodeDisplayString(const ports::KeyboardLayouts &layouts, quint16 code,
                                            quint32 menuBits);

/// Finds a key that types a character, with whatever modifiers: the first in the order of the
/// layout's tables. Uses the given input source, or the current layout when there is none.
///
/// Returns 0 and stores the key; fnfErr without a layout, paramErr without an out argument or when
/// no key types the character, missingLayoutDataErr when the input source has no layout data.
int KeyCodeForCharacter(const ports::KeyboardLayouts &layouts,
                        const std::optional<ports::InputSource> &inputSource, char16_t character,
                        quint16 *keyCode);

/// A text, or "n/a" for none, in the small system font, bold or plain, and in the colour of
/// disabled controls if it is disabled.
foundation::StyledString SmallFontFor(const std::optional<QString> &string, bool useBold,
                                      bool disabled);

// The functions below read stored values. Integers are narrowed to the width that the stored
// format has for them; a value that is no number counts as missing.

/// The fingerprint of a key code and a command character, for logs and comparisons: "None", never
/// translated, for no key.
std::optional<QString> TranslateKey(const ports::KeyboardLayouts &layouts, const plist::Value &kc,
                                    const plist::Value &cK);

/// The text to display for a stored key command, or the given word for "None", greyed, where it
/// has no key or no modifiers are stored.
foundation::StyledString TranslatedStringFromKeyDictionary(const ports::KeyboardLayouts &layouts,
                                                           const plist::Dictionary &keyCommand,
                                                           const QString &none);

/// The text to display for a key's character with event-modifier bits. Logs the character.
foundation::StyledString ShortcutStringFor(const std::optional<QString> &character,
                                           const plist::Value &modifiers, const QString &none);

} // namespace tarnwell::shortcuts
