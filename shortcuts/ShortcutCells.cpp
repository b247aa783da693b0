#include "shortcuts/ShortcutCells.h"

#include "foundation/Logging.h"
#include "shortcuts/KeyTranslation.h"
#include "shortcuts/RecordKeys.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace tarnwell::shortcuts {

namespace {

std::optional<QString> text(const plist::Value &value)
{
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

QStringList menuPath(const plist::Dictionary &item)
{
    QStringList titles;
    for (const plist::Value &level : item.value(record::menuPath).toArray()) {
        const plist::Value &title = level.toDictionary().value(record::menuItemTitle);
        if (title.isString())
            titles.append(title.toString());
    }
    return titles;
}

} // namespace

QString menuPathText(const plist::Dictionary &item)
{
    return menuPath(item).join(u" \u261E "_s);
}

QString spokenMenuPath(const plist::Dictionary &item)
{
    return menuPath(item).join(u", "_s);
}

std::optional<foundation::StyledString> shortcutCellText(const ShortcutRow &row,
                                                         int columnIdentifier)
{
    switch (static_cast<ShortcutColumn>(columnIdentifier)) {
    case ShortcutColumn::MenuItem: {
        const QString path = menuPathText(row.item);
        return SmallFontFor(path.isEmpty() ? text(row.title) : path, true, false);
    }
    case ShortcutColumn::NewShortcut:
        return row.translatedKey;
    case ShortcutColumn::OriginalShortcut:
        return row.originalTranslatedKey;
    case ShortcutColumn::Menu:
        return SmallFontFor(text(row.parentTitle), true, false);
    }
    return std::nullopt;
}

std::optional<foundation::StyledString> shortcutCellValue(const ShortcutRow &row,
                                                          int columnIdentifier)
{
    TARNWELL_SYSTEM_DETAIL(u"Dict: %1"_s.arg(description(row)));
    return shortcutCellText(row, columnIdentifier);
}

} // namespace tarnwell::shortcuts
