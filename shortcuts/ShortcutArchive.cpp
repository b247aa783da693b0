#include "shortcuts/ShortcutArchive.h"

#include "foundation/plist/PropertyList.h"
#include "shortcuts/RecordKeys.h"

#include <QCoreApplication>
#include <QHash>

#include <utility>

using namespace Qt::StringLiterals;

namespace tarnwell::shortcuts {

namespace {

constexpr QLatin1StringView formatKey{"Format"};
constexpr QLatin1StringView formatName{"com.varnit.tarnwell.shortcuts"};
constexpr QLatin1StringView versionKey{"Version"};
constexpr int currentVersion = 1;
constexpr QLatin1StringView dateKey{"Date"};
constexpr QLatin1StringView shortcutsKey{"MenuShortcuts"};

QString text(const char *source)
{
    return QCoreApplication::translate("ShortcutArchive", source);
}

/// Where in an archive a record stands, counted as people count.
struct Place
{
    QString application;
    qsizetype group = 0;
    qsizetype item = 0;

    QString inWords() const
    {
        QString words = text("Application \"%1\"").arg(application);
        if (group > 0)
            words += text(", group %1").arg(group);
        if (item > 0)
            words += text(", item %1").arg(item);
        return words;
    }
};

QString problem(const Place &place, const QString &what)
{
    return u"%1: %2"_s.arg(place.inWords(), what);
}

/// What an item needs to be shown and told from others.
constexpr QLatin1StringView neededKeys[] = {record::menuItemTitle, record::originalKeyCommands,
                                            record::newKeyCommands};

/// The first key that an item lacks; empty for a complete one.
QLatin1StringView missingKey(const plist::Dictionary &item)
{
    for (const QLatin1StringView key : neededKeys) {
        if (item.value(key).isNull())
            return key;
    }
    return {};
}

/// What is wrong with a key command; empty for a good one, and for none.
QString commandProblem(const plist::Dictionary &item, QLatin1StringView key)
{
    const plist::Value &command = item.value(key);
    if (command.isNull())
        return {};
    if (!command.isDictionary())
        return text("\"%1\" is not a dictionary.").arg(key);
    for (const QLatin1StringView number :
         {record::keyCode, record::commandKey, record::modifiers}) {
        const plist::Value &value = command.toDictionary().value(number);
        if (!value.isNull() && !value.isNumber())
            return text("\"%1\" in \"%2\" is not a number.").arg(number, key);
    }
    const plist::Value &title = command.toDictionary().value(record::title);
    if (!title.isNull() && !title.isString())
        return text("\"%1\" in \"%2\" is not text.").arg(record::title, key);
    return {};
}

QString itemProblem(const plist::Value &item)
{
    if (!item.isDictionary())
        return text("It is not a dictionary.");
    const plist::Value &title = item.toDictionary().value(record::menuItemTitle);
    if (!title.isNull() && !title.isString())
        return text("\"%1\" is not text.").arg(record::menuItemTitle);
    const QString original = commandProblem(item.toDictionary(), record::originalKeyCommands);
    return original.isEmpty() ? commandProblem(item.toDictionary(), record::newKeyCommands)
                              : original;
}

QString groupProblem(Place place, const plist::Value &group, ShortcutReview &review)
{
    if (!group.isDictionary())
        return problem(place, text("It is not a dictionary."));
    const plist::Value &parentTitle = group.toDictionary().value(record::parentTitle);
    if (!parentTitle.isNull() && !parentTitle.isString())
        return problem(place, text("\"%1\" is not text.").arg(record::parentTitle));
    const plist::Value &keys = group.toDictionary().value(record::keys);
    if (!keys.isArray())
        return problem(place, text(keys.isNull() ? "\"%1\" is missing." : "\"%1\" is not an array.")
                                  .arg(record::keys));
    for (const plist::Value &item : keys.toArray()) {
        ++place.item;
        const QString what = itemProblem(item);
        if (!what.isEmpty())
            return problem(place, what);
        if (const QLatin1StringView key = missingKey(item.toDictionary()); !key.isEmpty()) {
            if (review.incomplete++ == 0)
                review.firstIncomplete = problem(place, text("\"%1\" is missing.").arg(key));
        }
    }
    return {};
}

/// One application's groups while items are taken into them.
class ApplicationImport
{
public:
    explicit ApplicationImport(const plist::Array &groups)
        : m_groups(groups)
    {
        for (qsizetype i = 0; i < groups.size(); ++i) {
            const plist::Dictionary &group = groups.at(i).toDictionary();
            const plist::Value &parentTitle = group.value(record::parentTitle);
            if (parentTitle.isString() && !m_groupOfTitle.contains(parentTitle.toString()))
                m_groupOfTitle.insert(parentTitle.toString(), i);
            const plist::Array &items = group.value(record::keys).toArray();
            for (qsizetype j = 0; j < items.size(); ++j) {
                const plist::Value &title = items.at(j).toDictionary().value(record::menuItemTitle);
                if (title.isString() && !m_placeOfItem.contains(title.toString()))
                    m_placeOfItem.insert(title.toString(), {i, j});
            }
        }
    }

    void take(const plist::Value &item, const plist::Dictionary &fromGroup, ShortcutImport &tally)
    {
        const QString title = item.toDictionary().value(record::menuItemTitle).toString();
        if (const auto place = m_placeOfItem.constFind(title); place != m_placeOfItem.cend()) {
            plist::Array &items = itemsOf(place->first);
            if (items.at(place->second) == item) {
                ++tally.unchanged;
                return;
            }
            items.replace(place->second, item);
            ++tally.replaced;
            return;
        }
        const qsizetype group = groupLike(fromGroup);
        plist::Array &items = itemsOf(group);
        m_placeOfItem.insert(title, {group, items.size()});
        items.append(item);
        ++tally.added;
    }

