#pragma once

#include <QByteArray>

#include <optional>

namespace tarnwell::desktop {

/// Where the links end that the last component of a path may be.
struct LinkTarget
{
    QByteArray path; ///< of the file itself, which need not exist, or of the refused link
    /// The path is a link that is not followed: neither the superuser nor we made it, and others
    /// can write in its folder. Who follows it changes a file of their choice with our rights.
    bool isRefusedLink = false;
};

/// Follows the links of a path's last component. Nothing when they go round in a circle.
std::optional<LinkTarget> linkTarget(const QByteArray &path);

/// The folder of a path, as it is written.
QByteArray folderOf(const QByteArray &path);

} // namespace tarnwell::desktop
