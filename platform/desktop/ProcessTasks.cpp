#include "desktop/ProcessTasks.h"

#include "desktop/FileSystemIds.h"
#include "foundation/UniqueFd.h"

#include <QProcess>
#include <QSocketNotifier>

#include <cerrno>
#include <sys/syscall.h>
#include <unistd.h>

namespace tarnwell::desktop {

namespace {

/// A process descriptor becomes readable when the process ends, and needs nobody to be its parent.
class DescriptorWatch final : public ports::ProcessWatch
{
public:
    /// Without a descriptor the process has ended already.
    DescriptorWatch(foundation::UniqueFd process, std::function<void()> ended)
        : m_process(std::move(process))
        , m_ended(std::move(ended))
    {
        if (!m_process) {
            report();
            return;
        }
        m_notifier =
            std::make_unique<QSocketNotifier>(m_process.get(), QSocketNotifier::Read, &m_context);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, &m_context, [this] {
            m_notifier->setEnabled(false);
            report();
        });
    }

private:
    /// From the run loop: whoever is told may destroy this object.
    void report()
    {
        QMetaObject::invokeMethod(
            &m_context, [ended = m_ended] { ended(); }, Qt::QueuedConnection);
    }

    foundation::UniqueFd m_process;
    std::function<void()> m_ended;
    QObject m_context;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace

int ProcessTasks::runAndWait(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    if (actsForSomebodyElse())
        process.setChildProcessModifier(becomeFileUser);
    process.start(program, arguments);
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit)
        return -1;
    return process.exitCode();
}

std::unique_ptr<ports::ProcessWatch> ProcessTasks::watch(qint64 processId,
                                                         std::function<void()> ended)
{
    foundation::UniqueFd process(int(::syscall(SYS_pidfd_open, pid_t(processId), 0U)));
    if (!process && errno != ESRCH)
        return nullptr;
    return std::make_unique<DescriptorWatch>(std::move(process), std::move(ended));
}

} // namespace tarnwell::desktop
