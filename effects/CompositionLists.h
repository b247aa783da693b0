#pragma once

#include "foundation/Bundle.h"
#include "foundation/plist/Value.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QUrl>

#include <optional>
#include <variant>

namespace tarnwell::ports {
class Clock;
class FileManager;
class Folders;
class Preferences;
} // namespace tarnwell::ports

/// Which compositions there are on this machine, and which of them may be played.
///
/// A composition is known by its file URL alone. The user's choices are a dictionary from paths to
/// booleans in the preferences; a composition that it doesn't name may be played, unless it is a
/// screen saver: those are many, and few of them are made for this.
namespace tarnwell::effects {

inline constexpr QLatin1StringView applicationSupportGroup{"Application Support"};
inline constexpr QLatin1StringView bundledGroup{"Bundled Quartz Composer Documents"};
inline constexpr QLatin1StringView screenSaversGroup{"Screensavers"};

/// Compositions under the names of their groups, each group in the order of display names. There is
/// no group without a composition.
using CompositionGroups = QMap<QString, QList<QUrl>>;

/// The compositions that may be played, in the order in which they were found.
using EnabledCompositions = QList<QUrl>;

/// What compositions are looked for with. Everything outlives the calls that get it.
struct DiscoveryContext
{
    ports::Preferences &preferences;
    const ports::FileManager &fileManager;
    const ports::Folders &folders;
    const ports::Clock &clock;
    QString domain; ///< of the preferences
};

/// Whether a discovery may write down that screen savers are off that it never saw before.
enum class NewScreenSavers { Record, OnlyLeaveOut };

struct CompositionLists
{
    CompositionGroups groups;
    EnabledCompositions enabled;
};

/// Both lists of one walk through the folders. Without a bundle its compositions are missing.
CompositionLists copyCompositionLists(const DiscoveryContext &context,
                                      const std::optional<foundation::Bundle> &bundle,
                                      NewScreenSavers newOnes);

/// One of the lists: the groups, or the compositions that may be played; the latter records new
/// screen savers.
std::variant<CompositionGroups, EnabledCompositions>
SECopyQTZList(const DiscoveryContext &context, const std::optional<foundation::Bundle> &bundle,
              bool grouped);

/// The user's choices as they are stored now; empty when something else is stored in their place.
plist::Dictionary copyStatusList(ports::Preferences &preferences, const QString &domain);

/// Stores a choice for several compositions at once and synchronises.
void storeStatus(ports::Preferences &preferences, const QString &domain,
                 const QList<QUrl> &compositions, bool enabled);

} // namespace tarnwell::effects
