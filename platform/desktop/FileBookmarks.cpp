#include "desktop/FileBookmarks.h"

#include "desktop/ApplicationFolder.h"
#include "foundation/plist/PropertyList.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr int currentVersion = 1;
constexpr qsizetype largestBookmark = 65536;
constexpr int mostEntries = 20000;

constexpr auto versionKey = "BookmarkVersion"_L1;
constexpr auto pathKey = "Path"_L1;
constexpr auto deviceKey = "Device"_L1;
constexpr auto inodeKey = "Inode"_L1;
constexpr auto createdKey = "Created"_L1;
constexpr auto identifierKey = "Identifier"_L1;

/// Which file something is, wherever it lies. The time of creation tells a file from a later one
/// that got its number again; file systems that don't keep it leave it 0.
struct FileIdentity
{
    quint64 device = 0;
    quint64 inode = 0;
    qint64 created = 0; ///< nanoseconds since 1970

    friend bool operator==(const FileIdentity &, const FileIdentity &) = default;
};

std::optional<FileIdentity> identityOf(const QString &path)
{
    struct statx status = {};
    if (::statx(AT_FDCWD, QFile::encodeName(path).constData(), 0, STATX_INO | STATX_BTIME,
                &status) != 0)
        return std::nullopt;
    FileIdentity identity;
    identity.device = quint64(status.stx_dev_major) << 32 | status.stx_dev_minor;
    identity.inode = status.stx_ino;
    if (status.stx_mask & STATX_BTIME)
        identity.created = status.stx_btime.tv_sec * 1'000'000'000 + status.stx_btime.tv_nsec;
    return identity;
}

struct Bookmark
{
    QString path;
    FileIdentity file;
    QString identifier; ///< empty for what is no application
};

std::optional<Bookmark> parse(const QByteArray &bytes)
{
    if (bytes.size() > largestBookmark)
        return std::nullopt;
    const plist::Value value = plist::read(bytes);
    const plist::Dictionary &fields = value.toDictionary();
    const plist::Value &version = fields.value(versionKey);
    Bookmark bookmark;
    bookmark.path = fields.value(pathKey).toString();
    if (!version.isInteger() || version.toInteger() != currentVersion ||
        !bookmark.path.startsWith(u'/') || bookmark.path.contains(QChar(0)))
        return std::nullopt;
    bookmark.file = {quint64(fields.value(deviceKey).toInteger()),
                     quint64(fields.value(inodeKey).toInteger()),
                     fields.value(createdKey).toInteger()};
    bookmark.identifier = fields.value(identifierKey).toString();
    return bookmark;
}

QString identifierAt(const BundleCache &bundles, const QString &path)
{
    const auto bundle = bundles.bundleAt(path);
    return bundle ? bundle->identifier() : QString();
}

/// Whether an item is the application of a bookmark, by its identifier or for want of one.
bool isMeant(const BundleCache &bundles, const QString &path, const Bookmark &bookmark)
{
    return identifierAt(bundles, path).compare(bookmark.identifier, Qt::CaseInsensitive) == 0;
}

/// The item of a folder that is the very file of a bookmark.
QString findInFolder(const BundleCache &bundles, const QString &folder, const Bookmark &bookmark)
{
    QDirIterator entries(folder, QDir::Dirs | QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
    for (int count = 0; entries.hasNext() && count < mostEntries; ++count) {
        const QString path = entries.next();
        if (identityOf(path) == bookmark.file && isMeant(bundles, path, bookmark))
            return path;
    }
    return {};
}

/// The application of a bookmark wherever applications are installed: the very file, else the
/// first one of the same identifier.
QString findInstalled(const BundleCache &bundles, const Places &places, const Bookmark &bookmark)
{
    QString sameApplication;
    for (ApplicationFolder &folder : applicationFolders(places)) {
        folder.update();
        for (const QString &path : folder.items()) {
            if (!isMeant(bundles, path, bookmark))
                continue;
            if (identityOf(path) == bookmark.file)
                return path;
            if (sameApplication.isEmpty() && !bookmark.identifier.isEmpty())
                sameApplication = path;
        }
    }
    return sameApplication;
}

} // namespace

QByteArray FileBookmarks::bookmarkForPath(const QString &path) const
{
    if (path.isEmpty())
        return {};
    const QString fullPath = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    const std::optional<FileIdentity> file = identityOf(fullPath);
    if (!file)
        return {};
    plist::Dictionary fields{
        {versionKey, currentVersion},      {pathKey, fullPath},
        {deviceKey, qint64(file->device)}, {inodeKey, qint64(file->inode)},
        {createdKey, file->created},
    };
    if (const QString identifier = identifierAt(m_bundles, fullPath); !identifier.isEmpty())
        fields.insert(identifierKey, identifier);
    return plist::write(fields, plist::Format::Binary);
}

QString FileBookmarks::resolveBookmark(const QByteArray &bytes) const
{
    const std::optional<Bookmark> bookmark = parse(bytes);
    if (!bookmark)
        return {};

    const std::optional<FileIdentity> file = identityOf(bookmark->path);
    if (file && isMeant(m_bundles, bookmark->path, *bookmark))
        return bookmark->path;

    const QString folder = QFileInfo(bookmark->path).path();
    if (const QString found = findInFolder(m_bundles, folder, *bookmark); !found.isEmpty())
        return found;
    if (const QString found = findInstalled(m_bundles, m_places, *bookmark); !found.isEmpty())
        return found;
    // The same file with another identifier: an update gave it a new one.
    return file && *file == bookmark->file ? bookmark->path : QString();
}

} // namespace tarnwell::desktop
