#pragma once

#include "foundation/FileUser.h"

#include <QString>

#include <vector>

#include <sys/types.h>

namespace tarnwell::desktop {

/// As whom the kernel takes a thread where it opens, makes or changes files. That is the process
/// itself, unless the thread has taken the ids of the owner of somebody else's home (HomeOwner).
/// Threads that a thread makes have its ids; programs that it starts have those of the process,
/// unless becomeFileUser() is called in between.
struct FileIds
{
    uid_t user = 0;
    gid_t group = 0;

    static FileIds ofThisThread();
    static FileIds ofTheProcess();

    /// False when the kernel refuses; the thread's ids are then the former ones.
    bool takeForThisThread() const;

    friend bool operator==(const FileIds &, const FileIds &) = default;
};

/// Whether this thread acts on files as somebody else than the process is.
bool actsForSomebodyElse();

/// Replaces the groups of this thread alone; the C library's function would do it for all threads.
bool takeGroupsForThisThread(const std::vector<gid_t> &groups);

using foundation::becomeFileUser;

/// The home folder of the account that this thread acts for; empty when the machine knows none.
QString homeOfFileUser();

/// Acts with the process's own ids while it lives, on the thread that makes it: for what belongs
/// to the session that the process runs in and not to the home that it shows, like the bus.
class OwnIds
{
public:
    OwnIds();
    ~OwnIds();
    Q_DISABLE_COPY_MOVE(OwnIds)

private:
    FileIds m_before;
};

} // namespace tarnwell::desktop
