#include "shortcuts/RestoreShortcut.h"

#include "foundation/Logging.h"
#include "shortcuts/RecordKeys.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwell::shortcuts {

namespace {

bool equalIfPresent(const plist::Value &a, const plist::Value &b)
{
    return !a.isNull() && a == b;
}

/// Tells the records of a row's item from all others.
class RecordMatcher
{
public:
    RecordMatcher(const ShortcutRow &row, KeyCommandTranslator &translator)
        : m_row(row)
        , m_translator(translator)
    {}

    bool matches(const plist::Dictionary &item) const
    {
        const plist::Dictionary original = item.value(record::originalKeyCommands).toDictionary();
        const plist::Dictionary changed = item.value(record::newKeyCommands).toDictionary();
        return equalIfPresent(m_row.title, item.value(record::menuItemTitle)) &&
               isSameKey(m_row.originalKeyCode, m_row.originalCmdKey, original) &&
               isSameKey(m_row.keyCode, m_row.cmdKey, changed);
    }

private:
    bool isSameKey(const plist::Value &keyCode, const plist::Value &commandKey,
                   const plist::Dictionary &command) const
    {
        const plist::Value &otherKeyCode = command.value(record::keyCode);
        const plist::Value &otherCommandKey = command.value(record::commandKey);
        const auto fingerprint = m_translator.fingerprint(keyCode, commandKey);
        const auto otherFingerprint = m_translator.fingerprint(otherKeyCode, otherCommandKey);
        // Without a keyboard layout there are no fingerprints; the numbers tell as much.
        if (!fingerprint && !otherFingerprint)
            return keyCode == otherKeyCode && commandKey == otherCommandKey;
        return fingerprint == otherFingerprint;
    }

    const ShortcutRow &m_row;
    KeyCommandTranslator &m_translator;
};

plist::Dictionary cleared(plist::Dictionary item)
{
    plist::Dictionary command = item.value(record::newKeyCommands).toDictionary();
    command.insert(record::modifiers, 0);
    command.insert(record::keyCode, -1);
    item.insert(record::newKeyCommands, plist::Value(command));
    return item;
}

} // namespace

const ShortcutRow *findKey(const QList<ShortcutRow> &rows, const foundation::StyledString &key,
                           const plist::Value &withModifiers, bool inOriginal)
{
    const auto found = std::find_if(rows.cbegin(), rows.cend(), [&](const ShortcutRow &row) {
        return key == (inOriginal ? row.originalTranslatedKey : row.translatedKey) &&
               equalIfPresent(withModifiers, inOriginal ? row.originalModifiers : row.modifiers);
    });
    return found == rows.cend() ? nullptr : &*found;
}

RestoreResult restoreOriginal(const plist::Array &groups, const ShortcutRow &restored,
                              const ShortcutRow *conflict, KeyCommandTranslator &translator)
{
    RestoreResult result;
    result.groups = groups;
    const RecordMatcher isRestored(restored, translator);
    for (qsizetype i = 0; i < result.groups.size(); ++i) {
        const plist::Dictionary group = result.groups.at(i).toDictionary();
        const plist::Value &storedKeys = group.value(record::keys);
        // Not the format of a group: somebody else's, and left alone.
        if (!result.groups.at(i).isDictionary() || !(storedKeys.isArray() || storedKeys.isNull()))
            continue;
        plist::Array keys = storedKeys.toArray();
        const qsizetype startingCount = keys.size();
        for (qsizetype j = 0; j < keys.size(); ++j) {
            plist::Dictionary item = keys.at(j).toDictionary();
            if (conflict && RecordMatcher(*conflict, translator).matches(item)) {
                item = cleared(item);
                keys.replace(j, plist::Value(item));
                result.changed = true;
            }
            if (isRestored.matches(item)) {
                keys.removeAt(j--);
                result.changed = true;
            }
        }
        if (keys.isEmpty()) {
            TARNWELL_SYSTEM_LOG("All keys are gone"_L1);
            result.groups.removeAt(i--);
            result.groupRemoved = true;
        } else if (keys.size() != startingCount || result.changed) {
            plist::Dictionary replacement = group;
            replacement.insert(record::keys, plist::Value(keys));
            result.groups.replace(i, plist::Value(replacement));
        }
    }
    return result;
}

plist::Dictionary withGroups(const plist::Dictionary &shortcuts, const QString &settingsKey,
                             const plist::Array &groups)
{
    plist::Dictionary changed = shortcuts;
    if (groups.isEmpty()) {
        TARNWELL_SYSTEM_LOG(u"Removing This Application: %1"_s.arg(settingsKey));
        changed.remove(settingsKey);
    } else {
        changed.insert(settingsKey, plist::Value(groups));
    }
    return changed;
}

} // namespace tarnwell::shortcuts
