#include "desktop/ProcRunningApplications.h"

#include "foundation/BoundedFile.h"
#include "foundation/Bundle.h"
#include "foundation/DesktopEntry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

#include <unistd.h>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

/// More than a program's arguments and environment can be.
constexpr qint64 largestFile = 16LL * 1024 * 1024;

QByteArray readProcFile(const QString &path)
{
    return foundation::readBoundedFile(path, largestFile).value_or(QByteArray());
}

QString environmentValue(const QList<QByteArray> &environment, const QByteArray &name)
{
    for (const QByteArray &entry : environment) {
        if (entry.startsWith(name + '='))
            return QFile::decodeName(entry.mid(name.size() + 1));
    }
    return {};
}

RunningProcess readProcess(const QString &folder, const QString &number)
{
    RunningProcess process;
    process.executable = QFile::symLinkTarget(folder + "/exe"_L1);
    for (const QByteArray &argument : readProcFile(folder + "/cmdline"_L1).split('\0'))
        process.arguments.append(QFile::decodeName(argument));
    if (const QString script = process.arguments.value(1); script.startsWith(u'/'))
        process.script = QFileInfo(script).canonicalFilePath();
    process.unitIdentifier = applicationIdentifierOfCgroup(
        QString::fromUtf8(readProcFile(folder + "/cgroup"_L1)).trimmed());
    // Children inherit the environment, so it counts only where it names its own process.
    const QList<QByteArray> environment = readProcFile(folder + "/environ"_L1).split('\0');
    if (environmentValue(environment, "GIO_LAUNCHED_DESKTOP_FILE_PID") == number)
        process.launchedEntry = environmentValue(environment, "GIO_LAUNCHED_DESKTOP_FILE");
    return process;
}

QList<RunningProcess> ownProcesses(const QString &processes)
{
    QList<RunningProcess> result;
    for (const QString &number : QDir(processes).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString folder = processes + u'/' + number;
        if (number.front().isDigit() && QFileInfo(folder).ownerId() == ::getuid())
            result.append(readProcess(folder, number));
    }
    return result;
}

bool isAssignment(const QString &word)
{
    return word.indexOf(u'=') > 0 && !word.startsWith(u'-') && !word.contains(u'/');
}

/// Undoes the escapes of unit names: "\x2d" for a dash.
QString unescapedUnitName(const QString &name)
{
    QByteArray bytes;
    const QByteArray escaped = name.toUtf8();
    for (qsizetype i = 0; i < escaped.size(); ++i) {
        bool isHexadecimal = false;
        const int code = escaped.sliced(i).startsWith("\\x") && escaped.size() >= i + 4
                             ? escaped.sliced(i + 2, 2).toInt(&isHexadecimal, 16)
                             : 0;
        bytes.append(isHexadecimal ? char(code) : escaped[i]);
        if (isHexadecimal)
            i += 3;
    }
    return QString::fromUtf8(bytes);
}

} // namespace

QString applicationIdentifierOfCgroup(const QString &cgroup)
{
    QString unit = cgroup.section(u'/', -1);
    if (!unit.startsWith("app-"_L1))
        return {};
    // app[-<launcher>]-<identifier>-<number>.scope, or -<identifier>[@<number>].service; dashes
    // that belong to a part are escaped.
    QStringList parts;
    if (unit.endsWith(".scope"_L1)) {
        unit.chop(6);
        parts = unit.split(u'-');
        parts.removeLast();
    } else if (unit.endsWith(".service"_L1)) {
        unit.chop(8);
        parts = unit.section(u'@', 0, 0).split(u'-');
    }
    return parts.size() < 2 ? QString() : unescapedUnitName(parts.last());
}

bool isProcessOf(const RunningProcess &process, const ApplicationProgram &application)
{
    if (process.launchedEntry == application.path)
        return true;
    if (!process.unitIdentifier.isEmpty() &&
        process.unitIdentifier.compare(application.identifier, Qt::CaseInsensitive) == 0)
        return true;
    if (application.executable.isEmpty())
        return false;
    if (process.executable != application.executable && process.script != application.executable)
        return false;
    return std::all_of(
        application.arguments.begin(), application.arguments.end(),
        [&process](const QString &argument) { return process.arguments.contains(argument); });
}

ApplicationProgram
ProcRunningApplications::programOf(const ports::InstalledApplication &application) const
{
    ApplicationProgram result{application.path, application.identifier, {}, {}};
    const std::optional<foundation::Bundle> bundle = m_bundles.bundleAt(application.path);
    if (!bundle)
        return result;
    if (!bundle->isDesktopEntry()) {
        result.executable = QFileInfo(bundle->executablePath()).canonicalFilePath();
        return result;
    }
    QStringList words = foundation::splitDesktopCommand(bundle->infoValue(u"Exec"_s).toString());
    if (words.value(0) == "env"_L1 || words.value(0).endsWith("/env"_L1)) {
        words.removeFirst();
        while (!words.isEmpty() && isAssignment(words.first()))
            words.removeFirst();
    }
    if (words.isEmpty())
        return result;
    result.executable =
        QFileInfo(QStandardPaths::findExecutable(words.takeFirst())).canonicalFilePath();
    for (const QString &word : std::as_const(words)) {
        if (!word.contains(u'%'))
            result.arguments.append(word);
    }
    return result;
}

QSet<QString>
ProcRunningApplications::running(const QList<ports::InstalledApplication> &applications) const
{
    const QList<RunningProcess> processes = ownProcesses(m_processes);
    QSet<QString> result;
    for (const ports::InstalledApplication &application : applications) {
        const ApplicationProgram program = programOf(application);
        if (std::any_of(processes.begin(), processes.end(),
                        [&program](const RunningProcess &process) {
                            return isProcessOf(process, program);
                        }))
            result.insert(application.path);
    }
    return result;
}

} // namespace tarnwell::desktop
