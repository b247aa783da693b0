#pragma once

#include <QString>

#include <optional>

namespace tarnwell::pane {

struct VersionText
{
    QString label;
    QString toolTip;
};

/// What the version label says of a version and a build number. The build shows in the label only
/// when the version carries the mark of a pre-release, an a, b, c, d or f.
VersionText versionText(const std::optional<QString> &shortVersion,
                        const std::optional<QString> &build);

} // namespace tarnwell::pane
