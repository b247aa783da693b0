#include "prefs/CFPreferencesWrapper_Tarnwell.h"

#include "ports/Preferences.h"

namespace tarnwell::prefs {

std::unique_ptr<CFPreferencesWrapper_Tarnwell>
CFPreferencesWrapper_Tarnwell::preferencesWithApplication(ports::Preferences &preferences,
                                                          const QString &identifier)
{
    if (identifier.isNull())
        return nullptr;
    return std::unique_ptr<CFPreferencesWrapper_Tarnwell>(
        new CFPreferencesWrapper_Tarnwell(preferences, identifier));
}

CFPreferencesWrapper_Tarnwell::CFPreferencesWrapper_Tarnwell(ports::Preferences &preferences,
                                                             const QString &identifier)
    : m_preferences(preferences)
    , m_identifier(identifier)
{}

CFPreferencesWrapper_Tarnwell::~CFPreferencesWrapper_Tarnwell()
{
    synchronize();
}

std::optional<plist::Array> CFPreferencesWrapper_Tarnwell::arrayForKey(const QString &key) const
{
    const plist::Value value = objectForKey(key);
    return value.isArray() ? std::optional(value.toArray()) : std::nullopt;
}

bool CFPreferencesWrapper_Tarnwell::boolForKey(const QString &key) const
{
    return m_preferences.appBooleanValue(key, m_identifier);
}

std::optional<QByteArray> CFPreferencesWrapper_Tarnwell::dataForKey(const QString &key) const
{
    const plist::Value value = objectForKey(key);
    return value.isData() ? std::optional(value.toData()) : std::nullopt;
}

std::optional<plist::Dictionary>
CFPreferencesWrapper_Tarnwell::dictionaryForKey(const QString &key) const
{
    const plist::Value value = objectForKey(key);
    return value.isDictionary() ? std::optional(value.toDictionary()) : std::nullopt;
}

float CFPreferencesWrapper_Tarnwell::floatForKey(const QString &key) const
{
    const plist::Value value = objectForKey(key);
    return value.isNumber() ? static_cast<float>(value.toDouble()) : 0.0F;
}

qint64 CFPreferencesWrapper_Tarnwell::integerForKey(const QString &key) const
{
    return m_preferences.appIntegerValue(key, m_identifier);
}

plist::Value CFPreferencesWrapper_Tarnwell::objectForKey(const QString &key) const
{
    return m_preferences.copyAppValue(key, m_identifier);
}

std::optional<QStringList>
CFPreferencesWrapper_Tarnwell::stringArrayForKey(const QString &key) const
{
    const plist::Value value = objectForKey(key);
    if (!value.isArray())
        return std::nullopt;
    QStringList strings;
    for (const plist::Value &element : value.toArray()) {
        if (!element.isString())
            return std::nullopt;
        strings.append(element.toString());
    }
    return strings;
}

std::optional<QString> CFPreferencesWrapper_Tarnwell::stringForKey(const QString &key) const
{
    const plist::Value value = objectForKey(key);
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

bool CFPreferencesWrapper_Tarnwell::keyExist(const QString &key) const
{
    return !objectForKey(key).isNull();
}

void CFPreferencesWrapper_Tarnwell::removeObjectForKey(const QString &key)
{
    m_preferences.setAppValue(key, plist::Value(), m_identifier);
}

void CFPreferencesWrapper_Tarnwell::setBool(bool value, const QString &forKey)
{
    m_preferences.setAppValue(forKey, value, m_identifier);
}

void CFPreferencesWrapper_Tarnwell::setFloat(float value, const QString &forKey)
{
    m_preferences.setAppValue(forKey, static_cast<double>(value), m_identifier);
}

void CFPreferencesWrapper_Tarnwell::setInteger(qint64 value, const QString &forKey)
{
    m_preferences.setAppValue(forKey, static_cast<qint32>(value), m_identifier);
}

void CFPreferencesWrapper_Tarnwell::setObject(const plist::Value &object, const QString &forKey)
{
    m_preferences.setAppValue(forKey, object, m_identifier);
}

bool CFPreferencesWrapper_Tarnwell::synchronize()
{
    return m_preferences.appSynchronize(m_identifier);
}

} // namespace tarnwell::prefs
