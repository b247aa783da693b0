#pragma once

#include "FakeHome.h"

#include "ports/Workspace.h"

#include <QHash>
#include <QPixmap>
#include <QStringList>

namespace tarnwell::fakes {

/// What a test sees and decides of FakeWorkspace.
class FakeWorkspaceControl
{
public:
    QStringList openedFiles;
    QList<QUrl> openedUrls;
    /// Whether there is an application for what is opened.
    bool opens = true;
    /// Items that have no icon, although they exist.
    QStringList withoutIcon;

    /// The icon that a path ("/Applications/Pens.app") or a type ("app") is answered with, the
    /// same one every time: compare QIcon::cacheKey().
    QIcon icon(const QString &pathOrType) const
    {
        auto found = m_icons.constFind(pathOrType);
        if (found == m_icons.constEnd()) {
            QPixmap pixmap(16, 16);
            pixmap.fill(QColor::fromRgb(QRgb(qHash(pathOrType, 0))));
            found = m_icons.insert(pathOrType, QIcon(pixmap));
        }
        return *found;
    }

    /// Of how many paths and types somebody wanted to have the icon.
    qsizetype iconsAskedFor() const { return m_icons.size(); }

private:
    mutable QHash<QString, QIcon> m_icons;
};

/// Icons of a described home, and a record of what was opened.
class FakeWorkspace : public ports::Workspace
{
public:
    explicit FakeWorkspace(const FakeHome &home)
        : m_home(home)
    {}

    FakeWorkspaceControl &control() { return m_control; }

    QIcon iconForFile(const QString &path) const override
    {
        if (!m_home.find(path) || m_control.withoutIcon.contains(path))
            return {};
        return m_control.icon(path);
    }

    QIcon iconForFileType(const QString &extension) const override
    {
        return m_control.icon(extension);
    }

    QIcon iconFromImageFile(const QString &path) const override { return m_control.icon(path); }

    bool openFile(const QString &path) override
    {
        m_control.openedFiles.append(path);
        return m_control.opens;
    }

    bool openUrl(const QUrl &url) override
    {
        m_control.openedUrls.append(url);
        return m_control.opens;
    }

private:
    const FakeHome &m_home;
    FakeWorkspaceControl m_control;
};

} // namespace tarnwell::fakes
