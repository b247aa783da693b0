#include "desktop/ApplicationLauncher.h"

#include "desktop/FileSystemIds.h"
#include "foundation/DesktopEntry.h"
#include "foundation/Logging.h"
#include "foundation/StatusCodes.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <gio/gdesktopappinfo.h>

#include <memory>
#include <vector>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

/// Name folders and sockets of our own session, which nobody else may use.
constexpr const char *variablesOfTheSession[] = {"XDG_RUNTIME_DIR", "DBUS_SESSION_BUS_ADDRESS"};

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

void becomeFileUserInChild(gpointer)
{
    becomeFileUser();
}

/// Starts a program, detached, as the one whom we act for: it was found in that person's folders,
/// so it gets that person's rights and no others.
bool startAsFileUser(const QString &folder, const QStringList &command,
                     const QStringList &environment, qint64 *processId)
{
    const auto native = [](const QStringList &texts) {
        QByteArrayList bytes;
        for (const QString &text : texts)
            bytes.append(QFile::encodeName(text));
        return bytes;
    };
    const auto pointers = [](QByteArrayList &bytes) {
        std::vector<char *> list;
        for (QByteArray &entry : bytes)
            list.push_back(entry.data());
        list.push_back(nullptr);
        return list;
    };
    QByteArrayList words = native(command);
    QByteArrayList variables = native(environment);
    const QByteArray nativeFolder = QFile::encodeName(folder);
    GError *error = nullptr;
    GPid process = 0;
    const gboolean result =
        g_spawn_async(nativeFolder.isEmpty() ? nullptr : nativeFolder.constData(),
                      pointers(words).data(), pointers(variables).data(),
                      G_SPAWN_STDOUT_TO_DEV_NULL, becomeFileUserInChild, nullptr, &process, &error);
    if (processId)
        *processId = process;
    return succeeded(result, error);
}

bool start(const Places &places, const QString &program, const QStringList &arguments,
           qint64 *processId)
{
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    if (QFileInfo(places.home).isDir())
        process.setWorkingDirectory(places.home);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!places.areReal()) {
        // A program of ours is to look where we look; every other one lets them be.
        environment.insert(u"TARNWELL_HOME"_s, places.home);
        environment.insert(u"TARNWELL_ROOT"_s, places.root);
    }
    if (actsForSomebodyElse()) {
        environment.insert(u"HOME"_s, places.home);
        for (const char *name : variablesOfTheSession)
            environment.remove(QLatin1StringView(name));
        return startAsFileUser(process.workingDirectory(), QStringList(program) + arguments,
                               environment.toStringList(), processId);
    }
    process.setProcessEnvironment(environment);
    // What it prints is none of ours.
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    return process.startDetached(processId);
}

/// Starts a desktop entry with files or addresses, with the rights of the one whom we act for.
bool launch(GDesktopAppInfo *entry, GList *uris)
{
    const std::unique_ptr<GAppLaunchContext, Unref> context(g_app_launch_context_new());
    GSpawnChildSetupFunc becomeUser = nullptr;
    if (actsForSomebodyElse()) {
        becomeUser = becomeFileUserInChild;
        g_app_launch_context_setenv(context.get(), "HOME",
                                    QFile::encodeName(homeOfFileUser()).constData());
        for (const char *name : variablesOfTheSession)
            g_app_launch_context_unsetenv(context.get(), name);
    }
    GError *error = nullptr;
    const gboolean result =
        g_desktop_app_info_launch_uris_as_manager(entry, uris, context.get(), G_SPAWN_SEARCH_PATH,
                                                  becomeUser, nullptr, nullptr, nullptr, &error);
    return succeeded(result, error);
}

/// Starts a desktop entry the way the rest of the desktop does: terminal programs get a terminal,
/// services are woken through the bus.
bool startThroughDesktop(const QString &entryPath, const QString &document)
{
    const std::unique_ptr<GDesktopAppInfo, Unref> entry(
        g_desktop_app_info_new_from_filename(QFile::encodeName(entryPath).constData()));
    if (!entry)
        return false;
    QByteArray uri = QUrl::fromLocalFile(document).toEncoded(QUrl::FullyEncoded);
    GList *uris = document.isEmpty() ? nullptr : g_list_append(nullptr, uri.data());
    const bool started = launch(entry.get(), uris);
    g_list_free(uris);
    return started;
}

} // namespace

int launchApplication(const Places &places, const foundation::Bundle &application,
                      const QString &document, qint64 *processId)
{
    if (processId)
        *processId = 0;
    bool started = false;
    if (!application.isDesktopEntry()) {
        const QString program = application.executablePath();
        if (program.isEmpty())
            return foundation::kLSApplicationNotFoundErr;
        started = start(places, program, document.isEmpty() ? QStringList() : QStringList(document),
                        processId);
    } else if (places.areReal()) {
        started = startThroughDesktop(application.path(), document);
    } else if (const auto entry = foundation::DesktopEntry::read(application.path())) {
        QStringList command = entry->command(application.path(), document);
        if (command.isEmpty())
            return foundation::kLSApplicationNotFoundErr;
        const QString program = QStandardPaths::findExecutable(command.takeFirst());
        started = !program.isEmpty() && start(places, program, command, processId);
    }
    return started ? foundation::noErr : foundation::kLSUnknownErr;
}

int launchApplicationWithArguments(const Places &places, const foundation::Bundle &application,
                                   const QStringList &arguments, qint64 *processId)
{
    if (processId)
        *processId = 0;
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
    return start(places, program, allArguments, processId) ? foundation::noErr
                                                           : foundation::kLSUnknownErr;
}

bool launchDefaultApplication(const QUrl &url)
{
    GError *error = nullptr;
    QByteArray uri = url.toEncoded(QUrl::FullyEncoded);
    if (!actsForSomebodyElse()) {
        const gboolean result = g_app_info_launch_default_for_uri(uri.constData(), nullptr, &error);
        return succeeded(result, error);
    }
    const std::unique_ptr<GFile, Unref> file(g_file_new_for_uri(uri.constData()));
    const std::unique_ptr<GAppInfo, Unref> handler(
        g_file_query_default_handler(file.get(), nullptr, &error));
    if (!handler)
        return succeeded(false, error);
    GList *uris = g_list_append(nullptr, uri.data());
    const bool started =
        G_IS_DESKTOP_APP_INFO(handler.get()) && launch(G_DESKTOP_APP_INFO(handler.get()), uris);
    g_list_free(uris);
    return started;
}

} // namespace tarnwell::desktop
