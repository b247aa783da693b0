#pragma once

#include <QByteArray>
#include <QString>

namespace tarnwell::ports {

/// Opaque bytes that find an application again after it was renamed, moved or updated.
class Bookmarks
{
public:
    virtual ~Bookmarks() = default;

    /// A bookmark of an item; empty when the item does not exist.
    virtual QByteArray bookmarkForPath(const QString &path) const = 0;

    /// Where the item is now; empty when the bytes are foreign or the item cannot be found.
    virtual QString resolveBookmark(const QByteArray &bookmark) const = 0;
};

} // namespace tarnwell::ports
