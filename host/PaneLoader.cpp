#include "host/PaneLoader.h"

#include "foundation/Bundle.h"
#include "host/PaneTrust.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QPluginLoader>
#include <QWidget>

namespace tarnwell::host {

using namespace Qt::StringLiterals;
using foundation::Bundle;

namespace {

constexpr QLatin1StringView expectedInterface{TARNWELL_PANE_FACTORY_IID};

QString interfaceName(QStringView identifier)
{
    return identifier.left(identifier.lastIndexOf(u'/')).toString();
}

QString interfaceNumber(QStringView identifier)
{
    return identifier.mid(identifier.lastIndexOf(u'/') + 1).toString();
}

PaneFailure failure(const QString &message, const QString &path, const QString &reason = {})
{
    QString details = u"Pane: %1"_s.arg(QDir::toNativeSeparators(path));
    if (!reason.isEmpty())
        details += u'\n' + reason;
    return {message, details};
}

/// The plug-in's factory, or why there is none. The executable's description is looked at first:
/// one that was made for another interface must not even run its static initialisers here.
std::variant<ui::PreferencePaneFactory *, PaneFailure> loadFactory(const Bundle &bundle)
{
    const auto executableName = bundle.infoValue(u"CFBundleExecutable"_s).toString();
    if (executableName.isEmpty())
        return failure(u"The pane does not say which program it consists of."_s, bundle.path(),
                       u"CFBundleExecutable is missing from Info.plist."_s);
    const auto path = bundle.executablePath();
    if (path.isEmpty())
        return failure(u"The pane’s program is missing. Installing it again should help."_s,
                       bundle.path(),
                       u"No file %1 among the bundle’s executables."_s.arg(executableName));

    QPluginLoader loader(path);
    const auto identifier = loader.metaData().value("IID"_L1).toString();
    if (identifier.isEmpty())
        return failure(u"The pane’s program is damaged, or no program at all. Installing it again "
                       "should help."_s,
                       bundle.path(), loader.errorString());
    if (identifier != expectedInterface) {
        const auto expected = QString(expectedInterface);
        const auto message =
            interfaceName(identifier) == interfaceName(expected)
                ? u"The pane was made for another version of this program (its interface is number "
                  "%1, this program’s is number %2). Installing both in the same version helps."_s
                      .arg(interfaceNumber(identifier), interfaceNumber(expected))
                : u"The pane’s program is a plug-in of another kind."_s;
        return failure(message, bundle.path(),
                       u"Found %1, expected %2."_s.arg(identifier, expected));
    }
    auto *factory = qobject_cast<ui::PreferencePaneFactory *>(loader.instance());
    if (!factory)
        return failure(u"The pane’s program cannot be loaded."_s, bundle.path(),
                       loader.errorString());
    return factory;
}

std::variant<LoadedPane, PaneFailure>
makePane(const Bundle &bundle, ui::PreferencePaneFactory &factory, const ui::PaneContext &context)
{
    const auto principalClass = bundle.infoValue(u"NSPrincipalClass"_s).toString();
    if (principalClass.isEmpty())
        return failure(u"The pane does not say which class to start with."_s, bundle.path(),
                       u"NSPrincipalClass is missing from Info.plist."_s);
    LoadedPane loaded;
    loaded.name = bundle.displayName();
    loaded.pane = factory.createPane(principalClass, context);
    if (!loaded.pane)
        return failure(u"The pane’s program lacks the class “%1”."_s.arg(principalClass),
                       bundle.path(), bundle.executablePath());
    QString reason;
    loaded.view.reset(loaded.pane->loadMainView(&reason));
    if (!loaded.view)
        return failure(reason.isEmpty() ? u"The pane’s window cannot be loaded."_s : reason,
                       bundle.path());
    loaded.pane->mainViewDidLoad();
    return loaded;
}

} // namespace

PaneFailure failureOfException(const char *what)
{
    return {u"The pane stopped because of an error of its own."_s,
            u"Exception: %1"_s.arg(QString::fromUtf8(what))};
}

std::variant<LoadedPane, PaneFailure> loadPane(const ui::PaneContext &context)
{
    const QFileInfo place(context.bundlePath);
    if (!place.exists())
        return failure(u"There is no settings pane where one should be."_s,
                       place.absoluteFilePath(), u"The folder does not exist."_s);
    // From here on without links, so that what is looked at is what is loaded.
    ui::PaneContext placed = context;
    placed.bundlePath = place.canonicalFilePath();
    if (needsTrustedPane(context.home)) {
        const QString reason = reasonForDistrust(placed.bundlePath);
        if (!reason.isEmpty())
            return failure(
                u"%1 As root, and for the home folder of somebody else, a pane is shown only if "
                "root alone can change it."_s.arg(reason),
                placed.bundlePath);
    }
    const auto bundle = Bundle::open(placed.bundlePath);
    if (!bundle || bundle->isDesktopEntry())
        return failure(u"This is no settings pane, or its description is damaged."_s,
                       placed.bundlePath, u"Info.plist is missing or cannot be read."_s);

    std::variant<LoadedPane, PaneFailure> result;
    const auto thrown = runGuarded([&] {
        const auto factory = loadFactory(*bundle);
        if (const auto *reason = std::get_if<PaneFailure>(&factory))
            result = *reason;
        else
            result = makePane(*bundle, *std::get<ui::PreferencePaneFactory *>(factory), placed);
    });
    if (thrown)
        return failure(thrown->message, bundle->path(), thrown->details);
    return result;
}

} // namespace tarnwell::host
