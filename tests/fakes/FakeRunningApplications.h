#pragma once

#include "ports/RunningApplications.h"

namespace tarnwell::fakes {

/// Runs what a test says.
class FakeRunningApplications final : public ports::RunningApplications
{
public:
    /// The paths of what runs, also when nobody asks for them.
    QSet<QString> &control() { return m_running; }

    QSet<QString> running(const QList<ports::InstalledApplication> &applications) const override
    {
        QSet<QString> result;
        for (const ports::InstalledApplication &application : applications) {
            if (m_running.contains(application.path))
                result.insert(application.path);
        }
        return result;
    }

private:
    QSet<QString> m_running;
};

} // namespace tarnwell::fakes
