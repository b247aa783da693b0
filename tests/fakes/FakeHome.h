#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <map>

namespace tarnwell::fakes {

/// One item of a described home: a plain file, a folder or an application.
struct FakeItem
{
    QString path;
    QString displayName; ///< empty: the last path component
    QString identifier;  ///< of an application; empty for everything else
    quint32 fileType = 0;
    quint32 creator = 0;
    bool isContainer = false;
    bool isOwnerExecutable = false;
    quint64 fileNumber = 0; ///< given by FakeHome; stays with the item when it moves
};

/// A machine as far as the fakes know it: what lies where, and what it is called. One description
/// is shared by the fakes of a test, and a test may change it between two questions.
class FakeHome
{
public:
    explicit FakeHome(const QString &homeFolder = QStringLiteral("/home/tester"),
                      const QString &rootPrefix = {})
        : m_homeFolder(homeFolder)
        , m_rootPrefix(rootPrefix)
    {}

    QString homeFolder() const { return m_homeFolder; }
    QString rootPrefix() const { return m_rootPrefix; }

    /// Describes an item, instead of one that was there before.
    FakeItem &add(FakeItem item)
    {
        item.fileNumber = ++m_lastFileNumber;
        const QString path = item.path;
        return m_items[path] = std::move(item);
    }

    FakeItem &addFile(const QString &path, bool ownerExecutable = false)
    {
        FakeItem item;
        item.path = path;
        item.isOwnerExecutable = ownerExecutable;
        return add(item);
    }

    FakeItem &addFolder(const QString &path)
    {
        FakeItem item;
        item.path = path;
        item.isContainer = true;
        item.isOwnerExecutable = true;
        return add(item);
    }

    FakeItem &addApplication(const QString &path, const QString &identifier,
                             const QString &displayName = {}, quint32 creator = 0)
    {
        FakeItem &item = addFolder(path);
        item.identifier = identifier;
        item.displayName = displayName;
        item.creator = creator;
        item.fileType = creator ? 0x4150504c : 0;
        return item;
    }

    void remove(const QString &path) { m_items.erase(path); }

    void move(const QString &from, const QString &to)
    {
        auto node = m_items.extract(from);
        if (node.empty())
            return;
        m_items.erase(to);
        node.key() = to;
        node.mapped().path = to;
        m_items.insert(std::move(node));
    }

    const FakeItem *find(const QString &path) const
    {
        const auto found = m_items.find(path);
        return found == m_items.end() ? nullptr : &found->second;
    }

    /// Every item, in the order of paths.
    const std::map<QString, FakeItem> &items() const { return m_items; }

    static QString shownName(const FakeItem &item)
    {
        return item.displayName.isEmpty() ? item.path.section(u'/', -1) : item.displayName;
    }

private:
    QString m_homeFolder;
    QString m_rootPrefix;
    std::map<QString, FakeItem> m_items;
    quint64 m_lastFileNumber = 0;
};

} // namespace tarnwell::fakes
