#include "hotkey/KeyEvents.h"

#include "foundation/KeyCodes.h"
#include "hotkey/PressedKey.h"

#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace tarnwell::hotkey {

namespace {

/// The second of the eight real modifiers is Caps Lock in every keymap, whatever key locks it.
constexpr quint32 nativeCapsLock = 0x02;

/// The symbols of keys that switch levels and groups, alike under X11 and Wayland.
constexpr quint32 firstSwitchSymbol = 0xFE01;
constexpr quint32 lastSwitchSymbol = 0xFE13;

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

std::optional<KeyEvent> keyEventFromQt(const QKeyEvent &event,
                                       const ports::KeyboardLayouts &layouts)
{
    if (isModifierKey(event))
        return std::nullopt;
    const auto keyCode = pressedKey(KeyPress::fromEvent(event), layouts);
    if (!keyCode)
        return std::nullopt;
    return withKindOfKey(*keyCode, heldModifiers(event));
}

quint32 menuModifiers(quint32 modifierFlags)
{
    return (modifierFlags & shiftFlag ? 1U : 0U) | (modifierFlags & optionFlag ? 2U : 0U) |
           (modifierFlags & controlFlag ? 4U : 0U) | (modifierFlags & commandFlag ? 0U : 8U);
}

} // namespace tarnwell::hotkey
