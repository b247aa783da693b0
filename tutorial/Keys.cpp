#include "tutorial/Keys.h"

#include "foundation/KeyCodes.h"
#include "ports/KeyboardLayouts.h"
#include "shortcuts/KeyTranslation.h"

#include <algorithm>
#include <iterator>

namespace tarnwell::tutorial {

namespace {

struct SpecialKey
{
    int key;
    quint16 keyCode;
    char16_t commandKey; ///< as menus hold it
};

constexpr SpecialKey specialKeys[] = {
    // clang-format off
    {Qt::Key_F1, 0x7A, 0xF704},
    {Qt::Key_F2, 0x78, 0xF705},
    {Qt::Key_F3, 0x63, 0xF706},
    {Qt::Key_F4, 0x76, 0xF707},
    {Qt::Key_F5, 0x60, 0xF708},
    {Qt::Key_F6, 0x61, 0xF709},
    {Qt::Key_F7, 0x62, 0xF70A},
    {Qt::Key_F8, 0x64, 0xF70B},
    {Qt::Key_F9, 0x65, 0xF70C},
    {Qt::Key_F10, 0x6D, 0xF70D},
    {Qt::Key_F11, 0x67, 0xF70E},
    {Qt::Key_F12, 0x6F, 0xF70F},
    {Qt::Key_F13, 0x69, 0xF710},
    {Qt::Key_F14, 0x6B, 0xF711},
    {Qt::Key_F15, 0x71, 0xF712},
    {Qt::Key_F16, 0x6A, 0xF713},
    {Qt::Key_Left, 0x7B, 28},
    {Qt::Key_Right, 0x7C, 29},
    {Qt::Key_Up, 0x7E, 30},
    {Qt::Key_Down, 0x7D, 31},
    {Qt::Key_Return, 0x24, 13},
    {Qt::Key_Enter, 0x4C, 3},
    {Qt::Key_Tab, 0x30, 9},
    {Qt::Key_Backtab, 0x30, 9},
    {Qt::Key_Space, 0x31, 32},
    {Qt::Key_Backspace, 0x33, 8},
    {Qt::Key_Delete, 0x75, 127},
    {Qt::Key_Escape, 0x35, 27},
    {Qt::Key_Home, 0x73, 0xF729},
    {Qt::Key_End, 0x77, 0xF72B},
    {Qt::Key_PageUp, 0x74, 0xF72C},
    {Qt::Key_PageDown, 0x79, 0xF72D},
    {Qt::Key_Insert, 0x72, 0xF746}, // Help
    // clang-format on
};

bool isFunctionKey(int key)
{
    return key >= Qt::Key_F1 && key <= Qt::Key_F16;
}

quint32 modifierBits(Qt::KeyboardModifiers modifiers)
{
    return (modifiers & Qt::MetaModifier ? commandBit : 0) |
           (modifiers & Qt::ShiftModifier ? shiftBit : 0) |
           (modifiers & Qt::AltModifier ? optionBit : 0) |
           (modifiers & Qt::ControlModifier ? controlBit : 0);
}

Qt::KeyboardModifiers qtModifiers(quint32 bits)
{
    Qt::KeyboardModifiers modifiers;
    modifiers.setFlag(Qt::MetaModifier, bits & commandBit);
    modifiers.setFlag(Qt::ShiftModifier, bits & shiftBit);
    modifiers.setFlag(Qt::AltModifier, bits & optionBit);
    modifiers.setFlag(Qt::ControlModifier, bits & controlBit);
    return modifiers;
}

/// The key that types a character, on the current layout or else on a US board.
std::optional<quint16> keyOfCharacter(char16_t character, const ports::KeyboardLayouts &layouts)
{
    quint16 keyCode = 0;
    if (shortcuts::KeyCodeForCharacter(layouts, std::nullopt, character, &keyCode) == 0)
        return keyCode;
    for (const foundation::KeyPosition &key : foundation::keyPositions()) {
        if (key.usCharacter == character || key.usShifted == character)
            return key.virtualKeyCode;
    }
    return std::nullopt;
}

/// What menus hold for a key: the character that it types with Command, in upper case.
char16_t commandKey(quint16 keyCode, const ports::KeyboardLayouts &layouts)
{
    const auto special = std::ranges::find(specialKeys, keyCode, &SpecialKey::keyCode);
    if (special != std::end(specialKeys))
        return special->commandKey;
    const QString text = shortcuts::LayoutKeyString(layouts, keyCode).value_or(QString());
    return text.isEmpty() ? u'\0' : text.front().unicode();
}

} // namespace

bool canBeShortcut(const KeyPress &press)
{
    if (foundation::isModifierKey(press.key))
        return false;
    return isFunctionKey(press.key) ||
           (modifierBits(press.modifiers) & (commandBit | optionBit | controlBit)) != 0;
}

std::optional<Shortcut> shortcutOfKeyPress(const KeyPress &press,
                                           const ports::KeyboardLayouts &layouts)
{
    const std::optional<quint16> keyCode = hotkey::pressedKey(press, layouts);
    if (!keyCode)
        return std::nullopt;
    return Shortcut{*keyCode, commandKey(*keyCode, layouts), modifierBits(press.modifiers)};
}

Shortcut shortcutOfCharacter(char16_t character, quint32 modifiers,
                             const ports::KeyboardLayouts &layouts)
{
    const std::optional<quint16> keyCode = keyOfCharacter(character, layouts);
    if (!keyCode)
        return {};
    return {*keyCode, commandKey(*keyCode, layouts), modifiers};
}

Shortcut shortcutOfSpecialKey(int key, quint32 modifiers)
{
    const auto special = std::ranges::find(specialKeys, key, &SpecialKey::key);
    if (special == std::end(specialKeys))
        return {};
    return {special->keyCode, special->commandKey, modifiers};
}

QKeySequence keySequence(const Shortcut &shortcut, const ports::KeyboardLayouts &layouts)
{
    if (shortcut.isNone())
        return {};
    const auto modifiers = qtModifiers(shortcut.modifiers);
    const auto special =
        shortcut.keyCode == noKey
            ? std::end(specialKeys)
            : std::ranges::find(specialKeys, shortcut.keyCode, &SpecialKey::keyCode);
    if (special != std::end(specialKeys))
        return QKeySequence(QKeyCombination(modifiers, Qt::Key(special->key)));
    QString text = shortcut.keyCode == noKey
                       ? QString(QChar(shortcut.commandKey)).toUpper()
                       : shortcuts::LayoutKeyString(layouts, shortcut.keyCode).value_or(QString());
    // The toolkit numbers its keys by their characters; some characters have no single capital.
    if (text.size() != 1 || text.front().unicode() <= 0x20 || text.front().isSurrogate())
        return {};
    return QKeySequence(QKeyCombination(modifiers, Qt::Key(text.front().unicode())));
}

QString displayText(const Shortcut &shortcut, const ports::KeyboardLayouts &layouts)
{
    if (shortcut.isNone())
        return {};
    const quint32 menuBits = shortcuts::MenuModifiersForEventModifiers(shortcut.modifiers);
    if (shortcut.keyCode != noKey)
        return shortcuts::KeyCodeDisplayString(layouts, shortcut.keyCode, menuBits)
            .value_or(QString());
    return shortcuts::MenuModifierGlyphs(menuBits).value_or(QString()) + QChar(shortcut.commandKey);
}

} // namespace tarnwell::tutorial
