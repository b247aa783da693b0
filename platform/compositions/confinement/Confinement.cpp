#include "compositions/confinement/Confinement.h"

#include "foundation/UniqueFd.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <linux/landlock.h>
#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sched.h>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using foundation::UniqueFd;

namespace {

/// What nobody needs who draws: other programs, connections, other processes, names of files, and
/// the kernel's own settings.
constexpr const char *refusedCalls[] = {
    "execve",
    "execveat",
    "fork",
    "vfork",
    "socket",
    "socketpair",
    "connect",
    "bind",
    "listen",
    "accept",
    "accept4",
    "ptrace",
    "memfd_create",
    "process_vm_readv",
    "process_vm_writev",
    "pidfd_open",
    "pidfd_getfd",
    "kill",
    "tkill",
    "unlink",
    "unlinkat",
    "rename",
    "renameat",
    "renameat2",
    "link",
    "linkat",
    "symlink",
    "symlinkat",
    "mkdir",
    "mkdirat",
    "rmdir",
    "mknod",
    "mknodat",
    "chmod",
    "fchmod",
    "fchmodat",
    "chown",
    "fchown",
    "lchown",
    "fchownat",
    "truncate",
    "setxattr",
    "lsetxattr",
    "fsetxattr",
    "utimensat",
    "creat",
    "mount",
    "umount2",
    "pivot_root",
    "chroot",
    "setns",
    "unshare",
    "bpf",
    "perf_event_open",
    "userfaultfd",
    "keyctl",
    "add_key",
    "request_key",
    "io_uring_setup",
    "io_uring_enter",
    "io_uring_register",
    "shmget",
    "shmat",
    "msgget",
    "semget",
    "setuid",
    "setgid",
    "setresuid",
    "setresgid",
    "setgroups",
    "personality",
    "ioperm",
    "iopl",
    "reboot",
    "init_module",
    "finit_module",
    "delete_module",
    "kexec_load",
    "swapon",
    "quotactl",
};

struct FreeFilter
{
    void operator()(void *filter) const { seccomp_release(filter); }
};

QString failure(const char *what, int code)
{
    return u"%1: %2"_s.arg(QLatin1StringView(what), QString::fromLocal8Bit(std::strerror(code)));
}

/// Refuses to open a file for more than reading, by the flags that the call carries.
int refuseWriting(scmp_filter_ctx filter, int call, unsigned flagsArgument)
{
    for (const quint64 flag : {O_WRONLY, O_RDWR, O_CREAT, O_TRUNC}) {
        const scmp_arg_cmp writes{flagsArgument, SCMP_CMP_MASKED_EQ, flag, flag};
        const int result = seccomp_rule_add_array(filter, SCMP_ACT_ERRNO(EACCES), call, 1, &writes);
        if (result != 0)
            return result;
    }
    return 0;
}

/// Nothing when it worked.
QString refuseSystemCalls()
{
    const std::unique_ptr<void, FreeFilter> filter(seccomp_init(SCMP_ACT_ALLOW));
    if (!filter)
        return failure("system calls are not filtered", ENOMEM);
    int result = seccomp_attr_set(filter.get(), SCMP_FLTATR_CTL_TSYNC, 1);
    for (const char *name : refusedCalls) {
        const int call = seccomp_syscall_resolve_name(name);
        // What this kind of machine or this library doesn't know can't be called by that name.
        if (call != __NR_SCMP_ERROR && call >= 0 && result == 0)
            result = seccomp_rule_add_array(filter.get(), SCMP_ACT_ERRNO(EPERM), call, 0, nullptr);
    }
    if (result == 0)
        result = refuseWriting(filter.get(), SCMP_SYS(openat), 2);
    if (result == 0 && SCMP_SYS(open) >= 0)
        result = refuseWriting(filter.get(), SCMP_SYS(open), 1);
    // Its flags lie in memory, where no filter sees them; the C library does without it.
    if (result == 0)
        result = seccomp_rule_add_array(filter.get(), SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(openat2), 0,
                                        nullptr);
    // Threads, but no process of its own: for clone3 the C library falls back to clone.
    const scmp_arg_cmp makesProcess{0, SCMP_CMP_MASKED_EQ, CLONE_THREAD, 0};
    if (result == 0)
        result = seccomp_rule_add_array(filter.get(), SCMP_ACT_ERRNO(EPERM), SCMP_SYS(clone), 1,
                                        &makesProcess);
    if (result == 0)
        result = seccomp_rule_add_array(filter.get(), SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0,
                                        nullptr);
    if (result == 0)
        result = seccomp_load(filter.get());
    return result == 0 ? QString() : failure("system calls are not filtered", -result);
}

constexpr quint64 readingRights = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;

void allowReading(int rules, const QString &folder)
{
    const UniqueFd place(::open(QFile::encodeName(folder).constData(), O_PATH | O_CLOEXEC));
    struct stat facts;
    if (!place || ::fstat(place.get(), &facts) != 0)
        return;
    landlock_path_beneath_attr rule{};
    rule.allowed_access = S_ISDIR(facts.st_mode) ? readingRights : LANDLOCK_ACCESS_FS_READ_FILE;
    rule.parent_fd = place.get();
    ::syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
}

/// Nothing when it worked.
QString refuseFiles(const QStringList &readable)
{
    landlock_ruleset_attr attributes{};
    // The rights of the first version, which every kernel with Landlock knows.
    attributes.handled_access_fs = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1) - 1;
    const UniqueFd rules(
        int(::syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0)));
    if (!rules)
        return failure("files are not fenced off", errno);
    for (const QString &folder : readable)
        allowReading(rules.get(), folder);
    if (::syscall(SYS_landlock_restrict_self, rules.get(), 0) != 0)
        return failure("files are not fenced off", errno);
    return {};
}

QStringList readableFolders()
{
    using Paths = QStandardPaths;
    return {u"/usr"_s,
            u"/lib"_s,
            u"/lib64"_s,
            u"/etc/fonts"_s,
            u"/etc/localtime"_s,
            u"/etc/timezone"_s,
            u"/var/cache/fontconfig"_s,
            u"/dev/dri"_s,
            u"/dev/null"_s,
            u"/dev/urandom"_s,
            u"/sys/dev"_s,
            u"/sys/devices"_s,
            u"/proc/self"_s,
            Paths::writableLocation(Paths::GenericCacheLocation) + "/fontconfig"_L1,
            Paths::writableLocation(Paths::GenericConfigLocation) + "/fontconfig"_L1,
            Paths::writableLocation(Paths::GenericDataLocation) + "/fonts"_L1,
            QDir::homePath() + "/.fonts"_L1};
}

} // namespace

QStringList confine()
{
    QStringList lacks;
    const auto note = [&lacks](const QString &lack) {
        if (!lack.isEmpty())
            lacks.append(lack);
    };
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        note(failure("privileges may be gained", errno));
    note(refuseFiles(readableFolders()));
    note(refuseSystemCalls());
    return lacks;
}

} // namespace tarnwell::compositions
