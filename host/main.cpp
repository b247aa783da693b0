// tarnwell-settings: shows a settings pane in a window of its own.

#include "foundation/ForeignText.h"
#include "foundation/HomeFolder.h"
#include "foundation/StandardErrorLog.h"
#include "host/Application.h"
#include "host/ColorScheme.h"
#include "host/DesktopColorScheme.h"
#include "host/Displays.h"
#include "host/EndSignals.h"
#include "host/ErrorPage.h"
#include "host/HostIcon.h"
#include "host/Options.h"
#include "host/PaneText.h"
#include "host/PaneWindow.h"
#include "host/Shots.h"
#include "host/SilentBusGuard.h"
#include "host/WindowIcon.h"

#include <QDir>
#include <QFileInfo>
#include <QScreen>

#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace tarnwell;

namespace {

QString absolute(const QString &path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

/// The pane beside a build's programs, else the installed one.
QString defaultPane()
{
    const QDir programs(QCoreApplication::applicationDirPath());
    const auto built = programs.filePath(u"../Tarnwell.prefPane"_s);
    const auto installed = programs.filePath(QLatin1StringView(TARNWELL_INSTALLED_PANE));
    return absolute(QFileInfo::exists(built) || !QFileInfo::exists(installed) ? built : installed);
}

void print(std::FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

int refuse(const QString &error)
{
    print(stderr, u"%1\n\n%2"_s.arg(foundation::loggedText(error), host::helpText()));
    return 2;
}

/// Pictures are drawn off screen, whatever the session has; for anything else there must be a
/// display. Returns why there is none.
QString choosePlatform(const host::Options &options)
{
    if (!options.platform.isEmpty())
        return host::displayProblem(options.platform);
    if (options.shots.isEmpty())
        return host::displayProblem(qEnvironmentVariable("QT_QPA_PLATFORM"));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return {};
}

int writeShotsAndText(host::PaneWindow &window, const QString &folder)
{
    host::settle();
    const auto text = host::textOf(&window);
    const auto failed = host::writeShots(window, folder);
    const bool showsPane = !window.errorPage();
    print(showsPane ? stdout : stderr, text);
    if (!failed.isEmpty()) {
        print(stderr, u"Cannot write %1\n"_s.arg(failed));
        return 1;
    }
    print(stdout, u"\nA picture of each page is in %1\n"_s.arg(QDir::toNativeSeparators(folder)));
    return showsPane ? 0 : 1;
}

/// Everything that can wait until the window is on the screen.
void startLateServices(host::Application &application, host::WindowIcon &icon,
                       host::DesktopColorScheme &colorScheme, bool followDesktop)
{
    icon.release();
    // A theme that is dark by itself knows better than the general preference.
    if (!followDesktop || host::isDark(QGuiApplication::palette()))
        return;
    QObject::connect(&colorScheme, &host::DesktopColorScheme::changed, &application,
                     [](host::ColorScheme scheme) { host::applyColorScheme(scheme); });
    colorScheme.start();
}

} // namespace

int main(int argc, char **argv)
{
    foundation::secureStandardStreams();
    const foundation::StandardErrorLog log;
    // Whatever can be said without a display is said before one is opened.
    const auto options = host::parseOptions(host::commandLine(argc, argv));
    if (options.help) {
        print(stdout, host::helpText());
        return 0;
    }
    if (options.version) {
        print(stdout, QLatin1StringView(TARNWELL_VERSION) + u'\n');
        return 0;
    }
    if (!options.error.isEmpty())
        return refuse(options.error);
    if (!foundation::provideHome() && options.home.isEmpty()) {
        print(stderr, u"There is no home folder: HOME is not set, and the account has none.\n"_s);
        return 1;
    }
    const auto problem = choosePlatform(options);
    if (!problem.isEmpty()) {
        print(stderr, problem + u" With --shots DIR the settings are drawn into files.\n"_s);
        return 1;
    }

    const host::SilentBusGuard busGuard;
    host::Application application(argc, argv);
    busGuard.settle();
    QCoreApplication::setApplicationName(u"tarnwell-settings"_s);
    QCoreApplication::setApplicationVersion(QLatin1StringView(TARNWELL_VERSION));
    QGuiApplication::setDesktopFileName(u"tarnwell-settings"_s);
    const auto left = QCoreApplication::arguments().mid(1);
    for (const QString &argument : options.toolkit) {
        if (left.contains(argument))
            return refuse(u"%1 is not an option of this program."_s.arg(argument));
    }
    if (options.colorScheme != host::ColorScheme::AsDesktop)
        host::applyColorScheme(options.colorScheme);

    host::WindowIcon icon(host::hostIcon());
    host::PaneWindow window(options.demo ? u" (demo)"_s : QString());
    application.setExceptionHandler([&window](const QByteArray &what) {
        window.fail(host::failureOfException(what.constData()));
    });
    const ui::PaneContext context{
        options.pane.isEmpty() ? defaultPane() : absolute(options.pane),
        options.home.isEmpty() ? QDir::homePath() : absolute(options.home),
        options.root.isEmpty() ? QString() : absolute(options.root),
        icon,
    };
    window.setPane(host::loadPane(context));

    // Whoever ends the session waits for no answer.
    application.setQuitHandler([&window] { window.prepareForEnd(); });
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &window,
                     &host::PaneWindow::storeNow, Qt::DirectConnection);
    const host::EndSignals endSignals;
    QObject::connect(&endSignals, &host::EndSignals::received, &window, [&window](int signal) {
        window.prepareForEnd();
        std::raise(signal);
    });

    QObject::connect(&application, &QGuiApplication::applicationStateChanged, &window,
                     [&](Qt::ApplicationState state) {
                         if (state == Qt::ApplicationActive)
                             window.becomeActive();
                     });
    host::DesktopColorScheme colorScheme;
    const bool followDesktop =
        options.colorScheme == host::ColorScheme::AsDesktop && options.shots.isEmpty();
    QObject::connect(&window, &host::PaneWindow::appeared, &application,
                     [&] { startLateServices(application, icon, colorScheme, followDesktop); });
    window.resize(window.sizeHint().boundedTo(window.screen()->availableSize()));
    window.show();
    if (!options.shots.isEmpty())
        return writeShotsAndText(window, absolute(options.shots));
    const int status = QApplication::exec();
    return window.errorPage() ? 1 : status;
}
