#include "shortcuts/ShortcutRow.h"

using namespace Qt::StringLiterals;

namespace tarnwell::shortcuts {

QString description(const ShortcutRow &row)
{
    plist::Dictionary printed = row.item;
    const auto print = [&printed](const QString &key, const plist::Value &value) {
        if (!value.isNull())
            printed.insert(key, value);
    };
    print(u"Key"_s, row.key);
    print(u"SettingsKey"_s, row.settingsKey);
    print(u"Title"_s, row.title);
    print(u"ParentTitle"_s, row.parentTitle);
    print(u"OriginalKeyCode"_s, row.originalKeyCode);
    print(u"OriginalCmdKey"_s, row.originalCmdKey);
    print(u"OriginalModifiers"_s, row.originalModifiers);
    print(u"OriginalTranslatedKey"_s, row.originalTranslatedKey.text());
    print(u"KeyCode"_s, row.keyCode);
    print(u"CmdKey"_s, row.cmdKey);
    print(u"Modifiers"_s, row.modifiers);
    print(u"TranslatedKey"_s, row.translatedKey.text());
    return plist::description(plist::Value(printed));
}

} // namespace tarnwell::shortcuts
