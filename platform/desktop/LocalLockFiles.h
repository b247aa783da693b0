#pragma once

#include "ports/LockFiles.h"

#include <QHash>

#include <sys/types.h>

#include <utility>

namespace tarnwell::desktop {

/// Lock files in folders that other users may write in, too.
class LocalLockFiles final : public ports::LockFiles
{
public:
    int createFolder(const QString &path) override;
    int create(const QString &path) override;
    int remove(const QString &path) override;

private:
    using FileNumber = std::pair<dev_t, ino_t>;

    QHash<QString, FileNumber> m_ours;
};

} // namespace tarnwell::desktop
