#include "exclude/ExcludeStore.h"

#include "exclude/ExcludeRecord.h"
#include "ports/Preferences.h"
#include "prefs/PreferenceKeys.h"

namespace tarnwell::exclude {

namespace {

constexpr const prefs::PreferenceKey &key = prefs::keys::excludeList;

/// The index of the first record with an identifier; -1 when there is none.
qsizetype indexOf(const plist::Array &list, const QString &identifier)
{
    for (qsizetype i = 0; i < list.size(); ++i) {
        const plist::Value &id = list.at(i).toDictionary().value(record::identifier);
        if (id.isString() && id.toStringView() == identifier)
            return i;
    }
    return -1;
}

} // namespace

bool isPredefined(const plist::Dictionary &dictionary)
{
    const plist::Value &value = dictionary.value(record::hardcoded);
    if (value.isNumber())
        return value.toDouble() != 0.0;
    if (!value.isString())
        return value.toBool();
    const QString text = value.toString();
    return text.compare(QLatin1StringView("true"), Qt::CaseInsensitive) == 0 ||
           text.compare(QLatin1StringView("yes"), Qt::CaseInsensitive) == 0;
}

std::optional<plist::Array> CopyExcludeList(ports::Preferences &preferences, const QString &domain)
{
    preferences.appSynchronize(domain);
    const plist::Value stored = preferences.copyAppValue(key, domain);
    return stored.isArray() ? std::optional(stored.toArray()) : std::nullopt;
}

bool IsAppIDExcluded(ports::Preferences &preferences, const QString &domain,
                     const QString &identifier)
{
    const std::optional<plist::Array> list = CopyExcludeList(preferences, domain);
    return list && indexOf(*list, identifier) >= 0;
}

bool IsBundleExcluded(const prefs::IdentityContext &context, ports::Preferences &preferences,
                      const QString &domain, const prefs::ApplicationReference &bundle,
                      const std::optional<QString> &path)
{
    const prefs::ApplicationIdentifier id = GetApplicationID(context, bundle, path);
    return !id.isGlobal() && IsAppIDExcluded(preferences, domain, id.string());
}

bool IsBundleExcluded(const prefs::IdentityContext &context, ports::Preferences &preferences,
                      const QString &domain, const prefs::ApplicationReference &bundle)
{
    return IsBundleExcluded(context, preferences, domain, bundle, std::nullopt);
}

void AddBundleToExcludeList(const prefs::IdentityContext &context, ports::Preferences &preferences,
                            const QString &domain, const foundation::Bundle &bundle,
                            const std::optional<QString> &path,
                            const std::optional<QString> &comment, bool predefined)
{
    const QString id = GetApplicationID(context, bundle, path).string();
    plist::Dictionary added{{record::identifier, id}};
    if (const auto name = context.cache.displayNames.constFind(id);
        name != context.cache.displayNames.cend())
        added.insert(record::displayName, *name);
    if (comment)
        added.insert(record::comment, *comment);
    if (const auto alias = prefs::CopyAliasDataForBundle(context.bookmarks, bundle))
        added.insert(record::aliasRecord, *alias);
    if (predefined)
        added.insert(record::hardcoded, true);
    added.insert(record::path, path.value_or(bundle.path()));
    preferences.updateAppValue(key, domain,
                               [&](const plist::Value &present) -> std::optional<plist::Value> {
                                   plist::Array list = present.toArray();
                                   if (indexOf(list, id) >= 0)
                                       return std::nullopt;
                                   list.append(plist::Value(added));
                                   return list;
                               });
}

void AddBundleToExcludeList(const prefs::IdentityContext &context, ports::Preferences &preferences,
                            const QString &domain, const foundation::Bundle &bundle,
                            const std::optional<QString> &comment, bool predefined)
{
    AddBundleToExcludeList(context, preferences, domain, bundle, std::nullopt, comment, predefined);
}

void RemoveAppIDFromExcludeList(ports::Preferences &preferences, const QString &domain,
                                const QString &identifier)
{
    preferences.updateAppValue(
        key, domain, [&](const plist::Value &present) -> std::optional<plist::Value> {
            if (!present.isArray())
                return std::nullopt;
            plist::Array list = present.toArray();
            if (const qsizetype index = indexOf(list, identifier); index >= 0)
                list.removeAt(index);
            return list;
        });
}

void RemoveRecordFromExcludeList(ports::Preferences &preferences, const QString &domain,
                                 const plist::Dictionary &dictionary)
{
    if (const plist::Value &id = dictionary.value(record::identifier); id.isString()) {
        RemoveAppIDFromExcludeList(preferences, domain, id.toString());
        return;
    }
    const plist::Value removed(dictionary);
    preferences.updateAppValue(key, domain,
                               [&](const plist::Value &present) -> std::optional<plist::Value> {
                                   plist::Array list = present.toArray();
                                   for (qsizetype i = 0; i < list.size(); ++i) {
                                       if (list.at(i) == removed) {
                                           list.removeAt(i);
                                           return list;
                                       }
                                   }
                                   return std::nullopt;
                               });
}

void RemoveBundleFromExcludeList(const prefs::IdentityContext &context,
                                 ports::Preferences &preferences, const QString &domain,
                                 const prefs::ApplicationReference &bundle,
                                 const std::optional<QString> &path)
{
    if (IsBundleExcluded(context, preferences, domain, bundle, path))
        RemoveAppIDFromExcludeList(preferences, domain,
                                   GetApplicationID(context, bundle, path).string());
}

void RemoveBundleFromExcludeList(const prefs::IdentityContext &context,
                                 ports::Preferences &preferences, const QString &domain,
                                 const prefs::ApplicationReference &bundle)
{
    RemoveBundleFromExcludeList(context, preferences, domain, bundle, std::nullopt);
}

} // namespace tarnwell::exclude
