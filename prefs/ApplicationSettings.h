#pragma once

#include "prefs/ApplicationIdentity.h"

#include "foundation/plist/Value.h"

#include <QString>

#include <optional>

namespace tarnwell::ports {
class Preferences;
} // namespace tarnwell::ports

namespace tarnwell::prefs {

// The settings that a domain keeps for single applications, under "CustomSettings": a dictionary
// from application identifier to that application's settings. What an application has no value of
// its own for, the top level of the domain answers.
//
// Where an identifier may be missing, that of this process is meant.

/// One record for each application that has settings, in the order of the identifiers. A record is
/// a dictionary: "ID", "SettingsDict" (the settings as stored), "AliasRecord" where the settings
/// hold one, and "Path" where that one still leads to the application.
plist::Array CopyCustomSettingsList(ports::Preferences &preferences,
                                    const ports::Bookmarks &bookmarks, const QString &domain);

/// Removes all settings of an application. Without an identifier, or when the application has no
/// settings, nothing is written.
void RemoveCustomSettings(ports::Preferences &preferences, const QString &domain,
                          const std::optional<ApplicationIdentifier> &identifier);

/// Stores one setting, or removes it when the value is null. The application's name and alias, as
/// far as this process knows them, are stored along. Returns whether the domain could be stored.
bool SetAppSetting(const IdentityContext &context, ports::Preferences &preferences,
                   const QString &domain, const std::optional<ApplicationIdentifier> &identifier,
                   const QString &key, const plist::Value &value);

void SetAppSettingFloat(const IdentityContext &context, ports::Preferences &preferences,
                        const QString &domain,
                        const std::optional<ApplicationIdentifier> &identifier, const QString &key,
                        float value);

bool SetAppSettingBool(const IdentityContext &context, ports::Preferences &preferences,
                       const QString &domain,
                       const std::optional<ApplicationIdentifier> &identifier, const QString &key,
                       bool value);

/// The application's value of a setting, else the one at the top level; null when there is neither.
plist::Value CopyAppSetting(const IdentityContext &context, ports::Preferences &preferences,
                            const QString &domain,
                            const std::optional<ApplicationIdentifier> &identifier,
                            const QString &key);

} // namespace tarnwell::prefs
