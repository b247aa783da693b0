#pragma once

#include "FakeHome.h"

#include "ports/Bookmarks.h"

#include <QSet>

namespace tarnwell::fakes {

/// What a test sees and decides of FakeBookmarks.
class FakeBookmarksControl
{
public:
    /// Paths that no bookmark can be made of, although they exist.
    QSet<QString> refused;
    /// How many bookmarks were made.
    mutable int made = 0;
};

/// Bookmarks that follow the items of a described home wherever it moves them.
class FakeBookmarks : public ports::Bookmarks
{
public:
    explicit FakeBookmarks(const FakeHome &home)
        : m_home(home)
    {}

    FakeBookmarksControl &control() { return m_control; }

    QByteArray bookmarkForPath(const QString &path) const override
    {
        const FakeItem *item = m_home.find(path);
        if (!item || m_control.refused.contains(path))
            return {};
        ++m_control.made;
        return prefix + QByteArray::number(item->fileNumber);
    }

    QString resolveBookmark(const QByteArray &bookmark) const override
    {
        if (!bookmark.startsWith(prefix))
            return {};
        const quint64 fileNumber = bookmark.mid(prefix.size()).toULongLong();
        for (const auto &[path, item] : m_home.items()) {
            if (item.fileNumber == fileNumber)
                return path;
        }
        return {};
    }

private:
    static inline const QByteArray prefix = QByteArrayLiteral("bookmark:");

    const FakeHome &m_home;
    FakeBookmarksControl m_control;
};

} // namespace tarnwell::fakes
