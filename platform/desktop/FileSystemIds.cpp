#include "desktop/FileSystemIds.h"

#include <QFile>

#include <pwd.h>
#include <sys/fsuid.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tarnwell::desktop {

namespace {

constexpr uid_t nobodyAtAll = uid_t(-1); ///< changes nothing, so that the answer tells what is

} // namespace

FileIds FileIds::ofThisThread()
{
    return {uid_t(::setfsuid(nobodyAtAll)), gid_t(::setfsgid(nobodyAtAll))};
}

FileIds FileIds::ofTheProcess()
{
    return {::geteuid(), ::getegid()};
}

bool FileIds::takeForThisThread() const
{
    const FileIds before = ofThisThread();
    // The user last: whoever is no longer root may not choose a group.
    ::setfsgid(group);
    ::setfsuid(user);
    if (ofThisThread() == *this)
        return true;
    ::setfsuid(before.user);
    ::setfsgid(before.group);
    return false;
}

bool actsForSomebodyElse()
{
    return FileIds::ofThisThread() != FileIds::ofTheProcess();
}

bool takeGroupsForThisThread(const std::vector<gid_t> &groups)
{
    return ::syscall(SYS_setgroups, groups.size(), groups.data()) == 0;
}

QString homeOfFileUser()
{
    passwd entry{};
    passwd *found = nullptr;
    QByteArray buffer(16384, '\0');
    ::getpwuid_r(FileIds::ofThisThread().user, &entry, buffer.data(), size_t(buffer.size()),
                 &found);
    return found ? QFile::decodeName(found->pw_dir) : QString();
}

OwnIds::OwnIds()
    : m_before(FileIds::ofThisThread())
{
    FileIds::ofTheProcess().takeForThisThread();
}

OwnIds::~OwnIds()
{
    // Going on with more rights than before would be the one thing that nobody expects.
    if (!m_before.takeForThisThread())
        qFatal("The file-system ids could not be given back");
}

} // namespace tarnwell::desktop
