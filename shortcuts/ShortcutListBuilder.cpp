#include "shortcuts/ShortcutListBuilder.h"

#include "foundation/Logging.h"
#include "shortcuts/RecordKeys.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace tarnwell::shortcuts {

namespace {

QString printed(const plist::Value &value)
{
    return value.isNull() ? u"(null)"_s : plist::description(value);
}

bool isZero(const plist::Value &value)
{
    return value.isNumber() && value.toDouble() == 0.0;
}

void fillMissing(plist::Value &field, const plist::Value &value)
{
    if (field.isNull())
        field = value;
}

/// A stored modifier of 0 says nothing, so a later record of the item may still supply one.
void fillModifiers(plist::Value &field, const plist::Value &modifiers)
{
    if (modifiers.isNull())
        fillMissing(field, 0);
    else if (field.isNull() || isZero(field))
        field = modifiers;
}

/// The row that an item starts: what the plug-in stored under a row's own names is kept, but the
/// identity of a row is never taken from a record.
ShortcutRow startRow(const plist::Dictionary &item, const QString &title,
                     const QString &settingsKey)
{
    ShortcutRow row;
    row.key = title;
    row.settingsKey = settingsKey;
    row.item = item;
    row.title = item.value(u"Title");
    row.parentTitle = item.value(u"ParentTitle");
    row.originalKeyCode = item.value(u"OriginalKeyCode");
    row.originalCmdKey = item.value(u"OriginalCmdKey");
    row.originalModifiers = item.value(u"OriginalModifiers");
    row.keyCode = item.value(u"KeyCode");
    row.cmdKey = item.value(u"CmdKey");
    row.modifiers = item.value(u"Modifiers");
    return row;
}

class Merge
{
public:
    Merge(const QString &settingsKey, KeyCommandTranslator &translator)
        : m_settingsKey(settingsKey)
        , m_translator(translator)
    {}

    void add(const plist::Dictionary &item, const plist::Value &parentTitle)
    {
        const plist::Value &title = item.value(record::menuItemTitle);
        if (!title.isString())
            return;
        ShortcutRow &row = rowFor(item, title.toString());
        const plist::Value &original = item.value(record::originalKeyCommands);
        if (!original.isNull())
            addOriginal(row, original.toDictionary(), parentTitle);
        addNew(row, item.value(record::newKeyCommands).toDictionary(), parentTitle);
    }

    QList<ShortcutRow> takeChangedRows()
    {
        QList<ShortcutRow> changed;
        changed.reserve(m_rows.size());
        for (ShortcutRow &row : m_rows) {
            const bool sameKey =
                !row.translatedKey.isEmpty() && row.translatedKey == row.originalTranslatedKey;
            const bool sameModifiers =
                !row.modifiers.isNull() && row.modifiers == row.originalModifiers;
            if (sameKey && sameModifiers)
                continue;
            if (!row.translatedKey.isEmpty() || !row.originalTranslatedKey.isEmpty())
                changed.append(std::move(row));
        }
        return changed;
    }

private:
    ShortcutRow &rowFor(const plist::Dictionary &item, const QString &title)
    {
        const auto found = m_indexOfTitle.constFind(title);
        if (found != m_indexOfTitle.cend())
            return m_rows[*found];
        m_indexOfTitle.insert(title, m_rows.size());
        m_rows.append(startRow(item, title, m_settingsKey));
        return m_rows.last();
    }

    void addOriginal(ShortcutRow &row, const plist::Dictionary &command,
                     const plist::Value &parentTitle)
    {
        const plist::Value &keyCode = command.value(record::keyCode);
        const plist::Value &commandKey = command.value(record::commandKey);
        fillMissing(row.title, command.value(record::title));
        fillMissing(row.parentTitle, parentTitle);
        fillMissing(row.originalCmdKey, commandKey);
        fillMissing(row.originalKeyCode, keyCode);
        fillModifiers(row.originalModifiers, command.value(record::modifiers));
        logCommand(u"o:%1:%2:%3"_s, keyCode, commandKey);
        row.originalTranslatedKey = m_translator.display(command);
        TARNWELL_SYSTEM_DETAIL(u"\"......%1......\" is %2"_s.arg(
            row.originalTranslatedKey.text(), QString::number(row.originalTranslatedKey.length())));
    }

    void addNew(ShortcutRow &row, const plist::Dictionary &command, const plist::Value &parentTitle)
    {
        const plist::Value &keyCode = command.value(record::keyCode);
        const plist::Value &commandKey = command.value(record::commandKey);
        fillMissing(row.title, command.value(record::title));
        fillMissing(row.parentTitle, parentTitle);
        fillMissing(row.cmdKey, commandKey);
        fillMissing(row.keyCode, keyCode);
        fillModifiers(row.modifiers, command.value(record::modifiers));
        logCommand(u":%1:%2:%3"_s, keyCode, commandKey);
        row.translatedKey = m_translator.display(command);
    }

    void logCommand(const QString &format, const plist::Value &keyCode,
                    const plist::Value &commandKey)
    {
        TARNWELL_SYSTEM_DETAIL(
            format.arg(printed(keyCode), printed(commandKey),
                       m_translator.fingerprint(keyCode, commandKey).value_or(u"(null)"_s)));
    }

    const QString &m_settingsKey;
    KeyCommandTranslator &m_translator;
    QHash<QString, qsizetype> m_indexOfTitle;
    QList<ShortcutRow> m_rows;
};

bool isIncomplete(const plist::Dictionary &item, bool isInNotification)
{
    return (!isInNotification && item.value(record::originalKeyCommands).isNull()) ||
           item.value(record::newKeyCommands).isNull();
}

} // namespace

ShortcutListResult buildShortcutRows(const plist::Array &groups, const QString &settingsKey,
                                     bool isInNotification, KeyCommandTranslator &translator)
{
    ShortcutListResult result;
    result.groups = groups;
    Merge merge(settingsKey, translator);
    for (qsizetype i = 0; i < groups.size(); ++i) {
        const plist::Dictionary &group = groups.at(i).toDictionary();
        const plist::Value &parentTitle = group.value(record::parentTitle);
        const plist::Array &items = group.value(record::keys).toArray();
        QList<qsizetype> incomplete;
        for (qsizetype j = 0; j < items.size(); ++j) {
            if (!items.at(j).isDictionary())
                continue;
            const plist::Dictionary &item = items.at(j).toDictionary();
            if (isIncomplete(item, isInNotification)) {
                TARNWELL_SYSTEM_LOG(u"%1 is an incomplete preference. Removing"_s.arg(
                    printed(item.value(record::menuItemTitle))));
                incomplete.append(j);
                continue;
            }
            merge.add(item, parentTitle);
        }
        if (incomplete.isEmpty() || isInNotification)
            continue;
        plist::Array trimmed = items;
        for (auto j = incomplete.crbegin(); j != incomplete.crend(); ++j)
            trimmed.removeAt(*j);
        plist::Dictionary replacement = group;
        replacement.insert(QString(record::keys), plist::Value(trimmed));
        result.groups.replace(i, plist::Value(replacement));
        result.groupsChanged = true;
    }
    result.rows = merge.takeChangedRows();
    return result;
}

} // namespace tarnwell::shortcuts
