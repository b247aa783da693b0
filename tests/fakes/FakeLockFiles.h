#pragma once

#include "ports/LockFiles.h"

#include <QStringList>

#include <functional>

namespace tarnwell::fakes {

/// Somebody's lock, as a test describes it.
struct FakeLock final : ports::StandingLock
{
    double made = 0.0;
    QString user;
    bool ours = false;
    std::function<int()> removal;

    double madeAt() const override { return made; }
    QString owner() const override { return user; }
    bool isOurs() const override { return ours; }
    int remove() override { return removal(); }
};

/// What a test sees and decides of FakeLockFiles.
struct FakeLockFilesControl
{
    QStringList existing;    ///< locks that are there now
    QStringList everCreated; ///< in order
    int folderStatus = 0;
    int createStatus = 0; ///< of files that are not there yet
    int removeStatus = 0;
    FakeLock others; ///< what the locks are like that others made
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

    std::unique_ptr<ports::StandingLock> find(const QString &path) override
    {
        auto lock = std::make_unique<FakeLock>(m_control.others);
        lock->removal = [this, path] { return remove(path); };
        return m_control.existing.contains(path) ? std::move(lock) : nullptr;
    }

private:
    FakeLockFilesControl m_control;
};

} // namespace tarnwell::fakes
