#include "hotkey/KeyEvents.h"

#include "foundation/KeyCodes.h"
#include "shortcuts/KeyTranslation.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>
#include <utility>

namespace tarnwell::hotkey {

namespace {

constexpr quint32 shiftFlag = 0x20000;
constexpr quint32 controlFlag = 0x40000;
constexpr quint32 optionFlag = 0x80000;
constexpr quint32 commandFlag = 0x100000;

/// X11 and Wayland count the kernel's key codes from 8.
constexpr quint32 scanCodeOffset = 8;

constexpr std::array<std::pair<int, quint16>, 30> keysWithoutCharacter{{
    {Qt::Key_Return, 0x24},  {Qt::Key_Enter, 0x4C},    {Qt::Key_Tab, 0x30},
    {Qt::Key_Backtab, 0x30}, {Qt::Key_Escape, 0x35},   {Qt::Key_Backspace, 0x33},
    {Qt::Key_Delete, 0x75},  {Qt::Key_Home, 0x73},     {Qt::Key_End, 0x77},
    {Qt::Key_PageUp, 0x74},  {Qt::Key_PageDown, 0x79}, {Qt::Key_Left, 0x7B},
    {Qt::Key_Right, 0x7C},   {Qt::Key_Down, 0x7D},     {Qt::Key_Up, 0x7E},
    {Qt::Key_Help, 0x72},    {Qt::Key_F1, 0x7A},       {Qt::Key_F2, 0x78},
    {Qt::Key_F3, 0x63},      {Qt::Key_F4, 0x76},       {Qt::Key_F5, 0x60},
    {Qt::Key_F6, 0x61},      {Qt::Key_F7, 0x62},       {Qt::Key_F8, 0x64},
    {Qt::Key_F9, 0x65},      {Qt::Key_F10, 0x6D},      {Qt::Key_F11, 0x67},
    {Qt::Key_F12, 0x6F},     {Qt::Key_F13, 0x69},      {Qt::Key_Space, 0x31},
}};

bool isModifierKey(int key)
{
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
    case Qt::Key_Mode_switch:
    case Qt::Key_unknown:
        return true;
    default:
        return false;
    }
}

std::optional<quint16> virtualKeyCode(const QKeyEvent &event, const ports::KeyboardLayouts &layouts)
{
    if (event.nativeScanCode() > scanCodeOffset)
        return foundation::virtualKeyCodeForEvdev(event.nativeScanCode() - scanCodeOffset);
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

} // namespace

std::optional<KeyEvent> keyEventFromQt(const QKeyEvent &event,
                                       const ports::KeyboardLayouts &layouts)
{
    if (isModifierKey(event.key()))
        return std::nullopt;
    const std::optional<quint16> keyCode = virtualKeyCode(event, layouts);
    if (!keyCode)
        return std::nullopt;
    quint32 flags = 0;
    if (event.modifiers() & Qt::ShiftModifier)
        flags |= shiftFlag;
    if (event.modifiers() & Qt::ControlModifier)
        flags |= controlFlag;
    if (event.modifiers() & Qt::AltModifier)
        flags |= optionFlag;
    if (event.modifiers() & Qt::MetaModifier)
        flags |= commandFlag;
    if (const foundation::KeyPosition *position = foundation::keyPosition(*keyCode))
        flags |= position->flags;
    return KeyEvent{*keyCode, flags};
}

quint32 menuModifiers(quint32 modifierFlags)
{
    return (modifierFlags & shiftFlag ? 1U : 0U) | (modifierFlags & optionFlag ? 2U : 0U) |
           (modifierFlags & controlFlag ? 4U : 0U) | (modifierFlags & commandFlag ? 0U : 8U);
}

} // namespace tarnwell::hotkey
