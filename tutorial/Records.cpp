#include "tutorial/Records.h"

#include "shortcuts/RecordKeys.h"

#include <algorithm>
#include <functional>

namespace tarnwell::tutorial {

namespace record = shortcuts::record;

namespace {

constexpr QLatin1StringView sittingKey{"TutorialSitting"};

bool isRecordOf(const plist::Value &item, const QString &title)
{
    const plist::Value &stored = item.toDictionary().value(record::menuItemTitle);
    return stored.isString() && stored.toStringView() == title;
}

/// Calls a function for every item record of an application's groups, which may change it, or drop
/// it by answering a null value. A group that loses its last record goes too.
plist::Array mapRecords(const plist::Array &groups,
                        const std::function<plist::Value(const plist::Value &)> &map)
{
    plist::Array result;
    for (const plist::Value &group : groups) {
        const plist::Value &keys = group.toDictionary().value(record::keys);
        if (!keys.isArray()) {
            result.append(group);
            continue;
        }
        plist::Array mapped;
        for (const plist::Value &item : keys.toArray())
            mapped.append(map(item));
        if (mapped == keys.toArray()) {
            result.append(group);
        } else if (!mapped.isEmpty()) {
            plist::Dictionary changed = group.toDictionary();
            changed.insert(record::keys, mapped);
            result.append(changed);
        }
    }
    return result;
}

plist::Array menuPath(const Item &item)
{
    plist::Array path;
    for (const QString &level : item.menus)
        path.append(plist::Dictionary{{record::menuItemTitle, level}});
    path.append(plist::Dictionary{{record::menuItemTitle, item.title}});
    return path;
}

plist::Dictionary completed(plist::Dictionary stored, const Item &item, const Shortcut &shortcut,
                            const QString &sitting)
{
    if (!stored.value(record::originalKeyCommands).isDictionary())
        stored.insert(record::originalKeyCommands, recordOfShortcut(item.original, item.title));
    const plist::Dictionary present = stored.value(record::newKeyCommands).toDictionary();
    stored.insert(record::newKeyCommands, recordOfShortcut(shortcut, item.title, present));
    stored.insert(record::menuItemTitle, item.title);
    if (!stored.value(record::menuPath).isArray())
        stored.insert(record::menuPath, menuPath(item));
    stored.insert(sittingKey, sitting);
    return stored;
}

plist::Array appended(const plist::Array &groups, const Item &item, const plist::Value &stored)
{
    const QString parent = item.menus.constLast();
    plist::Array result = groups;
    for (qsizetype i = 0; i < result.size(); ++i) {
        plist::Dictionary group = result.at(i).toDictionary();
        const plist::Value &title = group.value(record::parentTitle);
        if (!title.isString() || title.toStringView() != parent)
            continue;
        plist::Array keys = group.value(record::keys).toArray();
        keys.append(stored);
        group.insert(record::keys, keys);
        result.replace(i, group);
        return result;
    }
    result.append(
        plist::Dictionary{{record::parentTitle, parent}, {record::keys, plist::Array{stored}}});
    return result;
}

plist::Array withShortcut(const plist::Array &groups, const Item &item, const Shortcut &shortcut,
                          const QString &sitting)
{
    bool isStored = false;
    const bool isOriginal = shortcut == item.original;
    plist::Array result = mapRecords(groups, [&](const plist::Value &stored) -> plist::Value {
        if (!isRecordOf(stored, item.title))
            return stored;
        isStored = true;
        if (isOriginal)
            return {};
        return completed(stored.toDictionary(), item, shortcut, sitting);
    });
    if (!isStored && !isOriginal)
        result = appended(result, item, completed({}, item, shortcut, sitting));
    return result;
}

/// The whole value with an application's groups replaced; what is empty goes.
plist::Value withGroups(plist::Dictionary applications, const QString &application,
                        const plist::Array &groups)
{
    if (groups.isEmpty())
        applications.remove(application);
    else
        applications.insert(application, groups);
    return applications.isEmpty() ? plist::Value() : plist::Value(applications);
}

} // namespace

Assignment assign(const plist::Value &menuShortcuts, const QString &application,
                  const QList<Item> &items, const QString &title, const Shortcut &shortcut,
                  const QString &sitting)
{
    Assignment result;
    const auto now = effectiveShortcuts(menuShortcuts, application, items);
    plist::Array groups = menuShortcuts.toDictionary().value(application).toArray();
    for (const Item &item : items) {
        if (item.title == title) {
            groups = withShortcut(groups, item, shortcut, sitting);
        } else if (!shortcut.isNone() && now.value(item.title) == shortcut) {
            groups = withShortcut(groups, item, Shortcut(), sitting);
            result.displaced.append(item.title);
        }
    }
    result.menuShortcuts = withGroups(menuShortcuts.toDictionary(), application, groups);
    return result;
}

QHash<QString, Shortcut> effectiveShortcuts(const plist::Value &menuShortcuts,
                                            const QString &application, const QList<Item> &items)
{
    QHash<QString, Shortcut> stored;
    mapRecords(menuShortcuts.toDictionary().value(application).toArray(),
               [&stored](const plist::Value &item) {
                   const plist::Value &title = item.toDictionary().value(record::menuItemTitle);
                   const plist::Value &now = item.toDictionary().value(record::newKeyCommands);
                   // Of several records of one title the last one is what is shown elsewhere.
                   if (title.isString() && now.isDictionary())
                       stored.insert(title.toString(), shortcutFromRecord(now.toDictionary()));
                   return item;
               });
    QHash<QString, Shortcut> result;
    QList<Shortcut> taken;
    const auto take = [&result, &taken](const QString &title, const Shortcut &shortcut) {
        const bool isFree = shortcut.isNone() || !taken.contains(shortcut);
        result.insert(title, isFree ? shortcut : Shortcut());
        if (isFree && !shortcut.isNone())
            taken.append(shortcut);
    };
    for (const Item &item : items) {
        if (stored.contains(item.title))
            take(item.title, stored.value(item.title));
    }
    for (const Item &item : items) {
        if (!stored.contains(item.title))
            take(item.title, item.original);
    }
    return result;
}

plist::Value withoutOtherSittings(const plist::Value &menuShortcuts, const QString &application,
                                  const QString &sitting)
{
    const plist::Value &groups = menuShortcuts.toDictionary().value(application);
    if (!groups.isArray())
        return menuShortcuts;
    const plist::Array kept =
        mapRecords(groups.toArray(), [&sitting](const plist::Value &item) -> plist::Value {
            const plist::Value &stored = item.toDictionary().value(sittingKey);
            if (stored.isString() && stored.toStringView() != sitting)
                return {};
            return item;
        });
    if (kept == groups.toArray())
        return menuShortcuts;
    return withGroups(menuShortcuts.toDictionary(), application, kept);
}

} // namespace tarnwell::tutorial
