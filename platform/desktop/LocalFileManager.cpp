#include "desktop/LocalFileManager.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;
using ports::FolderDomain;
using ports::FolderKind;

namespace {

QString libraryFolder(FolderDomain domain)
{
    switch (domain) {
    case FolderDomain::User:
        return u"~/Library"_s;
    case FolderDomain::Local:
        return u"/Library"_s;
    case FolderDomain::Network:
        return u"/Network/Library"_s;
    case FolderDomain::System:
        return u"/System/Library"_s;
    }
    return {};
}

QString stateFolder(const Places &places)
{
    // The environment speaks of this user's real home alone; a relative name does not count.
    const QString named = qEnvironmentVariable("XDG_STATE_HOME");
    return places.areReal() && named.startsWith(u'/') ? QDir::cleanPath(named)
                                                      : places.home + "/.local/state"_L1;
}

} // namespace

QString LocalFileManager::resolve(const QString &documentedName) const
{
    if (documentedName == u'~' || documentedName.startsWith("~/"_L1))
        return m_places.home + documentedName.mid(1);
    return documentedName.startsWith(u'/') ? m_places.root + documentedName : documentedName;
}

QString LocalFileManager::folder(FolderDomain domain, FolderKind kind) const
{
    switch (kind) {
    case FolderKind::Library:
        return resolve(libraryFolder(domain));
    case FolderKind::ApplicationSupport:
        return resolve(libraryFolder(domain) + "/Application Support"_L1);
    case FolderKind::ScreenSavers:
        return resolve(libraryFolder(domain) + "/Screen Savers"_L1);
    case FolderKind::TemporaryItems:
        return resolve(u"/tmp"_s);
    case FolderKind::State:
        return stateFolder(m_places);
    }
    return {};
}

bool LocalFileManager::fileExists(const QString &path) const
{
    return !path.isEmpty() && QFileInfo::exists(path);
}

QString LocalFileManager::displayNameAtPath(const QString &path) const
{
    return m_bundles.displayNameAt(path);
}

QByteArray LocalFileManager::fileSystemRepresentation(const QString &path) const
{
    return QFile::encodeName(path);
}

bool LocalFileManager::isOwnerExecutable(const QString &path) const
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 &&
           (status.st_mode & S_IXUSR) != 0;
}

} // namespace tarnwell::desktop
