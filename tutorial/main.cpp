// tarnwell-tutorial: menus to try out own shortcuts with, as a program of its own.

#include "desktop/ApplicationRegistry.h"
#include "desktop/BundleCache.h"
#include "desktop/DistributedNotifications.h"
#include "desktop/FileBookmarks.h"
#include "desktop/FilePreferences.h"
#include "desktop/HomeOwner.h"
#include "desktop/LinuxSystemFacts.h"
#include "desktop/LocalFileManager.h"
#include "desktop/QtTimers.h"
#include "desktop/SystemClock.h"
#include "desktop/WindowActivation.h"
#include "desktop/XkbKeyboardLayouts.h"
#include "foundation/ForeignText.h"
#include "foundation/HomeFolder.h"
#include "foundation/StandardErrorLog.h"
#include "host/ColorScheme.h"
#include "host/DesktopColorScheme.h"
#include "host/Displays.h"
#include "host/SilentBusGuard.h"
#include "prefs/ApplicationIdentity.h"
#include "prefs/ApplicationSettings.h"
#include "prefs/PreferenceKeys.h"
#include "tutorial/Options.h"
#include "tutorial/ShortcutStore.h"
#include "tutorial/SingleInstance.h"
#include "tutorial/TutorialWindow.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace tarnwell;

namespace {

constexpr auto ownIdentifier = "com.varnit.tarnwell.tutorial"_L1;
constexpr auto sittingSetting = "TutorialSitting"_L1;

void print(std::FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

desktop::Places placesOf(const tutorial::Options &options)
{
    const auto absolute = [](const QString &path) {
        return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    };
    desktop::Places places = desktop::Places::ofThisUser();
    if (!options.home.isEmpty())
        places.home = absolute(options.home);
    if (!options.root.isEmpty() && absolute(options.root) != u"/"_s)
        places.root = absolute(options.root);
    return places;
}

/// What names this application, from the same sources that name every other one.
class Identity
{
public:
    explicit Identity(const desktop::Places &places)
        : m_applications(places, m_bundles)
        , m_fileManager(places, m_bundles)
        , m_bookmarks(places, m_bundles)
        , m_systemFacts(places.root, desktop::LinuxSystemFacts::ownExecutablePath())
        , m_identifier(ownIdentifier)
    {
        if (const auto bundle = foundation::Bundle::open(m_systemFacts.mainBundlePath()))
            m_identifier = prefs::GetApplicationID(context(), *bundle);
    }

    QString string() const { return m_identifier.string(); }

    /// The sitting in this application's settings, after noting another one if it is not empty.
    QString sitting(ports::Preferences &preferences, const QString &newSitting)
    {
        if (!newSitting.isEmpty())
            prefs::SetAppSetting(context(), preferences, prefs::pluginDomain, m_identifier,
                                 sittingSetting, newSitting);
        return prefs::CopyAppSetting(context(), preferences, prefs::pluginDomain, m_identifier,
                                     sittingSetting)
            .toString();
    }

private:
    prefs::IdentityContext context()
    {
        return {m_applications, m_fileManager, m_bookmarks, m_systemFacts, m_cache};
    }

    desktop::BundleCache m_bundles;
    desktop::ApplicationRegistry m_applications;
    desktop::LocalFileManager m_fileManager;
    desktop::FileBookmarks m_bookmarks;
    desktop::LinuxSystemFacts m_systemFacts;
    prefs::ApplicationIdentityCache m_cache;
    prefs::ApplicationIdentifier m_identifier;
};

void followColorScheme(host::DesktopColorScheme &desktopScheme, host::ColorScheme wanted)
{
    host::applyColorScheme(wanted);
    // A theme that is dark by itself knows better than the general preference.
    if (wanted != host::ColorScheme::AsDesktop || host::isDark(QGuiApplication::palette()))
        return;
    QObject::connect(&desktopScheme, &host::DesktopColorScheme::changed, qApp,
                     [](host::ColorScheme scheme) { host::applyColorScheme(scheme); });
    desktopScheme.start();
}

/// What the desktop gave this start, so that its window may take the focus.
QByteArray activationToken()
{
    const QByteArray token = qgetenv("XDG_ACTIVATION_TOKEN");
    return token.isEmpty() ? qgetenv("DESKTOP_STARTUP_ID") : token;
}

int run(const tutorial::Options &options)
{
    const desktop::Places places = placesOf(options);
    tutorial::SingleInstance instance(tutorial::instanceSocket(places.home, places.root));
    if (instance.handOver(activationToken()))
        return 0;
    const desktop::HomeOwner owner(places.home);
    const desktop::SystemClock clock;
    desktop::QtTimers timers;
    desktop::DistributedNotifications notifications(timers);
    desktop::XkbKeyboardLayouts layouts(places.root);
    Identity identity(places);
    tutorial::ShortcutStore store(
        [&] { return std::make_unique<desktop::FilePreferences>(places.home, clock); },
        notifications, identity.string(),
        [&](ports::Preferences &preferences, const QString &sitting) {
            return identity.sitting(preferences, sitting);
        });
    store.begin();

    tutorial::TutorialWindow window(store, layouts, [&options](QStringList fields) {
        if (!options.verbose)
            return;
        for (QString &field : fields)
            field = foundation::loggedText(field);
        print(stdout, fields.join(u'\t') + u'\n');
    });
    QObject::connect(&instance, &tutorial::SingleInstance::startedAgain, &window,
                     [&window](const QByteArray &token) {
                         desktop::expectActivation(token);
                         window.startAgain();
                     });
    const tutorial::FolderWatcher watcher(places.home + "/Library/Preferences"_L1);
    QObject::connect(&watcher, &tutorial::FolderWatcher::changed, &window,
                     [&window] { window.refresh(); });
    QObject::connect(&layouts, &ports::KeyboardLayouts::currentKeyboardLayoutChanged, &window,
                     [&window] { window.useCurrentLayout(); });
    host::DesktopColorScheme desktopScheme;
    followColorScheme(desktopScheme, options.colorScheme);
    window.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    foundation::secureStandardStreams();
    const foundation::StandardErrorLog log;
    foundation::provideHome();
    const tutorial::Options options = tutorial::parseOptions(
        host::commandLine(argc, argv), QProcessEnvironment::systemEnvironment());
    if (options.help || !options.error.isEmpty()) {
        print(options.help ? stdout : stderr,
              options.help ? tutorial::helpText() : foundation::loggedText(options.error) + u'\n');
        return options.help ? 0 : 2;
    }
    const QString problem = host::displayProblem(qEnvironmentVariable("QT_QPA_PLATFORM"));
    if (!problem.isEmpty()) {
        print(stderr, problem + u'\n');
        return 1;
    }
    const host::SilentBusGuard busGuard;
    const QApplication application(argc, argv);
    busGuard.settle();
    QApplication::setApplicationDisplayName(u"Tarnwell Tutorial"_s);
    QGuiApplication::setDesktopFileName(u"tarnwell-tutorial"_s);
    return run(options);
}
