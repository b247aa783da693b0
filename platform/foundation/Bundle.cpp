#include "foundation/Bundle.h"

#include "foundation/BoundedFile.h"
#include "foundation/DesktopEntry.h"
#include "foundation/Languages.h"
#include "foundation/StringsFile.h"
#include "foundation/plist/PropertyList.h"

#include <QDir>
#include <QFileInfo>
#include <QMap>

namespace tarnwell::foundation {

using namespace Qt::StringLiterals;

struct Bundle::Data
{
    QString path;

    std::optional<DesktopEntry> entry; ///< of a desktop entry, else the fields below

    QString contentsFolder;
    QString resourcesFolder;
    plist::Dictionary info;
    quint32 packageType = 0;
    quint32 signature = 0;

    /// A bundle may do without a folder of resources. That is found out only when one is wanted:
    /// opening a bundle has to be cheap.
    QString resources() const
    {
        return QFileInfo(resourcesFolder).isDir() ? resourcesFolder : contentsFolder;
    }

    /// Where a resource is looked for, the user's languages first.
    QStringList resourceFolders() const
    {
        QStringList languages;
        for (const QString &language : localizationNames(userLanguages()))
            languages.append(language + ".lproj/"_L1);
        languages << u""_s << u"Base.lproj/"_s << u"en.lproj/"_s << u"English.lproj/"_s;
        const QString region = info.value("CFBundleDevelopmentRegion"_L1).toString();
        if (!region.isEmpty() && !region.contains(u'/') && !region.contains(QChar(0)))
            languages.append(region + ".lproj/"_L1);
        const QString folder = resources() + u'/';
        for (QString &language : languages)
            language.prepend(folder);
        return languages;
    }
};

namespace {

constexpr qint64 maximumInfoSize = 4 * 1024 * 1024;
constexpr qint64 maximumStringsSize = 1024 * 1024;

quint32 fourBytes(const QByteArray &bytes, qsizetype at = 0)
{
    quint32 code = 0;
    for (qsizetype i = at; i < at + 4; ++i)
        code = code << 8 | static_cast<unsigned char>(bytes[i]);
    return code;
}

quint32 declaredCode(const plist::Dictionary &info, QLatin1StringView key)
{
    const QByteArray bytes = info.value(key).toString().toLatin1();
    return bytes.size() == 4 ? fourBytes(bytes) : 0;
}

/// Whether a name that a bundle gives stays in the folder that it is looked for in.
bool staysInside(const QString &name)
{
    const QString clean = QDir::cleanPath(name);
    return !name.isEmpty() && !name.contains(QChar(0)) && !clean.startsWith(u'/') &&
           clean != u"." && clean != u".." && !clean.startsWith("../"_L1);
}

QString existingFile(const QString &path)
{
    return QFileInfo(path).isFile() ? path : QString();
}

std::optional<plist::Dictionary> readInfo(const QString &path)
{
    const std::optional<QByteArray> bytes = readBoundedFile(path, maximumInfoSize);
    if (!bytes)
        return std::nullopt;
    const plist::Value value = plist::read(*bytes);
    return value.isDictionary() ? std::optional(value.toDictionary()) : std::nullopt;
}

} // namespace

std::optional<Bundle> Bundle::open(const QString &path)
{
    if (path.isEmpty())
        return std::nullopt;
    const QFileInfo place(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    auto data = std::make_shared<Data>();
    data->path = place.filePath();

    if (place.isFile()) {
        if (!data->path.endsWith(".desktop"_L1))
            return std::nullopt;
        data->entry = DesktopEntry::read(data->path);
        if (!data->entry || data->entry->isDeleted())
            return std::nullopt;
        return Bundle(std::move(data));
    }
    if (!place.isDir())
        return std::nullopt;

    const struct
    {
        QString contents;
        QString resources;
        QString info;
    } forms[] = {
        {data->path + "/Contents"_L1, data->path + "/Contents/Resources"_L1,
         u"/Contents/Info.plist"_s},
        {data->path, data->path + "/Resources"_L1, u"/Info.plist"_s},
        {data->path, data->path + "/Resources"_L1, u"/Resources/Info.plist"_s},
        {data->path, data->path + "/Resources"_L1, u"/Resources/Info-gnustep.plist"_s},
    };
    for (const auto &form : forms) {
        const QString infoPath = data->path + form.info;
        if (!QFileInfo::exists(infoPath))
            continue;
        const std::optional<plist::Dictionary> info = readInfo(infoPath);
        if (!info)
            return std::nullopt;
        data->info = *info;
        data->contentsFolder = form.contents;
        data->resourcesFolder = form.resources;

        const std::optional<QByteArray> pkgInfo =
            readBoundedFile(form.contents + "/PkgInfo"_L1, 4096);
        if (pkgInfo && pkgInfo->size() >= 8) {
            data->packageType = fourBytes(*pkgInfo);
            data->signature = fourBytes(*pkgInfo, 4);
        } else {
            data->packageType = declaredCode(*info, "CFBundlePackageType"_L1);
            data->signature = declaredCode(*info, "CFBundleSignature"_L1);
        }
        return Bundle(std::move(data));
    }
    return std::nullopt;
}

std::optional<Bundle> Bundle::ofPlainFolder(const QString &path)
{
    const QFileInfo place(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    if (path.isEmpty() || !place.isDir())
        return std::nullopt;
    auto data = std::make_shared<Data>();
    data->path = place.filePath();
    const QString contents = data->path + "/Contents"_L1;
    data->contentsFolder = QFileInfo(contents).isDir() ? contents : data->path;
    data->resourcesFolder = data->contentsFolder + "/Resources"_L1;
    return Bundle(std::move(data));
}

Bundle::Bundle(std::shared_ptr<const Data> data)
    : d(std::move(data))
{}

QString Bundle::path() const
{
    return d->path;
}

QString Bundle::identifier() const
{
    return d->entry ? DesktopEntry::identifierForPath(d->path)
                    : d->info.value("CFBundleIdentifier"_L1).toString();
}

plist::Value Bundle::infoValue(const QString &key) const
{
    if (!d->entry)
        return d->info.value(key);
    QString text;
    if (key == "CFBundleIdentifier"_L1)
        text = identifier();
    else if (key == "CFBundleName"_L1)
        text = d->entry->value(u"Name"_s);
    else if (key == "CFBundleDisplayName"_L1)
        text = displayName();
    else if (key == "CFBundleExecutable"_L1)
        text = splitDesktopCommand(d->entry->value(u"Exec"_s)).value(0);
    else if (key == "CFBundleIconFile"_L1)
        text = d->entry->value(u"Icon"_s);
    else
        text = d->entry->value(key);
    return text.isEmpty() ? plist::Value() : plist::Value(text);
}

QString Bundle::displayName() const
{
    if (d->entry) {
        const QString name = d->entry->localizedValue(u"Name"_s, userLanguages());
        return name.isEmpty() ? identifier() : name;
    }
    const QStringList keys{u"CFBundleDisplayName"_s, u"CFBundleName"_s};
    const QString resources = d->resources();
    for (const QString &language : localizationNames(userLanguages())) {
        const std::optional<QByteArray> bytes = readBoundedFile(
            resources + u'/' + language + ".lproj/InfoPlist.strings"_L1, maximumStringsSize);
        if (!bytes)
            continue;
        const QHash<QString, QString> strings = readStringsFile(*bytes);
        for (const QString &key : keys) {
            if (const QString name = strings.value(key); !name.isEmpty())
                return name;
        }
    }
    for (const QString &key : keys) {
        if (const QString name = d->info.value(key).toString(); !name.isEmpty())
            return name;
    }
    QString name = QFileInfo(d->path).fileName();
    if (name.endsWith(".app"_L1, Qt::CaseInsensitive) && name.size() > 4)
        name.chop(4);
    return name;
}

QString Bundle::executablePath() const
{
    if (d->entry)
        return d->entry->executablePath();
    QString name = d->info.value("CFBundleExecutable"_L1).toString();
    if (name.isEmpty())
        name = d->info.value("NSExecutable"_L1).toString();
    if (!staysInside(name))
        return {};
    for (const QLatin1StringView folder : {"/Linux/"_L1, "/MacOS/"_L1, "/"_L1}) {
        if (const QString found = existingFile(d->contentsFolder + folder + name); !found.isEmpty())
            return found;
    }
    return {};
}

quint32 Bundle::packageType() const
{
    return d->packageType;
}

quint32 Bundle::signature() const
{
    return d->signature;
}

QString Bundle::resourcePath(const QString &name, const QString &type) const
{
    const QString fileName = type.isEmpty() ? name : name + u'.' + type;
    if (d->entry || !staysInside(fileName))
        return {};
    for (const QString &folder : d->resourceFolders()) {
        const QString path = folder + fileName;
        if (QFileInfo::exists(path)) // a folder will do: packages are resources too
            return path;
    }
    return {};
}

QStringList Bundle::resourcePaths(const QString &type) const
{
    if (d->entry)
        return {};
    const QString ending = u'.' + type;
    QMap<QString, QString> pathsByName;
    for (const QString &folder : d->resourceFolders()) {
        for (const QString &name : QDir(folder).entryList(QDir::Files, QDir::Unsorted)) {
            if (name.endsWith(ending, Qt::CaseInsensitive) && name.size() > ending.size() &&
                !pathsByName.contains(name))
                pathsByName.insert(name, folder + name);
        }
    }
    return pathsByName.values();
}

bool Bundle::isDesktopEntry() const
{
    return d->entry.has_value();
}

} // namespace tarnwell::foundation
