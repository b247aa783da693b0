#include "hotkey/HotKey.h"

#include "foundation/KeyCodes.h"
#include "hotkey/KeyEvents.h"
#include "prefs/CFPreferencesWrapper_Tarnwell.h"
#include "prefs/PreferenceKeys.h"
#include "shortcuts/KeyTranslation.h"
#include "shortcuts/SpokenKeys.h"

#include <QCoreApplication>

namespace tarnwell::hotkey {

namespace {

constexpr quint32 defaultMenuModifiers = 6;
constexpr char16_t defaultCharacter = u'm';

/// Below it are bits that tell left from right and the like, but no modifier.
constexpr quint32 lowestModifierFlag = 0x10000;
constexpr quint32 keyboardBits = 0xFFFF;

QString words(const char *text)
{
    return QCoreApplication::translate("SpokenKeys", text);
}

QString spokenKey(quint16 keyCode, const QString &text)
{
    // Menus have no sign for it.
    if (keyCode == 0x6E)
        return words(QT_TRANSLATE_NOOP("SpokenKeys", "Menu Key"));
    if (text.isEmpty())
        return words(QT_TRANSLATE_NOOP("SpokenKeys", "Key %1")).arg(keyCode);
    const foundation::KeyPosition *position = foundation::keyPosition(keyCode);
    const quint32 kind = position ? position->flags : 0;
    // Arrows count to the keypad as well, but there is no other arrow.
    if ((kind & foundation::keyFlagNumericPad) && !(kind & foundation::keyFlagFunction))
        return words(QT_TRANSLATE_NOOP("SpokenKeys", "Keypad %1"))
            .arg(shortcuts::spokenShortcut(text));
    return shortcuts::spokenShortcut(text);
}

} // namespace

std::optional<HotKey> defaultHotKey(const ports::KeyboardLayouts &layouts)
{
    HotKey hotKey{0, defaultMenuModifiers};
    if (shortcuts::KeyCodeForCharacter(layouts, std::nullopt, defaultCharacter, &hotKey.keyCode) !=
        0)
        return std::nullopt;
    return hotKey;
}

std::optional<HotKey> storedHotKey(const prefs::CFPreferencesWrapper_Tarnwell &wrapper)
{
    const plist::Value keyCode = wrapper.objectForKey(prefs::keys::menuAccKeyCode);
    const plist::Value modifiers = wrapper.objectForKey(prefs::keys::menuAccMods);
    if (keyCode.isNull() || modifiers.isNull())
        return std::nullopt;
    return HotKey{static_cast<quint16>(keyCode.toInteger()),
                  static_cast<quint32>(modifiers.toInteger())};
}

void storeHotKey(prefs::CFPreferencesWrapper_Tarnwell &wrapper, const HotKey &hotKey)
{
    wrapper.setObject(qint64{hotKey.menuModifiers}, prefs::keys::menuAccMods);
    wrapper.setObject(qint64{hotKey.keyCode}, prefs::keys::menuAccKeyCode);
}

HotKey hotKeyFor(const KeyEvent &event)
{
    return {event.keyCode, menuModifiers(event.modifierFlags)};
}

std::optional<QString> displayString(const ports::KeyboardLayouts &layouts, const HotKey &hotKey)
{
    return shortcuts::KeyCodeDisplayString(layouts, hotKey.keyCode, hotKey.menuModifiers);
}

QString spokenHotKey(const HotKey &hotKey, const QString &text)
{
    const QString glyphs = shortcuts::MenuModifierGlyphs(hotKey.menuModifiers).value_or(QString());
    const QString key = spokenKey(hotKey.keyCode, text.mid(glyphs.size()));
    return glyphs.isEmpty() ? key : shortcuts::spokenShortcut(glyphs) + u' ' + key;
}

Capture capture(const ports::KeyboardLayouts &layouts, const KeyEvent &event)
{
    if (event.modifierFlags < lowestModifierFlag)
        return {Verdict::NeedsModifier, {}};
    if ((event.modifierFlags & ~keyboardBits) == shiftFlag)
        return {Verdict::ShiftAlone, {}};
    const auto text = displayString(layouts, hotKeyFor(event));
    if (!text)
        return {Verdict::NotShowable, {}};
    return {Verdict::Accepted, *text};
}

bool worksTheSheet(int key, quint32 modifierFlags)
{
    const quint32 held = modifierFlags & (shiftFlag | controlFlag | optionFlag | commandFlag);
    switch (key) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return (held & ~shiftFlag) == 0;
    case Qt::Key_Escape:
    case Qt::Key_Return:
        return held == 0;
    default:
        return false;
    }
}

} // namespace tarnwell::hotkey
