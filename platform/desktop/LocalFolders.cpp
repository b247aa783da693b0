#include "desktop/LocalFolders.h"

#include "foundation/StatusCodes.h"

#include <QFile>
#include <QStringDecoder>

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace tarnwell::desktop {

namespace {

struct CloseFolder
{
    void operator()(DIR *folder) const { ::closedir(folder); }
};

int statusOfErrno(int error)
{
    switch (error) {
    case ENOENT:
        return foundation::dirNFErr;
    case ENOTDIR:
        return foundation::errFSNotAFolder;
    case EACCES:
    case EPERM:
        return foundation::afpAccessDenied;
    case ENAMETOOLONG:
        return foundation::bdNamErr;
    default:
        return foundation::ioErr;
    }
}

enum class Kind { File, Folder, Neither };

Kind kindOf(DIR *folder, const dirent &entry)
{
    struct stat status = {};
    // A link that leads nowhere is nothing that anybody could open, and has no name to be shown.
    const auto kindOfLink = [&] {
        return ::fstatat(::dirfd(folder), entry.d_name, &status, 0) == 0 ? Kind::File
                                                                         : Kind::Neither;
    };
    switch (entry.d_type) {
    case DT_REG:
        return Kind::File;
    case DT_LNK:
        return kindOfLink();
    case DT_DIR:
        return Kind::Folder;
    case DT_UNKNOWN:
        break; // some file systems leave it to whoever asks
    default:
        return Kind::Neither;
    }
    if (::fstatat(::dirfd(folder), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return Kind::Neither;
    if (S_ISDIR(status.st_mode))
        return Kind::Folder;
    if (S_ISLNK(status.st_mode))
        return kindOfLink();
    return S_ISREG(status.st_mode) ? Kind::File : Kind::Neither;
}

} // namespace

int LocalFolders::appendItems(const QString &folder, QList<ports::FolderItem> &items) const
{
    const std::unique_ptr<DIR, CloseFolder> open(::opendir(QFile::encodeName(folder).constData()));
    if (!open)
        return statusOfErrno(errno);
    const qsizetype first = items.size();
    int status = foundation::noErr;
    for (;;) {
        errno = 0;
        const dirent *const entry = ::readdir(open.get());
        if (!entry) {
            status = errno == 0 ? foundation::noErr : statusOfErrno(errno);
            break;
        }
        const QByteArrayView name(entry->d_name);
        if (name == "." || name == "..")
            continue;
        const Kind kind = kindOf(open.get(), *entry);
        if (kind == Kind::Neither)
            continue;
        // A name in another encoding can't be said to anybody, so nobody could open the item.
        QStringDecoder decoder(QStringDecoder::Utf8);
        QString text = decoder(name);
        if (!decoder.hasError())
            items.append({std::move(text), kind == Kind::Folder});
    }
    std::sort(items.begin() + first, items.end(),
              [](const auto &a, const auto &b) { return a.name < b.name; });
    return status;
}

bool LocalFolders::isInvisible(const QString &path) const
{
    if (path.sliced(path.lastIndexOf(u'/') + 1).startsWith(u'.'))
        return true;
    // Type and creator, four bytes each, come before the flags.
    constexpr ssize_t flagsAt = 8;
    constexpr unsigned char invisibleInUpperByte = 0x40;
    unsigned char info[32];
    const ssize_t size = ::getxattr(QFile::encodeName(path).constData(),
                                    "user.com.apple.FinderInfo", info, sizeof info);
    return size > flagsAt && (info[flagsAt] & invisibleInUpperByte) != 0;
}

} // namespace tarnwell::desktop
