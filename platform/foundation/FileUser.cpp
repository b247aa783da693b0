#include "foundation/FileUser.h"

#include <sys/fsuid.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tarnwell::foundation {

namespace {

constexpr uid_t nobodyAtAll = uid_t(-1); ///< changes nothing, so that the answer tells what is
constexpr int cannotBecome = 126;

} // namespace

void becomeFileUser()
{
    // System calls alone: another thread may have held any lock at the moment of the fork. The
    // groups are the forking thread's already.
    const auto user = uid_t(::setfsuid(nobodyAtAll));
    const auto group = gid_t(::setfsgid(nobodyAtAll));
    if (user == ::geteuid() && group == ::getegid())
        return;
    if (::syscall(SYS_setresgid, group, group, group) != 0 ||
        ::syscall(SYS_setresuid, user, user, user) != 0)
        ::_exit(cannotBecome);
}

} // namespace tarnwell::foundation
