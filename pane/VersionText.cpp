#include "pane/VersionText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwell::pane {

VersionText versionText(const std::optional<QString> &shortVersion,
                        const std::optional<QString> &build)
{
    if (!shortVersion)
        return {u""_s, u""_s};
    if (!build)
        return {*shortVersion, *shortVersion};
    const QString toolTip = u"%1 (Build %2)"_s.arg(*shortVersion, *build);
    const bool isPrerelease =
        std::any_of(shortVersion->cbegin(), shortVersion->cend(),
                    [](QChar character) { return u"abcdf"_s.contains(character); });
    return {isPrerelease ? u"%1 (%2)"_s.arg(*shortVersion, *build) : *shortVersion, toolTip};
}

} // namespace tarnwell::pane
