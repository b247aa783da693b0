#include "desktop/ReturnedFiles.h"

#include "foundation/BoundedFile.h"
#include "foundation/Logging.h"
#include "foundation/UniqueFd.h"
#include "foundation/plist/PropertyList.h"

#include <QFile>
#include <QList>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largestSettings = 256LL * 1024 * 1024;

/// One folder that this program makes, and what it makes in it.
struct OwnFolder
{
    const char *name;
    QList<QByteArray> filePrefixes; ///< the files' names begin with one of these
    QList<OwnFolder> folders;
};

const OwnFolder &library()
{
    static const OwnFolder tree{
        "Library",
        {},
        {{"Preferences", {"com.varnit.", ".com.varnit."}, {}},
         {"Application Support",
          {},
          {{"Varnit",
            {},
            {{"Tarnwell", {"HardcodedExcludeList.plist"}, {{"Backups", {"Shortcuts "}, {}}}}}}}}}};
    return tree;
}

foundation::UniqueFd openWithin(int folder, const QByteArray &name, int flags)
{
    return foundation::UniqueFd(
        ::openat(folder, name.constData(),
                 O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | flags));
}

QList<QByteArray> namesIn(int folder)
{
    QList<QByteArray> names;
    foundation::UniqueFd again = openWithin(folder, ".", O_DIRECTORY);
    const std::unique_ptr<DIR, int (*)(DIR *)> open(::fdopendir(again.get()), ::closedir);
    if (!open)
        return names;
    again.release();
    while (const dirent *entry = ::readdir(open.get())) {
        const QByteArray name(entry->d_name);
        if (name != "." && name != "..")
            names.append(name);
    }
    return names;
}

/// Root's, and nobody else can have put anything into it.
bool isClosed(const struct stat &folder)
{
    return folder.st_uid == 0 && (folder.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

class GivingBack
{
public:
    explicit GivingBack(const FileIds &owner)
        : m_owner(owner)
    {}

    /// What lies deeper first: a folder that is given is the owner's to change from then on.
    void giveFolder(int parent, const OwnFolder &own)
    {
        const foundation::UniqueFd folder = openWithin(parent, own.name, O_DIRECTORY);
        struct stat facts;
        if (!folder || ::fstat(folder.get(), &facts) != 0)
            return;
        const bool isRoots = facts.st_uid == 0;
        const QList<QByteArray> names = namesIn(folder.get());
        if (isRoots && !holdsOnlyOurs(folder.get(), names, own)) {
            TARNWELL_SYSTEM_LOG(
                u"A folder %1 stays root's: root has put other things into it."_s.arg(
                    QLatin1StringView(own.name)));
            return;
        }
        for (const OwnFolder &deeper : own.folders)
            giveFolder(folder.get(), deeper);
        for (const QByteArray &name : names) {
            if (isNameOfFile(name, own))
                giveFile(folder.get(), name, isClosed(facts));
        }
        if (isRoots)
            give(folder.get(), QLatin1StringView(own.name));
    }

private:
    static bool isNameOfFile(const QByteArray &name, const OwnFolder &own)
    {
        return std::any_of(own.filePrefixes.begin(), own.filePrefixes.end(),
                           [&](const QByteArray &prefix) { return name.startsWith(prefix); });
    }

    static bool holdsOnlyOurs(int folder, const QList<QByteArray> &names, const OwnFolder &own)
    {
        const auto isFine = [&](const QByteArray &name) {
            struct stat facts;
            if (::fstatat(folder, name.constData(), &facts, AT_SYMLINK_NOFOLLOW) != 0 ||
                facts.st_uid != 0)
                return true; // gone, or nothing of root's
            if (S_ISREG(facts.st_mode))
                return isNameOfFile(name, own);
            return S_ISDIR(facts.st_mode) &&
                   std::any_of(own.folders.begin(), own.folders.end(),
                               [&](const OwnFolder &deeper) { return name == deeper.name; });
        };
        return std::all_of(names.begin(), names.end(), isFine);
    }

    void giveFile(int folder, const QByteArray &name, bool isFolderClosed)
    {
        struct stat facts;
        // Opening some devices does something already, so it is looked at before.
        if (::fstatat(folder, name.constData(), &facts, AT_SYMLINK_NOFOLLOW) != 0 ||
            !S_ISREG(facts.st_mode) || facts.st_uid != 0)
            return;
        const foundation::UniqueFd file = openWithin(folder, name, 0);
        if (!file || ::fstat(file.get(), &facts) != 0 || !S_ISREG(facts.st_mode) ||
            facts.st_uid != 0 || facts.st_nlink != 1)
            return;
        if (isFolderClosed || facts.st_size == 0 || isPropertyList(file.get()))
            give(file.get(), QFile::decodeName(name));
    }

    static bool isPropertyList(int file)
    {
        const auto bytes = foundation::readBoundedFile(file, largestSettings);
        return bytes && !plist::read(*bytes).isNull();
    }

    void give(int file, const QString &name)
    {
        if (::fchown(file, m_owner.user, m_owner.group) == 0)
            TARNWELL_SYSTEM_LOG(u"%1 was root's and is its user's again."_s.arg(name));
        else
            TARNWELL_SYSTEM_LOG(u"%1 is root's and cannot be given to its user."_s.arg(name));
    }

    FileIds m_owner;
};

} // namespace

void giveBackSettings(const QString &home, const FileIds &owner)
{
    const foundation::UniqueFd folder(
        ::open(QFile::encodeName(home).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct stat facts;
    // A home that somebody else than its owner leads to is left as it is.
    if (folder && ::fstat(folder.get(), &facts) == 0 && facts.st_uid == owner.user)
        GivingBack(owner).giveFolder(folder.get(), library());
}

} // namespace tarnwell::desktop
