#include "foundation/Logging.h"
#include "shortcuts/KeyTranslation.h"
#include "shortcuts/RecordKeys.h"

namespace tarnwell::shortcuts {

using namespace Qt::StringLiterals;
using foundation::StyledString;

namespace {

bool isNumber(const plist::Value &value)
{
    return value.isNumber() || value.isBoolean();
}

/// The low 32 bits of a stored number, which its narrower readings are cut from.
quint32 number(const plist::Value &value)
{
    if (value.isBoolean())
        return value.toBool() ? 1 : 0;
    if (value.isHugeInteger())
        return static_cast<quint32>(value.toUnsignedInteger());
    return static_cast<quint32>(value.toInteger());
}

/// The key that a record names by its key code; nothing without a code or a keyboard layout.
std::optional<QString> keyOfCode(const ports::KeyboardLayouts &layouts, const plist::Value &kc)
{
    if (!isNumber(kc))
        return std::nullopt;
    const auto code = static_cast<quint16>(number(kc));
    std::optional<QString> key = SpecialKeyString(code);
    return key ? key : LayoutKeyString(layouts, code);
}

/// The key that a record names by the character that its menu shows.
std::optional<QString> keyOfCharacter(const plist::Value &cK)
{
    if (!isNumber(cK) || static_cast<qint16>(number(cK)) == -1)
        return std::nullopt;
    const auto character = static_cast<quint16>(number(cK));
    // Programs store the codes of special keys here too, so those win over the characters.
    if (std::optional<QString> key = SpecialKeyString(character))
        return key;
    if (character == 0)
        return std::nullopt;
    return QString(QChar(character));
}

} // namespace

StyledString SmallFontFor(const std::optional<QString> &string, bool useBold, bool disabled)
{
    foundation::TextAttributes attributes;
    attributes.font =
        useBold ? foundation::FontStyle::SmallBoldSystem : foundation::FontStyle::SmallSystem;
    if (disabled)
        attributes.color = foundation::TextColor::DisabledControl;
    return StyledString(string ? *string : u"n/a"_s, attributes);
}

std::optional<QString> TranslateKey(const ports::KeyboardLayouts &layouts, const plist::Value &kc,
                                    const plist::Value &cK)
{
    if (!isNumber(kc) || static_cast<qint16>(number(kc)) == -1)
        return u"None"_s;
    // The character goes where modifiers are expected: only so do equal pairs, and no others, get
    // the fingerprint that records have been compared by.
    return KeyCodeDisplayString(layouts, static_cast<quint16>(number(kc)),
                                isNumber(cK) ? number(cK) : 0);
}

StyledString TranslatedStringFromKeyDictionary(const ports::KeyboardLayouts &layouts,
                                               const plist::Dictionary &keyCommand,
                                               const QString &none)
{
    std::optional<QString> key = keyOfCode(layouts, keyCommand.value(record::keyCode));
    if (!key)
        key = keyOfCharacter(keyCommand.value(record::commandKey));
    const plist::Value &modifiers = keyCommand.value(record::modifiers);
    if (!key || !isNumber(modifiers))
        return SmallFontFor(none, false, true);

    const quint32 menuBits = MenuModifiersForEventModifiers(number(modifiers));
    const QString text = MenuModifierGlyphs(menuBits).value_or(QString()) + *key;
    if (text.isEmpty())
        return SmallFontFor(none, false, true);
    return SmallFontFor(text, false, false);
}

StyledString ShortcutStringFor(const std::optional<QString> &character,
                               const plist::Value &modifiers, const QString &none)
{
    TARNWELL_SYSTEM_LOG(character ? *character : u"(null)"_s);
    if (!character || character->isEmpty())
        return SmallFontFor(none, false, true);

    QString key = *character;
    switch (character->front().unicode()) {
    case 28:
        key = u"\u2190"_s;
        break;
    case 29:
        key = u"\u2192"_s;
        break;
    case 30:
        key = u"\u2191"_s;
        break;
    case 31:
        key = u"\u2193"_s;
        break;
    case 8:
        key = u"\u232B"_s;
        break;
    default:
        break;
    }
    const quint32 held = isNumber(modifiers) ? number(modifiers) : 0;
    const auto glyphs = MenuModifierGlyphs(MenuModifiersForEventModifiers(held));
    return SmallFontFor(glyphs.value_or(QString()) + key, false, false);
}

} // namespace tarnwell::shortcuts
