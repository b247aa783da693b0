#include "hotkey/PressedKey.h"

#include "foundation/KeyCodes.h"
#include "foundation/UnicodeKeyLayout.h"
#include "ports/KeyboardLayouts.h"
#include "shortcuts/KeyTranslation.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>
#include <utility>

namespace tarnwell::hotkey {

namespace {

/// X11 and Wayland count the kernel's key codes from 8.
constexpr quint32 scanCodeOffset = 8;

using KeyCodeOfKey = std::pair<int, quint16>; // Qt::Key and virtual key code
constexpr std::array<KeyCodeOfKey, 38> keysWithoutCharacter{{
    {Qt::Key_Return, 0x24},  {Qt::Key_Enter, 0x4C},    {Qt::Key_Tab, 0x30},
    {Qt::Key_Backtab, 0x30}, {Qt::Key_Escape, 0x35},   {Qt::Key_Backspace, 0x33},
    {Qt::Key_Delete, 0x75},  {Qt::Key_Home, 0x73},     {Qt::Key_End, 0x77},
    {Qt::Key_PageUp, 0x74},  {Qt::Key_PageDown, 0x79}, {Qt::Key_Left, 0x7B},
    {Qt::Key_Right, 0x7C},   {Qt::Key_Down, 0x7D},     {Qt::Key_Up, 0x7E},
    {Qt::Key_Help, 0x72},    {Qt::Key_F1, 0x7A},       {Qt::Key_F2, 0x78},
    {Qt::Key_F3, 0x63},      {Qt::Key_F4, 0x76},       {Qt::Key_F5, 0x60},
    {Qt::Key_F6, 0x61},      {Qt::Key_F7, 0x62},       {Qt::Key_F8, 0x64},
    {Qt::Key_F9, 0x65},      {Qt::Key_F10, 0x6D},      {Qt::Key_F11, 0x67},
    {Qt::Key_F12, 0x6F},     {Qt::Key_F13, 0x69},      {Qt::Key_F14, 0x6B},
    {Qt::Key_F15, 0x71},     {Qt::Key_F16, 0x6A},      {Qt::Key_F17, 0x40},
    {Qt::Key_F18, 0x4F},     {Qt::Key_F19, 0x50},      {Qt::Key_F20, 0x5A},
    {Qt::Key_Insert, 0x72},  {Qt::Key_Space, 0x31},
}};

bool isCharacter(int key)
{
    return key >= 0x20 && key <= int(QChar::LastValidCodePoint);
}

std::optional<quint16> keyWithoutCharacter(int key)
{
    const auto *const known = std::ranges::find(keysWithoutCharacter, key, &KeyCodeOfKey::first);
    return known == keysWithoutCharacter.end() ? std::nullopt : std::optional(known->second);
}

bool isOnKeypad(const foundation::KeyPosition &position)
{
    // Arrows count to it as well, but not to what Num Lock changes.
    return (position.flags & foundation::keyFlagNumericPad) &&
           !(position.flags & foundation::keyFlagFunction);
}

bool isOnKeypad(const KeyPress &press)
{
    // The toolkit doesn't say so on every display. The symbols are alike under X11 and Wayland.
    constexpr quint32 firstSymbol = 0xFF80;
    constexpr quint32 lastSymbol = 0xFFBD;
    return (press.modifiers & Qt::KeypadModifier) ||
           (press.symbol >= firstSymbol && press.symbol <= lastSymbol);
}

std::optional<quint16> keypadKey(int key)
{
    if (key > 0x7F)
        return std::nullopt;
    const auto positions = foundation::keyPositions();
    const auto found = std::ranges::find_if(positions, [key](const auto &known) {
        return isOnKeypad(known) && known.usCharacter == key;
    });
    return found == positions.end() ? std::nullopt : std::optional(found->virtualKeyCode);
}

std::optional<quint16> keyByPlace(quint32 scanCode)
{
    if (scanCode <= scanCodeOffset)
        return std::nullopt;
    return foundation::virtualKeyCodeForEvdev(scanCode - scanCodeOffset);
}

std::optional<quint16> keyByMeaning(const KeyPress &press, const ports::KeyboardLayouts &layouts)
{
    if (isOnKeypad(press)) {
        if (const auto pad = keypadKey(press.key))
            return pad;
    }
    if (const auto known = keyWithoutCharacter(press.key))
        return known;
    quint16 keyCode = 0;
    const auto character = QChar(static_cast<char16_t>(press.key)).toLower().unicode();
    if (press.key > 0xFFFF ||
        shortcuts::KeyCodeForCharacter(layouts, std::nullopt, character, &keyCode) != 0)
        return std::nullopt;
    return keyCode;
}

/// Whether a key of the current layout types a character, with whatever modifiers. True without a
/// layout: nothing speaks against it.
bool types(const ports::KeyboardLayouts &layouts, quint16 keyCode, char32_t character)
{
    const auto source = layouts.currentKeyboardLayout();
    if (!source || source->unicodeKeyLayoutData.isEmpty())
        return true;
    // Command, Shift, Caps Lock and Option; with Control keys type no characters.
    constexpr quint32 modifierStates = 16;
    // The toolkit names keys in upper case.
    const QString wanted = QString::fromUcs4(&character, 1);
    for (quint32 modifiers = 0; modifiers < modifierStates; ++modifiers) {
        quint32 deadKeyState = 0;
        const QString text =
            foundation::UCKeyTranslate(
                source->unicodeKeyLayoutData, keyCode, foundation::KeyAction::Display, modifiers,
                layouts.keyboardType() & 0xFF, foundation::keyTranslateNoDeadKeys, deadKeyState, 2)
                .value_or(QString());
        if (text.toUpper() == wanted.toUpper() || text.toLower() == wanted.toLower())
            return true;
    }
    return false;
}

/// Whether the key at a place can be meant by a press.
bool isMeant(quint16 keyCode, const KeyPress &press, const ports::KeyboardLayouts &layouts)
{
    const auto named = keyWithoutCharacter(press.key);
    if (named == keyCode)
        return true;
    // Without Num Lock they are Home, arrows and so on.
    if (isOnKeypad(press) && isOnKeypad(*foundation::keyPosition(keyCode)) &&
        !isCharacter(press.key))
        return true;
    const char32_t character =
        named ? foundation::keyPosition(*named)->usCharacter : char32_t(press.key);
    // Menus show these keys by a sign of their own, whatever the layout has there.
    if (shortcuts::SpecialKeyString(keyCode))
        return false;
    return character != 0 && types(layouts, keyCode, character);
}

} // namespace

KeyPress KeyPress::fromEvent(const QKeyEvent &event)
{
    return {event.key(), event.modifiers(), event.nativeScanCode(), event.nativeVirtualKey()};
}

std::optional<quint16> pressedKey(const KeyPress &press, const ports::KeyboardLayouts &layouts)
{
    if (press.scanCode == 0)
        return keyByMeaning(press, layouts);
    const auto byPlace = keyByPlace(press.scanCode);
    const bool isNamed = keyWithoutCharacter(press.key) || isCharacter(press.key);
    if (press.symbol == 0 || !isNamed || (byPlace && isMeant(*byPlace, press, layouts)))
        return byPlace;
    // Or is the layout another one already?
    layouts.catchUp();
    if (byPlace && isMeant(*byPlace, press, layouts))
        return byPlace;
    return keyByMeaning(press, layouts);
}

} // namespace tarnwell::hotkey
