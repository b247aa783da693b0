#pragma once

#include "ports/LockFiles.h"

#include <QStringList>

#include <map>

namespace tarnwell::fakes {

/// Whose a lock is that a test describes, and since when it stands.
struct FakeLock
{
    double madeAt = 0.0;
    QString owner;
    bool isOurs = false;
};

/// What a test sees and decides of FakeLockFiles.
struct FakeLockFilesControl
{
    QStringList existing;    ///< locks that are there now
    QStringList everCreated; ///< in order
    int folderStatus = 0;
    int createStatus = 0; ///< of files that are not there yet
    int removeStatus = 0;
    std::map<QString, FakeLock> standing; ///< details of locks that others made
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

    std::unique_ptr<ports::StandingLock> find(const QString &path) const override
    {
        const auto found = m_control.standing.find(path);
        if (found == m_control.standing.end() || !m_control.existing.contains(path))
            return nullptr;
        return std::make_unique<Standing>(m_control, path, found->second);
    }

private:
    class Standing final : public ports::StandingLock
    {
    public:
        Standing(FakeLockFilesControl &control, const QString &path, const FakeLock &lock)
            : m_control(control)
            , m_path(path)
            , m_lock(lock)
        {}
        double madeAt() const override { return m_lock.madeAt; }
        QString owner() const override { return m_lock.owner; }
        bool isOurs() const override { return m_lock.isOurs; }
        int remove() override
        {
            if (m_control.removeStatus != 0)
                return m_control.removeStatus;
            return m_control.existing.removeAll(m_path) > 0 ? 0 : -43;
        }

    private:
        FakeLockFilesControl &m_control;
        QString m_path;
        FakeLock m_lock;
    };

    mutable FakeLockFilesControl m_control;
};

} // namespace tarnwell::fakes
