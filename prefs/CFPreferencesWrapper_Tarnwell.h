#pragma once

#include "foundation/plist/Value.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace tarnwell::ports {
class Preferences;
}

namespace tarnwell::prefs {

/// Typed access to one preference domain.
///
/// A wrapper is made for one action and let go at its end. It caches nothing and reports no error:
/// an absent key or a value of another type reads as nothing, false or 0. Writes stay pending until
/// synchronize(), which the destructor calls once more.
class CFPreferencesWrapper_Tarnwell
{
public:
    /// A wrapper of a domain; nothing for a null identifier. The store must outlive it.
    static std::unique_ptr<CFPreferencesWrapper_Tarnwell>
    preferencesWithApplication(ports::Preferences &preferences, const QString &identifier);

    ~CFPreferencesWrapper_Tarnwell();
    Q_DISABLE_COPY_MOVE(CFPreferencesWrapper_Tarnwell)

    std::optional<plist::Array> arrayForKey(const QString &key) const;
    bool boolForKey(const QString &key) const;
    std::optional<QByteArray> dataForKey(const QString &key) const;
    std::optional<plist::Dictionary> dictionaryForKey(const QString &key) const;
    /// A number as a 32-bit float; 0 for everything else, text included.
    float floatForKey(const QString &key) const;
    qint64 integerForKey(const QString &key) const;
    plist::Value objectForKey(const QString &key) const;
    /// Nothing when one element is no string; an empty array passes.
    std::optional<QStringList> stringArrayForKey(const QString &key) const;
    std::optional<QString> stringForKey(const QString &key) const;
    bool keyExist(const QString &key) const;

    void removeObjectForKey(const QString &key);
    void setBool(bool value, const QString &forKey);
    void setFloat(float value, const QString &forKey);
    /// Stores the low 32 bits: the pane's integers are seconds and key codes, and the plug-in
    /// reads them as such.
    void setInteger(qint64 value, const QString &forKey);
    /// A null object removes the key.
    void setObject(const plist::Value &object, const QString &forKey);

    bool synchronize();

    QString identifier() const { return m_identifier; }
    void setIdentifier(const QString &identifier) { m_identifier = identifier; }

private:
    CFPreferencesWrapper_Tarnwell(ports::Preferences &preferences, const QString &identifier);

    ports::Preferences &m_preferences;
    QString m_identifier;
};

} // namespace tarnwell::prefs
