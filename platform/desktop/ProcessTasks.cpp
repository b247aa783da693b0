#include "desktop/ProcessTasks.h"

#include "desktop/FileSystemIds.h"

#include <QProcess>

namespace tarnwell::desktop {

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

} // namespace tarnwell::desktop