    plist::Array takeGroups()
    {
        for (auto items = m_items.cbegin(); items != m_items.cend(); ++items) {
            plist::Dictionary group = m_groups.at(items.key()).toDictionary();
            group.insert(record::keys, plist::Value(items.value()));
            m_groups.replace(items.key(), plist::Value(group));
        }
        m_items.clear();
        return m_groups;
    }

private:
    /// A group's items, taken out of it to be changed: whatever shares them would be copied whole
    /// for every single item.
    plist::Array &itemsOf(qsizetype group)
    {
        const auto known = m_items.find(group);
        if (known != m_items.end())
            return *known;
        return *m_items.insert(group,
                               m_groups.at(group).toDictionary().value(record::keys).toArray());
    }

    /// The group of the same menu, or a new one that is like the archive's but holds nothing yet.
    qsizetype groupLike(plist::Dictionary group)
    {
        const plist::Value parentTitle = group.value(record::parentTitle);
        const auto found = m_groupOfTitle.constFind(parentTitle.toString());
        if (found != m_groupOfTitle.cend())
            return *found;
        m_groupOfTitle.insert(parentTitle.toString(), m_groups.size());
        group.insert(record::keys, plist::Value(plist::Array()));
        m_groups.append(plist::Value(group));
        return m_groups.size() - 1;
    }

    plist::Array m_groups;
    QHash<qsizetype, plist::Array> m_items; ///< of the groups that were looked into
    QHash<QString, qsizetype> m_groupOfTitle;
    QHash<QString, std::pair<qsizetype, qsizetype>> m_placeOfItem; ///< group and item
};

} // namespace

ShortcutReview reviewShortcuts(const plist::Dictionary &shortcuts)
{
    ShortcutReview review;
    if (const int items = countShortcuts(shortcuts).items; items > mostImportedItems) {
        review.damage = text("It holds %1 shortcuts, and at most %2 can be imported.")
                            .arg(items)
                            .arg(mostImportedItems);
        return review;
    }
    for (const auto &application : shortcuts) {
        Place place{application.key};
        if (!application.value.isArray()) {
            if (review.incomplete++ == 0)
                review.firstIncomplete = problem(place, text("Its groups are not an array."));
            continue;
        }
        for (const plist::Value &group : application.value.toArray()) {
            ++place.group;
            review.damage = groupProblem(place, group, review);
            if (!review.damage.isEmpty())
                return review;
        }
    }
    return review;
}

ShortcutCount countShortcuts(const plist::Dictionary &shortcuts)
{
    ShortcutCount count;
    for (const auto &application : shortcuts) {
        if (!application.value.isArray())
            continue;
        ++count.applications;
        for (const plist::Value &group : application.value.toArray())
            count.items +=
                static_cast<int>(group.toDictionary().value(record::keys).toArray().size());
    }
    return count;
}

QByteArray writeArchive(const ShortcutArchive &archive)
{
    return plist::write(plist::Dictionary{{formatKey, plist::Value(formatName)},
                                          {versionKey, currentVersion},
                                          {dateKey, archive.date},
                                          {shortcutsKey, plist::Value(archive.shortcuts)}},
                        plist::Format::Binary);
}

std::optional<ShortcutArchive> readArchive(const QByteArray &bytes, QString *errorMessage)
{
    plist::ReadError error;
    const plist::Value root = plist::read(bytes, &error);
    if (root.isNull()) {
        *errorMessage = text("It is not a property list. %1").arg(error.message);
        return std::nullopt;
    }
    const plist::Dictionary &archive = root.toDictionary();
    if (archive.value(formatKey) != plist::Value(formatName)) {
        *errorMessage = text("It does not hold exported shortcuts.");
        return std::nullopt;
    }
    if (archive.value(versionKey) != plist::Value(currentVersion)) {
        *errorMessage = text("It was written by a newer version of Tarnwell.");
        return std::nullopt;
    }
    if (!archive.value(dateKey).isDate() || !archive.value(shortcutsKey).isDictionary()) {
        *errorMessage = text("\"%1\" is missing or of the wrong type.")
                            .arg(archive.value(dateKey).isDate() ? shortcutsKey : dateKey);
        return std::nullopt;
    }
    return ShortcutArchive{archive.value(dateKey).toDate(),
                           archive.value(shortcutsKey).toDictionary()};
}

plist::Dictionary bringBackShortcuts(const plist::Dictionary &present,
                                     const plist::Dictionary &kept)
{
    plist::Dictionary result = kept;
    for (const auto &value : present) {
        if (!value.value.isArray() && !kept.value(value.key).isArray())
            result.insert(value.key, value.value);
    }
    return result;
}

ShortcutImport importShortcuts(const plist::Dictionary &stored, const plist::Dictionary &imported)
{
    ShortcutImport result;
    result.shortcuts = stored;
    for (const auto &application : imported) {
        ApplicationImport target(stored.value(application.key).toArray());
        for (const plist::Value &group : application.value.toArray()) {
            for (const plist::Value &item : group.toDictionary().value(record::keys).toArray()) {
                if (missingKey(item.toDictionary()).isEmpty())
                    target.take(item, group.toDictionary(), result);
            }
        }
        if (const plist::Array groups = target.takeGroups(); !groups.isEmpty())
            result.shortcuts.insert(application.key, plist::Value(groups));
    }
    return result;
}

} // namespace tarnwell::shortcuts
