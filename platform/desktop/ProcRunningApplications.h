#pragma once

#include "desktop/BundleCache.h"
#include "ports/RunningApplications.h"

#include <QStringList>

namespace tarnwell::desktop {

/// What a process file system tells of one process.
struct RunningProcess
{
    QString executable;
    QString script;         ///< what an interpreter was given first; empty for other programs
    QStringList arguments;  ///< the program as it was called, then its arguments
    QString unitIdentifier; ///< the application identifier in the name of its unit; may be empty
    QString launchedEntry;  ///< the desktop entry that it was started from; may be empty
};

/// How an application would look among the processes.
struct ApplicationProgram
{
    QString path; ///< of the bundle or desktop entry
    QString identifier;
    QString executable;    ///< absolute, without symbolic links; empty when it is not installed
    QStringList arguments; ///< that its command line always has
};

/// The application identifier in the name of the systemd unit that a process belongs to, as the
/// desktops name them ("app-gnome-org.example.Editor-1234.scope"); empty when there is none.
QString applicationIdentifierOfCgroup(const QString &cgroup);

/// Whether a process is one of the application. Of entries that share a program, only those whose
/// arguments the process was started with.
bool isProcessOf(const RunningProcess &process, const ApplicationProgram &application);

/// The applications that have a process of this user in /proc.
class ProcRunningApplications final : public ports::RunningApplications
{
public:
    /// The cache must outlive this object.
    explicit ProcRunningApplications(const BundleCache &bundles,
                                     const QString &processes = QStringLiteral("/proc"))
        : m_bundles(bundles)
        , m_processes(processes)
    {}

    QSet<QString> running(const QList<ports::InstalledApplication> &applications) const override;

private:
    ApplicationProgram programOf(const ports::InstalledApplication &application) const;

    const BundleCache &m_bundles;
    QString m_processes;
};

} // namespace tarnwell::desktop
