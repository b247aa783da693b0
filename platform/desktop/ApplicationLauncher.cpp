#include "desktop/ApplicationLauncher.h"

#include "foundation/DesktopEntry.h"
#include "foundation/Logging.h"
#include "foundation/StatusCodes.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <gio/gdesktopappinfo.h>

#include <memory>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

struct Unref
{
    void operator()(void *object) const { g_object_unref(object); }
};

/// Reports and frees what GIO had to complain about.
bool succeeded(gboolean result, GError *error)
{
    if (error) {
        TARNWELL_SYSTEM_LOG(QString::fromUtf8(error->message));
        g_error_free(error);
    }
    return result;
}

bool start(const Places &places, const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    if (QFileInfo(places.home).isDir())
        process.setWorkingDirectory(places.home);
    if (!places.areReal()) {
        // A program of ours is to look where we look; every other one lets them be.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"TARNWELL_HOME"_s, places.home);
        environment.insert(u"TARNWELL_ROOT"_s, places.root);
        process.setProcessEnvironment(environment);
    }
    // What it prints is none of ours.
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    return process.startDetached();
}

/// Starts a desktop entry the way the rest of the desktop does: terminal programs get a terminal,
/// services are woken through the bus.
bool startThroughDesktop(const QString &entryPath, const QString &document)
{
    const std::unique_ptr<GDesktopAppInfo, Unref> entry(
        g_desktop_app_info_new_from_filename(QFile::encodeName(entryPath).constData()));
    if (!entry)
        return false;
    GList *files = nullptr;
    std::unique_ptr<GFile, Unref> file;
    if (!document.isEmpty()) {
        file.reset(g_file_new_for_path(QFile::encodeName(document).constData()));
        files = g_list_append(files, file.get());
    }
    GError *error = nullptr;
    const gboolean result = g_app_info_launch(G_APP_INFO(entry.get()), files, nullptr, &error);
    g_list_free(files);
    return succeeded(result, error);
}

} // namespace

int launchApplication(const Places &places, const foundation::Bundle &application,
                      const QString &document)
{
    bool started = false;
    if (!application.isDesktopEntry()) {
        const QString program = application.executablePath();
        if (program.isEmpty())
            return foundation::kLSApplicationNotFoundErr;
        started =
            start(places, program, document.isEmpty() ? QStringList() : QStringList(document));
    } else if (places.areReal()) {
        started = startThroughDesktop(application.path(), document);
    } else if (const auto entry = foundation::DesktopEntry::read(application.path())) {
        QStringList command = entry->command(application.path(), document);
        if (command.isEmpty())
            return foundation::kLSApplicationNotFoundErr;
        const QString program = QStandardPaths::findExecutable(command.takeFirst());
        started = !program.isEmpty() && start(places, program, command);
    }
    return started ? foundation::noErr : foundation::kLSUnknownErr;
}

int launchApplicationWithArguments(const Places &places, const foundation::Bundle &application,
                                   const QStringList &arguments)
{
    QString program = application.executablePath();
    QStringList allArguments = arguments;
    if (application.isDesktopEntry()) {
        const auto entry = foundation::DesktopEntry::read(application.path());
        QStringList command = entry ? entry->command(application.path(), {}) : QStringList();
        program = command.isEmpty() ? QString() : QStandardPaths::findExecutable(command.front());
        allArguments = command.mid(1) + arguments;
    }
    if (program.isEmpty())
        return foundation::kLSApplicationNotFoundErr;
    return start(places, program, allArguments) ? foundation::noErr : foundation::kLSUnknownErr;
}

bool launchDefaultApplication(const QUrl &url)
{
    GError *error = nullptr;
    const QByteArray uri = url.toEncoded(QUrl::FullyEncoded);
    const gboolean result = g_app_info_launch_default_for_uri(uri.constData(), nullptr, &error);
    return succeeded(result, error);
}

} // namespace tarnwell::desktop
