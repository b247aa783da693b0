#include "shortcuts/KeyTranslation.h"

#include "foundation/StatusCodes.h"
#include "foundation/UnicodeKeyLayout.h"
#include "foundation/UnicodeKeyLayoutFormat.h"

namespace tarnwell::shortcuts {

namespace {

constexpr quint32 menuShift = 1;
constexpr quint32 menuOption = 2;
constexpr quint32 menuControl = 4;
constexpr quint32 menuNoCommand = 8;

constexpr quint32 commandHeld = 1;
constexpr qsizetype maximumKeyText = 256;

// A layout has a few dozen tables of 128 keys. Damaged data can claim millions of them, which
// share their bytes; the search then ends here.
constexpr quint32 maximumOutputs = 1 << 18;

} // namespace

std::optional<QString> LayoutKeyString(const ports::KeyboardLayouts &layouts, quint16 code)
{
    const std::optional<ports::InputSource> source = layouts.currentKeyboardLayout();
    if (!source || source->unicodeKeyLayoutData.isEmpty())
        return std::nullopt;
    quint32 deadKeyState = 0;
    // A layout that can't be read is one that types nothing: the key has a text, an empty one.
    return foundation::UCKeyTranslate(
               source->unicodeKeyLayoutData, code, foundation::KeyAction::Display, commandHeld,
               layouts.keyboardType() & 0xFF, foundation::keyTranslateNoDeadKeys, deadKeyState,
               maximumKeyText)
        .value_or(QString())
        .toUpper();
}

std::optional<QString> MenuModifierGlyphs(quint32 menuBits)
{
    QString glyphs;
    if (menuBits & menuShift)
        glyphs += u'\u21E7';
    if (menuBits & menuControl)
        glyphs += u'\u2303';
    if (menuBits & menuOption)
        glyphs += u'\u2325';
    if (!(menuBits & menuNoCommand))
        glyphs += u'\u2318';
    if (glyphs.isEmpty())
        return std::nullopt;
    return glyphs;
}

quint32 MenuModifiersForEventModifiers(quint32 eventModifiers)
{
    return (eventModifiers & 0x0200 ? menuShift : 0) |
           (eventModifiers & 0x0100 ? 0 : menuNoCommand) |
           (eventModifiers & 0x1000 ? menuControl : 0) | (eventModifiers & 0x0800 ? menuOption : 0);
}

std::optional<QString> KeyCodeDisplayString(const ports::KeyboardLayouts &layouts, quint16 code,
                                            quint32 menuBits)
{
    std::optional<QString> key = SpecialKeyString(code);
    if (!key)
        key = LayoutKeyString(layouts, code);
    if (!key)
        return std::nullopt;
    const std::optional<QString> glyphs = MenuModifierGlyphs(menuBits);
    return glyphs ? *glyphs + *key : key;
}

namespace {

using foundation::UnicodeKeyLayout;
namespace keylayout = foundation::keylayout;

/// The key of a keyboard type that types a character; nothing when none does or the search has
/// read as many outputs as it may.
std::optional<quint16> findKey(const UnicodeKeyLayout &layout,
                               const UnicodeKeyLayout::KeyboardType &type, char16_t character,
                               quint32 &outputsLeft)
{
    const quint32 tables = layout.tableCount(type);
    const quint32 keys = layout.tableSize(type);
    for (quint32 table = 0; table < tables && outputsLeft > 0; ++table) {
        --outputsLeft;
        for (quint32 key = 0; key < keys && outputsLeft > 0; ++key) {
            --outputsLeft;
            const std::optional<quint16> output = layout.output(type, table, key);
            if (!output)
                break;
            std::optional<quint16> typed;
            if ((*output & keylayout::kindMask) == keylayout::recordKind)
                typed = layout.stateZeroCharacter(type, *output & keylayout::indexMask);
            else if ((*output & keylayout::kindMask) != keylayout::sequenceKind &&
                     !keylayout::isNone(*output))
                typed = output;
            if (typed == quint16{character})
                return static_cast<quint16>(key);
        }
    }
    return std::nullopt;
}

} // namespace

int KeyCodeForCharacter(const ports::KeyboardLayouts &layouts,
                        const std::optional<ports::InputSource> &inputSource, char16_t character,
                        quint16 *keyCode)
{
    const std::optional<ports::InputSource> source =
        inputSource ? inputSource : layouts.currentKeyboardLayout();
    if (!source)
        return foundation::fnfErr;
    if (keyCode == nullptr)
        return foundation::paramErr;
    if (source->unicodeKeyLayoutData.isEmpty())
        return missingLayoutDataErr;
    const auto layout = UnicodeKeyLayout::fromBytes(source->unicodeKeyLayoutData);
    const quint32 types = layout ? layout->keyboardTypeCount() : 0;
    quint32 outputsLeft = maximumOutputs;
    for (quint32 i = 0; i < types && outputsLeft > 0; ++i) {
        const auto type = layout->keyboardType(i);
        if (const auto key = findKey(*layout, *type, character, outputsLeft)) {
            *keyCode = *key;
            return foundation::noErr;
        }
    }
    return foundation::paramErr;
}

} // namespace tarnwell::shortcuts
