#include "desktop/DesktopWorkspace.h"

#include "desktop/ApplicationLauncher.h"
#include "desktop/FileIcon.h"
#include "foundation/Bundle.h"

#include <QDir>
#include <QFileInfo>
#include <QMimeDatabase>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;
using foundation::Bundle;

namespace {

constexpr qsizetype mostIcons = 512;
constexpr auto executableThemeName = "application-x-executable"_L1;

QStringList iconFilesOfBundle(const Bundle &bundle)
{
    QString name = bundle.infoValue(u"CFBundleIconFile"_s).toString();
    if (name.isEmpty())
        name = bundle.infoValue(u"NSIcon"_s).toString();
    QStringList files;
    for (const char *type : {"", "icns", "png", "tiff", "svg"}) {
        if (const QString file = bundle.resourcePath(name, QLatin1String(type)); !file.isEmpty())
            files.append(file);
    }
    return files;
}

/// Image files of an icon's name below the data folders of a machine, medium sizes first.
QStringList installedIconFiles(const Places &places, const QString &name)
{
    QStringList files;
    for (const QString &data :
         {places.home + "/.local/share"_L1, places.root + "/usr/local/share"_L1,
          places.root + "/usr/share"_L1}) {
        for (const int side : {64, 48, 128, 256, 96, 512, 32, 24, 22, 16})
            files.append(
                u"%1/icons/hicolor/%2x%2/apps/%3.png"_s.arg(data, QString::number(side), name));
        files.append(data + "/icons/hicolor/scalable/apps/"_L1 + name + ".svg"_L1);
        files.append(data + "/pixmaps/"_L1 + name);
        files.append(data + "/pixmaps/"_L1 + name + ".png"_L1);
    }
    files.removeIf([](const QString &file) { return !QFileInfo(file).isFile(); });
    return files;
}

IconSource sourceOfDesktopEntry(const Places &places, const Bundle &entry)
{
    IconSource source;
    source.fallback = GenericIcon::Application;
    const QString name = entry.infoValue(u"CFBundleIconFile"_s).toString();
    if (name.startsWith(u'/')) {
        source.imageFiles.append(places.root + name);
    } else if (!name.isEmpty() && !name.contains(u'/')) {
        // The theme knows best; another machine's icons can only be in its own folders.
        if (!places.areReal() || !QIcon::hasThemeIcon(name))
            source.imageFiles = installedIconFiles(places, name);
        source.themeNames.append(name);
    }
    source.themeNames.append(executableThemeName);
    return source;
}

IconSource sourceOfFile(const Places &places, const QString &path)
{
    IconSource source;
    if (const std::optional<Bundle> bundle = Bundle::open(path)) {
        if (bundle->isDesktopEntry())
            return sourceOfDesktopEntry(places, *bundle);
        source.imageFiles = iconFilesOfBundle(*bundle);
        source.themeNames.append(executableThemeName);
        source.fallback = GenericIcon::Application;
        return source;
    }
    const QFileInfo file(path);
    if (file.isDir()) {
        const bool isApplication = path.endsWith(".app"_L1, Qt::CaseInsensitive);
        source.themeNames.append(isApplication ? QString(executableThemeName) : u"folder"_s);
        source.fallback = isApplication ? GenericIcon::Application : GenericIcon::Folder;
        return source;
    }
    const QMimeType type = QMimeDatabase().mimeTypeForFile(file, QMimeDatabase::MatchExtension);
    source.themeNames << type.iconName() << type.genericIconName();
    if (file.isExecutable())
        source.fallback = GenericIcon::Application;
    return source;
}

IconSource sourceOfFileType(const QString &extension)
{
    IconSource source;
    if (extension.compare("app"_L1, Qt::CaseInsensitive) == 0) {
        source.themeNames.append(executableThemeName);
        source.fallback = GenericIcon::Application;
        return source;
    }
    const QMimeType type =
        QMimeDatabase().mimeTypeForFile("x."_L1 + extension, QMimeDatabase::MatchExtension);
    source.themeNames << type.iconName() << type.genericIconName();
    return source;
}

} // namespace

QIcon DesktopWorkspace::iconForFile(const QString &path) const
{
    if (path.isEmpty() || !QFileInfo::exists(path)) {
        m_icons.remove(path);
        return {};
    }
    const auto known = m_icons.constFind(path);
    if (known != m_icons.cend() && known->wasSettled &&
        FileStamp::of(known->file.path) == known->file.stamp)
        return known->icon;

    const DescribingFile file = describingFile(path).value_or(DescribingFile{path, {}});
    QIcon icon(
        new FileIconEngine([places = m_places, path] { return sourceOfFile(places, path); }));
    if (m_icons.size() >= mostIcons)
        m_icons.clear();
    m_icons.insert(path, {file, file.stamp.isSettled(), icon});
    return icon;
}

QIcon DesktopWorkspace::iconForFileType(const QString &extension) const
{
    return QIcon(new FileIconEngine([extension] { return sourceOfFileType(extension); }));
}

QIcon DesktopWorkspace::iconFromImageFile(const QString &path) const
{
    return QIcon(new FileIconEngine([path] { return IconSource{{path}, {}, std::nullopt}; }));
}

bool DesktopWorkspace::openFile(const QString &path)
{
    return !path.isEmpty() && QFileInfo::exists(path) &&
           launchDefaultApplication(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));
}

bool DesktopWorkspace::openUrl(const QUrl &url)
{
    return url.isValid() && !url.isRelative() && launchDefaultApplication(url);
}

} // namespace tarnwell::desktop
