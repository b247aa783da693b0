#include "tutorial/Shortcut.h"

#include "shortcuts/RecordKeys.h"

namespace tarnwell::tutorial {

namespace record = shortcuts::record;

Shortcut shortcutFromRecord(const plist::Dictionary &keyCommand)
{
    const plist::Value &modifiers = keyCommand.value(record::modifiers);
    if (!modifiers.isNumber())
        return {};
    Shortcut shortcut;
    shortcut.modifiers = static_cast<quint32>(modifiers.toInteger()) & allModifierBits;
    const plist::Value &character = keyCommand.value(record::commandKey);
    if (character.isNumber() && static_cast<qint16>(character.toInteger()) != -1)
        shortcut.commandKey = static_cast<char16_t>(character.toInteger());
    const plist::Value &keyCode = keyCommand.value(record::keyCode);
    if (keyCode.isNumber()) {
        shortcut.keyCode = static_cast<quint16>(keyCode.toInteger());
        // A key code says it all: one that means no key leaves nothing to the character.
        if (shortcut.keyCode == noKey)
            return {};
    }
    return shortcut.isNone() ? Shortcut() : shortcut;
}

plist::Dictionary recordOfShortcut(const Shortcut &shortcut, const QString &title,
                                   plist::Dictionary present)
{
    present.insert(record::keyCode,
                   shortcut.keyCode == noKey ? plist::Value(-1) : plist::Value(shortcut.keyCode));
    present.insert(record::commandKey, plist::Value(quint16(shortcut.commandKey)));
    present.insert(record::modifiers, plist::Value(shortcut.modifiers));
    present.insert(record::title, title);
    return present;
}

} // namespace tarnwell::tutorial
