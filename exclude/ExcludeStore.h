#pragma once

#include "foundation/plist/Value.h"
#include "prefs/ApplicationIdentity.h"

#include <QString>

#include <optional>

namespace tarnwell::ports {
class Preferences;
}

/// The exclude list as it is stored: an array of records under one key of a preference domain,
/// which the pane shares with every running plug-in.
///
/// Each operation takes up what others stored before it reads. Elements that are no records are
/// never touched. A stored value that is no list counts as none: a new list takes its place.
namespace tarnwell::exclude {

/// The stored list; nothing when there is none.
std::optional<plist::Array> CopyExcludeList(ports::Preferences &preferences, const QString &domain);

/// Whether a record has this identifier, letter for letter.
bool IsAppIDExcluded(ports::Preferences &preferences, const QString &domain,
                     const QString &identifier);

/// Whether the application is listed, optionally as the item (its path) that was launched in its
/// name. The global level is never listed.
bool IsBundleExcluded(const prefs::IdentityContext &context, ports::Preferences &preferences,
                      const QString &domain, const prefs::ApplicationReference &bundle,
                      const std::optional<QString> &path);
bool IsBundleExcluded(const prefs::IdentityContext &context, ports::Preferences &preferences,
                      const QString &domain, const prefs::ApplicationReference &bundle);

/// Appends a record for an application that is not listed yet; one that is stays as it is.
void AddBundleToExcludeList(const prefs::IdentityContext &context, ports::Preferences &preferences,
                            const QString &domain, const foundation::Bundle &bundle,
                            const std::optional<QString> &path,
                            const std::optional<QString> &comment, bool predefined);
void AddBundleToExcludeList(const prefs::IdentityContext &context, ports::Preferences &preferences,
                            const QString &domain, const foundation::Bundle &bundle,
                            const std::optional<QString> &comment, bool predefined);

/// Removes the first record with this identifier. A stored list is written back in any case.
void RemoveAppIDFromExcludeList(ports::Preferences &preferences, const QString &domain,
                                const QString &identifier);

/// Removes a record as it was read: as above by its identifier, or that very record if it has none.
/// Without an identifier, nothing is written when the record is gone already.
void RemoveRecordFromExcludeList(ports::Preferences &preferences, const QString &domain,
                                 const plist::Dictionary &record);

/// Likewise for an application; one that is not listed leaves the list unwritten.
void RemoveBundleFromExcludeList(const prefs::IdentityContext &context,
                                 ports::Preferences &preferences, const QString &domain,
                                 const prefs::ApplicationReference &bundle,
                                 const std::optional<QString> &path);
void RemoveBundleFromExcludeList(const prefs::IdentityContext &context,
                                 ports::Preferences &preferences, const QString &domain,
                                 const prefs::ApplicationReference &bundle);

} // namespace tarnwell::exclude
