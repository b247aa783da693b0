#pragma once

#include "ports/LockFiles.h"

#include <QStringList>

namespace tarnwell::fakes {

/// What a test sees and decides of FakeLockFiles.
struct FakeLockFilesControl
{
    QStringList existing;    ///< locks that are there now
    QStringList everCreated; ///< in order
    int folderStatus = 0;
    int createStatus = 0; ///< of files that are not there yet
    int removeStatus = 0;
};

/// Locks in memory.
class FakeLockFiles final : public ports::LockFiles
{
public:
    FakeLockFilesControl &control() { return m_control; }

    int createFolder(const QString &) override { return m_control.folderStatus; }

    int create(const QString &path) override
    {
        if (m_control.existing.contains(path))
            return -48;
        if (m_control.createStatus == 0) {
            m_control.existing.append(path);
            m_control.everCreated.append(path);
        }
        return m_control.createStatus;
    }

    int remove(const QString &path) override
    {
        if (m_control.removeStatus != 0)
            return m_control.removeStatus;
        return m_control.existing.removeAll(path) > 0 ? 0 : -43;
    }

private:
    FakeLockFilesControl m_control;
};

} // namespace tarnwell::fakes
