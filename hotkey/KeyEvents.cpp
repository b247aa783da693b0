#include "hotkey/KeyEvents.h"

#include "foundation/KeyCodes.h"
#include "shortcuts/KeyTranslation.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwell::hotkey {

namespace {

/// X11 and Wayland count the kernel's key codes from 8.
constexpr quint32 scanCodeOffset = 8;

/// The second of the eight real modifiers is Caps Lock in every keymap, whatever key locks it.
constexpr quint32 nativeCapsLock = 0x02;

/// The symbols of keys that switch levels and groups, alike under X11 and Wayland.
constexpr quint32 firstSwitchSymbol = 0xFE01;
constexpr quint32 lastSwitchSymbol = 0xFE13;

constexpr std::array<std::pair<int, quint16>, 38> keysWithoutCharacter{{
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

std::optional<quint16> keypadKey(int key)
{
    if (key > 0x7F)
        return std::nullopt;
    const auto positions = foundation::keyPositions();
    const auto found = std::find_if(positions.begin(), positions.end(), [key](const auto &known) {
        return (known.flags & foundation::keyFlagNumericPad) && known.usCharacter == key;
    });
    return found == positions.end() ? std::nullopt : std::optional(found->virtualKeyCode);
}

/// The key of a press that has no position of its own.
std::optional<quint16> keyCodeByMeaning(const QKeyEvent &event,
                                        const ports::KeyboardLayouts &layouts)
{
    if (event.modifiers() & Qt::KeypadModifier) {
        if (const auto pad = keypadKey(event.key()))
            return pad;
    }
    const auto *known =
        std::find_if(keysWithoutCharacter.begin(), keysWithoutCharacter.end(),
                     [&event](const auto &entry) { return entry.first == event.key(); });
    if (known != keysWithoutCharacter.end())
        return known->second;
    quint16 keyCode = 0;
    const auto character = QChar(static_cast<char16_t>(event.key())).toLower().unicode();
    if (event.key() > 0xFFFF ||
        shortcuts::KeyCodeForCharacter(layouts, std::nullopt, character, &keyCode) != 0)
        return std::nullopt;
    return keyCode;
}

quint32 heldModifiers(const QKeyEvent &event)
{
    quint32 flags = event.nativeModifiers() & nativeCapsLock ? capsLockFlag : 0;
    if (event.modifiers() & Qt::ShiftModifier)
        flags |= shiftFlag;
    if (event.modifiers() & Qt::ControlModifier)
        flags |= controlFlag;
    if (event.modifiers() & Qt::AltModifier)
        flags |= optionFlag;
    if (event.modifiers() & Qt::MetaModifier)
        flags |= commandFlag;
    return flags;
}

KeyEvent withKindOfKey(quint16 keyCode, quint32 modifiers)
{
    const foundation::KeyPosition *position = foundation::keyPosition(keyCode);
    return {keyCode, modifiers | (position ? position->flags : 0)};
}

} // namespace

QString description(const KeyEvent &event)
{
    return u"key code 0x%1, modifier flags 0x%2"_s.arg(event.keyCode, 2, 16, QChar(u'0'))
        .arg(event.modifierFlags, 6, 16, QChar(u'0'));
}

bool isModifierKey(const QKeyEvent &event)
{
    // The toolkit has no name for most keys that switch levels and groups.
    const bool isNameless = event.key() == 0 || event.key() == Qt::Key_unknown;
    return isNameless ? event.nativeVirtualKey() >= firstSwitchSymbol &&
                            event.nativeVirtualKey() <= lastSwitchSymbol
                      : foundation::isModifierKey(event.key());
}

std::optional<KeyEvent> keyEventForScanCode(quint32 scanCode, quint32 modifiers)
{
    if (scanCode <= scanCodeOffset)
        return std::nullopt;
    const auto keyCode = foundation::virtualKeyCodeForEvdev(scanCode - scanCodeOffset);
    if (!keyCode)
        return std::nullopt;
    return withKindOfKey(*keyCode, modifiers);
}

std::optional<KeyEvent> keyEventFromQt(const QKeyEvent &event,
                                       const ports::KeyboardLayouts &layouts)
{
    if (isModifierKey(event))
        return std::nullopt;
    const quint32 modifiers = heldModifiers(event);
    if (event.nativeScanCode() != 0)
        return keyEventForScanCode(event.nativeScanCode(), modifiers);
    const auto keyCode = keyCodeByMeaning(event, layouts);
    if (!keyCode)
        return std::nullopt;
    return withKindOfKey(*keyCode, modifiers);
}

quint32 menuModifiers(quint32 modifierFlags)
{
    return (modifierFlags & shiftFlag ? 1U : 0U) | (modifierFlags & optionFlag ? 2U : 0U) |
           (modifierFlags & controlFlag ? 4U : 0U) | (modifierFlags & commandFlag ? 0U : 8U);
}

} // namespace tarnwell::hotkey
