#pragma once

#include "foundation/UniqueFd.h"
#include "ports/LockFiles.h"

#include <map>

namespace tarnwell::desktop {

/// Lock files in folders that other users may write in, too.
class LocalLockFiles final : public ports::LockFiles
{
public:
    int createFolder(const QString &path) override;
    int create(const QString &path) override;
    int remove(const QString &path) override;
    std::unique_ptr<ports::StandingLock> find(const QString &path) override;

private:
    /// Ours, held open: the number of an open file is given to no other one.
    std::map<QString, foundation::UniqueFd> m_ours;
};

} // namespace tarnwell::desktop
