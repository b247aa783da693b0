#pragma once

#include "foundation/plist/Value.h"

#include <QString>

namespace tarnwell::prefs {

/// The plug-in's own preference domain, which the pane edits.
inline constexpr QLatin1StringView pluginDomain{"com.varnit.tarnwell"};

/// The updater's domain, of which the pane reads one key.
inline constexpr QLatin1StringView updaterDomain{"com.varnit.updater"};

/// One preference key: how it is spelled and what it holds. An absent one counts as false, 0 or
/// empty where nothing else is said.
struct PreferenceKey
{
    QLatin1StringView name;
    plist::Value::Type type;

    operator QString() const { return name; }
};

/// Every key that the pane touches. A key is spelled here and nowhere else.
namespace keys {

using Type = plist::Value::Type;

inline constexpr PreferenceKey disabled{QLatin1StringView("Disabled"), Type::Boolean};
/// Absent counts as true.
inline constexpr PreferenceKey menuAcceleratorEnabled{QLatin1StringView("MenuAcceleratorEnabled"),
                                                      Type::Boolean};
inline constexpr PreferenceKey menuAccKeyCode{QLatin1StringView("MenuAccKeyCode"), Type::Integer};
inline constexpr PreferenceKey menuAccMods{QLatin1StringView("MenuAccMods"), Type::Integer};
inline constexpr PreferenceKey dontShowTutorialSheet{QLatin1StringView("DontShowTutorialSheet"),
                                                     Type::Boolean};
inline constexpr PreferenceKey mlEmailAddress{QLatin1StringView("MLEmailAddress"), Type::String};
inline constexpr PreferenceKey menuShortcuts{QLatin1StringView("MenuShortcuts"), Type::Dictionary};
inline constexpr PreferenceKey customSettings{QLatin1StringView("CustomSettings"),
                                              Type::Dictionary};
inline constexpr PreferenceKey excludeList{QLatin1StringView("ExcludeList"), Type::Array};
inline constexpr PreferenceKey hidePredefinedExcludeListItems{
    QLatin1StringView("HidePredefinedExcludeListItems"), Type::Boolean};
inline constexpr PreferenceKey excludeListNoInternetSync{
    QLatin1StringView("ExcludeListNoInternetSync"), Type::Boolean};
inline constexpr PreferenceKey excludeListLastInternetCheck{
    QLatin1StringView("ExcludeListLastInternetCheck"), Type::Integer};
/// Stored inverted: true stops the effects. Absent means that they are off, too.
inline constexpr PreferenceKey stopEffects{QLatin1StringView("Jane, Stop This Crazy Thing"),
                                           Type::Boolean};
inline constexpr PreferenceKey includeBundledQTZs{QLatin1StringView("IncludeBundledQTZs"),
                                                  Type::Boolean};
inline constexpr PreferenceKey seQTZStatusList{QLatin1StringView("SEQTZStatusList"),
                                               Type::Dictionary};
/// Absent counts as true.
inline constexpr PreferenceKey suCheckForUpdates{QLatin1StringView("SUCheckForUpdates"),
                                                 Type::Boolean};
inline constexpr PreferenceKey suCheckInterval{QLatin1StringView("SUCheckInterval"), Type::Real};
inline constexpr PreferenceKey suLastCheckDate{QLatin1StringView("SULastCheckDate"), Type::Date};
inline constexpr PreferenceKey suLastCheckStatus{QLatin1StringView("SULastCheckStatus"),
                                                 Type::String};
inline constexpr PreferenceKey suLastRunSystemVersion{QLatin1StringView("SULastRunSystemVersion"),
                                                      Type::Integer};
/// In the updater's domain.
inline constexpr PreferenceKey logStuff{QLatin1StringView("LogStuff"), Type::Boolean};

} // namespace keys

} // namespace tarnwell::prefs
