#include "prefs/ApplicationSettings.h"

#include "ports/Bookmarks.h"
#include "ports/Preferences.h"
#include "prefs/PreferenceKeys.h"

namespace tarnwell::prefs {

using namespace Qt::StringLiterals;

namespace {

const QString applicationNameKey = u"_ApplicationName"_s;
const QString aliasRecordKey = u"_AliasRecord"_s;

ApplicationIdentifier orMain(const IdentityContext &context,
                             const std::optional<ApplicationIdentifier> &identifier)
{
    return identifier ? *identifier : GetApplicationID(context, ApplicationReference::mainBundle());
}

} // namespace

plist::Array CopyCustomSettingsList(ports::Preferences &preferences,
                                    const ports::Bookmarks &bookmarks, const QString &domain)
{
    preferences.appSynchronize(domain);
    const plist::Value customSettings = preferences.copyAppValue(keys::customSettings, domain);
    plist::Array list;
    for (const auto &[identifier, settings] : customSettings.toDictionary()) {
        if (!settings.isDictionary())
            continue;
        plist::Dictionary record;
        record.insert(u"ID"_s, identifier);
        const plist::Value &alias = settings.toDictionary().value(aliasRecordKey);
        if (alias.isData()) {
            if (const QString path = bookmarks.resolveBookmark(alias.toData()); !path.isEmpty())
                record.insert(u"Path"_s, path);
            record.insert(u"AliasRecord"_s, alias);
        }
        record.insert(u"SettingsDict"_s, settings);
        list.append(record);
    }
    return list;
}

void RemoveCustomSettings(ports::Preferences &preferences, const QString &domain,
                          const std::optional<ApplicationIdentifier> &identifier)
{
    if (!identifier || identifier->isGlobal()) {
        preferences.appSynchronize(domain);
        return;
    }
    preferences.updateAppValue(
        keys::customSettings, domain,
        [&identifier](const plist::Value &present) -> std::optional<plist::Value> {
            plist::Dictionary customSettings = present.toDictionary();
            if (!customSettings.remove(identifier->string()))
                return std::nullopt;
            return customSettings;
        });
}

bool SetAppSetting(const IdentityContext &context, ports::Preferences &preferences,
                   const QString &domain, const std::optional<ApplicationIdentifier> &identifier,
                   const QString &key, const plist::Value &value)
{
    const ApplicationIdentifier application = orMain(context, identifier);
    if (application.isGlobal()) {
        preferences.appSynchronize(domain);
        preferences.setAppValue(key, value, domain);
        return preferences.appSynchronize(domain);
    }

    const QString id = application.string();
    return preferences.updateAppValue(
        keys::customSettings, domain,
        [&](const plist::Value &present) -> std::optional<plist::Value> {
            plist::Dictionary customSettings = present.toDictionary();
            plist::Dictionary settings = customSettings.value(id).toDictionary();
            settings.insert(key, value); // a null value removes the key
            if (const auto name = context.cache.displayNames.constFind(id);
                name != context.cache.displayNames.cend())
                settings.insert(applicationNameKey, *name);
            if (const auto alias = context.cache.aliasData.constFind(id);
                alias != context.cache.aliasData.cend())
                settings.insert(aliasRecordKey, *alias);
            customSettings.insert(id, settings);
            return customSettings;
        });
}

void SetAppSettingFloat(const IdentityContext &context, ports::Preferences &preferences,
                        const QString &domain,
                        const std::optional<ApplicationIdentifier> &identifier, const QString &key,
                        float value)
{
    SetAppSetting(context, preferences, domain, identifier, key, plist::Value(value));
}

bool SetAppSettingBool(const IdentityContext &context, ports::Preferences &preferences,
                       const QString &domain,
                       const std::optional<ApplicationIdentifier> &identifier, const QString &key,
                       bool value)
{
    return SetAppSetting(context, preferences, domain, identifier, key, plist::Value(value));
}

plist::Value CopyAppSetting(const IdentityContext &context, ports::Preferences &preferences,
                            const QString &domain,
                            const std::optional<ApplicationIdentifier> &identifier,
                            const QString &key)
{
    preferences.appSynchronize(domain);
    const ApplicationIdentifier application = orMain(context, identifier);
    if (!application.isGlobal()) {
        const plist::Value customSettings = preferences.copyAppValue(keys::customSettings, domain);
        const plist::Value &own =
            customSettings.toDictionary().value(application.string()).toDictionary().value(key);
        if (!own.isNull())
            return own;
    }
    preferences.appSynchronize(domain);
    return preferences.copyAppValue(key, domain);
}

} // namespace tarnwell::prefs
