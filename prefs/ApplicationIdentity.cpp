#include "prefs/ApplicationIdentity.h"

#include "ports/Applications.h"
#include "ports/Bookmarks.h"
#include "ports/FileManager.h"
#include "ports/SystemFacts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tarnwell::prefs {

using namespace Qt::StringLiterals;

namespace {

constexpr auto creatorPrefix = "com.unknown.by-creator."_L1;
constexpr auto pathPrefix = "com.unknown.by-path."_L1;
constexpr auto namePrefix = "com.unknown.by-name."_L1;

/// Four question marks: the creator of files that nobody claims.
constexpr quint32 unclaimedCreator = 0x3f3f3f3f;

constexpr qsizetype longestPath = 16384; // bytes

/// What the rules ask of a bundle. A process without a bundle has an executable all the same.
struct BundleFacts
{
    QString path;
    QString identifier;
    QString executable;
};

BundleFacts factsOf(const foundation::Bundle &bundle)
{
    return {bundle.path(), bundle.identifier(), bundle.executablePath()};
}

QString lastComponent(const QString &path)
{
    return QFileInfo(QDir::cleanPath(path)).fileName();
}

/// The identifier made of an item's type and creator; empty when it has no creator of its own.
QString identifierByCreator(const ports::Applications &applications, const QString &path)
{
    const std::optional<ports::ItemInfo> info = applications.itemInfo(path);
    if (!info || info->creator == 0 || info->creator == unclaimedCreator)
        return {};
    return creatorPrefix +
           QString::asprintf("0x%08X.0x%08X", uint(info->fileType), uint(info->creator));
}

/// The identifier of a launched item that is one executable file; empty for everything else.
QString identifierByPath(const IdentityContext &context, const QString &path)
{
    const std::optional<ports::ItemInfo> info = context.applications.itemInfo(path);
    if (!info || info->isContainer)
        return {};
    const QString fullPath = QFileInfo(path).absoluteFilePath();
    const QByteArray bytes = context.fileManager.fileSystemRepresentation(fullPath);
    if (bytes.size() > longestPath || !context.fileManager.isOwnerExecutable(path))
        return {};
    return pathPrefix + QFile::decodeName(bytes);
}

struct Identity
{
    QString identifier;
    QString displayName; ///< empty when there is none
};

/// The rules by their rank: an executable launched by its path, a creator, the bundle's own
/// identifier, the name of its folder. Settings of years are stored by this order.
Identity computeIdentity(const IdentityContext &context, const BundleFacts &bundle,
                         const std::optional<QString> &path)
{
    const ports::Applications &applications = context.applications;
    Identity result{{}, applications.displayName(bundle.path)};
    if (path) {
        result.identifier = identifierByCreator(applications, *path);
        result.displayName = applications.displayName(*path);
    }
    if (result.identifier.isEmpty())
        result.identifier = identifierByCreator(applications, bundle.path);
    if (result.identifier.isEmpty() && !bundle.executable.isEmpty())
        result.identifier = identifierByCreator(applications, bundle.executable);
    if (path) {
        if (const QString byPath = identifierByPath(context, *path); !byPath.isEmpty())
            result = {byPath, lastComponent(*path)};
    }
    if (result.identifier.isEmpty())
        result.identifier = bundle.identifier;
    if (result.identifier.isEmpty())
        result.identifier = namePrefix + lastComponent(bundle.path);
    return result;
}

/// The number that a text begins with in hexadecimal, with or without "0x"; 0 when with none.
/// Digits beyond 32 bits leave the largest number.
quint32 scanHexadecimal(QStringView text)
{
    text = text.trimmed();
    if (text.startsWith("0x"_L1, Qt::CaseInsensitive))
        text = text.sliced(2);
    qsizetype length = 0;
    while (length < text.size() && isxdigit(static_cast<unsigned char>(text[length].toLatin1())))
        ++length;
    if (length == 0)
        return 0;
    bool fits = false;
    const quint32 number = text.first(length).toUInt(&fits, 16);
    return fits ? number : 0xffffffff;
}

} // namespace

ApplicationIdentifier GetApplicationID(const IdentityContext &context,
                                       const ApplicationReference &application,
                                       const std::optional<QString> &path)
{
    if (application.isGlobal())
        return ApplicationIdentifier::global();

    ApplicationIdentityCache &cache = context.cache;
    const QString mainPath = context.systemFacts.mainBundlePath();
    const foundation::Bundle *given = application.bundle();
    const bool isMain = !given || given->path() == mainPath;
    if (isMain && cache.mainIdentifier)
        return ApplicationIdentifier(*cache.mainIdentifier);

    const QString bundlePath = given ? given->path() : mainPath;
    if (const auto known = cache.identifierOfBundle.constFind(bundlePath);
        known != cache.identifierOfBundle.cend()) {
        if (!path)
            return ApplicationIdentifier(*known);
        // Only here: a path that was met with another bundle says nothing about this one.
        if (const auto hit = cache.identifierOfPath.constFind(*path);
            hit != cache.identifierOfPath.cend())
            return ApplicationIdentifier(*hit);
    }

    BundleFacts facts{bundlePath, {}, bundlePath};
    if (given)
        facts = factsOf(*given);
    else if (const auto mainBundle = foundation::Bundle::open(mainPath))
        facts = factsOf(*mainBundle);

    const Identity identity = computeIdentity(context, facts, path);
    const QString &id = identity.identifier;
    cache.identifierOfPath.insert(path.value_or(facts.path), id);
    if (isMain && !cache.mainIdentifier)
        cache.mainIdentifier = id;
    cache.identifierOfBundle.insert(bundlePath, id);
    if (!identity.displayName.isEmpty())
        cache.displayNames.insert(id, identity.displayName);
    if (const QByteArray alias = context.bookmarks.bookmarkForPath(facts.path); !alias.isEmpty())
        cache.aliasData.insert(id, alias);
    return ApplicationIdentifier(id);
}

std::optional<QByteArray> CopyAliasDataForBundle(const ports::Bookmarks &bookmarks,
                                                 const foundation::Bundle &bundle)
{
    const QByteArray data = bookmarks.bookmarkForPath(bundle.path());
    return data.isEmpty() ? std::nullopt : std::optional(data);
}

QUrl UrlForAppID(const ports::Applications &applications, const QString &identifier)
{
    QString path = applications.applicationForIdentifier(identifier);
    if (path.isEmpty() && identifier.contains(creatorPrefix)) {
        // The last field is the creator; the file type before it names no application.
        const QStringView lastField =
            QStringView(identifier).sliced(identifier.lastIndexOf(u'.') + 1);
        if (const quint32 creator = scanHexadecimal(lastField))
            path = applications.applicationForCreator(creator);
    }
    return path.isEmpty() ? QUrl() : QUrl::fromLocalFile(path);
}

} // namespace tarnwell::prefs
