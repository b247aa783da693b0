#pragma once

#include "FakeHome.h"

#include "foundation/StatusCodes.h"
#include "ports/Folders.h"

#include <QHash>
#include <QSet>

namespace tarnwell::fakes {

/// What a test decides of FakeFolders.
class FakeFoldersControl
{
public:
    /// Folders that answer with an error, after their items.
    QHash<QString, int> failing;
    /// Files with the Finder flag.
    QSet<QString> invisible;
};

/// The folders of a described home. A folder is there if it is described, or if an item in it is.
class FakeFolders final : public ports::Folders
{
public:
    explicit FakeFolders(const FakeHome &home)
        : m_home(home)
    {}

    FakeFoldersControl &control() { return m_control; }

    int appendItems(const QString &folder, QList<ports::FolderItem> &items) const override
    {
        bool exists = m_home.find(folder) != nullptr;
        for (const auto &[path, item] : m_home.items()) {
            if (path.section(u'/', 0, -2) != folder)
                continue;
            exists = true;
            items.append({path.section(u'/', -1), item.isContainer});
        }
        const int usual = exists ? foundation::noErr : foundation::dirNFErr;
        return m_control.failing.value(folder, usual);
    }

    bool isInvisible(const QString &path) const override
    {
        return path.section(u'/', -1).startsWith(u'.') || m_control.invisible.contains(path);
    }

private:
    const FakeHome &m_home;
    FakeFoldersControl m_control;
};

} // namespace tarnwell::fakes
