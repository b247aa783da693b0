#include "desktop/HomeOwner.h"

#include "desktop/ReturnedFiles.h"
#include "foundation/Logging.h"

#include <QDBusConnection>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

FileIds ownerOf(const struct stat &facts)
{
    return {facts.st_uid, facts.st_gid};
}

/// The first one other than root whom a folder or link on the way along a path belongs to; else
/// root.
FileIds firstOwnerOnTheWay(const QString &path)
{
    QString place;
    for (const QString &part : path.split(u'/', Qt::SkipEmptyParts)) {
        place += u'/' + part;
        struct stat facts;
        if (::lstat(QFile::encodeName(place).constData(), &facts) != 0)
            break;
        if (facts.st_uid != 0)
            return ownerOf(facts);
    }
    return {};
}

struct Account
{
    gid_t group; ///< the one that new files get
    std::vector<gid_t> groups;
};

/// The groups of a user; of one without an account, the group given alone.
Account accountOf(const FileIds &ids)
{
    passwd entry{};
    passwd *found = nullptr;
    std::vector<char> buffer(16384);
    ::getpwuid_r(ids.user, &entry, buffer.data(), buffer.size(), &found);
    if (!found)
        return {ids.group, {ids.group}};
    std::vector<gid_t> groups(32);
    for (;;) {
        int count = int(groups.size());
        const bool isWhole =
            ::getgrouplist(found->pw_name, found->pw_gid, groups.data(), &count) >= 0;
        groups.resize(size_t(count));
        if (isWhole)
            return {found->pw_gid, groups};
    }
}

} // namespace

FileIds HomeOwner::ofHome(const QString &home)
{
    QString nearest = QDir::cleanPath(home);
    struct stat facts;
    while (::stat(QFile::encodeName(nearest).constData(), &facts) != 0) {
        if (!nearest.contains(u'/') || nearest == u'/')
            return {};
        nearest = QFileInfo(nearest).path();
    }
    if (facts.st_uid != 0)
        return ownerOf(facts);
    const FileIds owner = firstOwnerOnTheWay(nearest);
    return owner.user != 0 ? owner : firstOwnerOnTheWay(QFileInfo(nearest).canonicalFilePath());
}

HomeOwner::HomeOwner(const QString &home)
{
    if (FileIds::ofThisThread().user != 0)
        return;
    FileIds owner = ofHome(home);
    if (owner.user == 0)
        return;
    const Account account = accountOf(owner);
    owner.group = account.group;
    giveBackSettings(home, owner);

    // The session's bus is root's, in a folder that only root may enter; the thread that speaks to
    // it keeps the ids that it has when it is made, which is when the first connection is named.
    const QDBusConnection startsTheThread(u"tarnwell"_s);

    if (!takeGroupsForThisThread(account.groups) || !owner.takeForThisThread())
        throw Refused("The owner's rights for the home folder cannot be taken");
    TARNWELL_SYSTEM_LOG(
        u"The files in %1 are read and written as its owner, user %2."_s.arg(home).arg(owner.user));
}

} // namespace tarnwell::desktop
