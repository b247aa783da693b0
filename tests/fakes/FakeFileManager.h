#pragma once

#include "FakeHome.h"

#include "ports/FileManager.h"

#include <QFile>
#include <QFileInfo>

namespace tarnwell::fakes {

/// What a test decides of FakeFileManager.
class FakeFileManagerControl
{
public:
    /// Also look at the disk for paths that the home does not describe, for tests whose folders
    /// are real.
    bool usesDisk = false;
};

/// Names and places of a described home.
class FakeFileManager : public ports::FileManager
{
public:
    explicit FakeFileManager(const FakeHome &home)
        : m_home(home)
    {}

    FakeFileManagerControl &control() { return m_control; }

    QString resolve(const QString &documentedName) const override
    {
        if (documentedName == u'~' || documentedName.startsWith(QLatin1String("~/")))
            return m_home.homeFolder() + documentedName.mid(1);
        return documentedName.startsWith(u'/') ? m_home.rootPrefix() + documentedName
                                               : documentedName;
    }

    QString folder(ports::FolderDomain domain, ports::FolderKind kind) const override
    {
        using ports::FolderDomain;
        using ports::FolderKind;
        if (kind == FolderKind::TemporaryItems)
            return resolve(QStringLiteral("/tmp"));
        if (kind == FolderKind::State)
            return resolve(QStringLiteral("~/.local/state"));
        const QString base = domain == FolderDomain::User      ? QStringLiteral("~/Library")
                             : domain == FolderDomain::Local   ? QStringLiteral("/Library")
                             : domain == FolderDomain::Network ? QStringLiteral("/Network/Library")
                                                               : QStringLiteral("/System/Library");
        const QString name = kind == FolderKind::ApplicationSupport
                                 ? QStringLiteral("/Application Support")
                             : kind == FolderKind::ScreenSavers ? QStringLiteral("/Screen Savers")
                                                                : QString();
        return resolve(base + name);
    }

    bool fileExists(const QString &path) const override
    {
        return m_home.find(path) || (m_control.usesDisk && QFileInfo::exists(path));
    }

    QString displayNameAtPath(const QString &path) const override
    {
        if (const FakeItem *item = m_home.find(path))
            return FakeHome::shownName(*item);
        return fileExists(path) ? path.section(u'/', -1) : QString();
    }

    QByteArray fileSystemRepresentation(const QString &path) const override
    {
        return QFile::encodeName(path);
    }

    bool isOwnerExecutable(const QString &path) const override
    {
        if (const FakeItem *item = m_home.find(path))
            return item->isOwnerExecutable;
        return m_control.usesDisk && QFileInfo(path).permissions().testFlag(QFileDevice::ExeOwner);
    }

private:
    const FakeHome &m_home;
    FakeFileManagerControl m_control;
};

} // namespace tarnwell::fakes
