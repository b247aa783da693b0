#include "host/PaneTrust.h"

#include "foundation/ForeignText.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnwell::host {

using namespace Qt::StringLiterals;
using foundation::shownText;

namespace {

constexpr int longestShownPath = 200;

QString nameOfUser(uid_t user)
{
    const passwd *entry = ::getpwuid(user);
    return entry ? shownText(QString::fromLocal8Bit(entry->pw_name)) : u"number %1"_s.arg(user);
}

enum class Sharing { IsFineIfSticky, IsNotFine };

/// Why somebody else than root can change one item; empty when nobody can.
QString reasonOfItem(const QString &path, Sharing sharing)
{
    struct stat facts;
    const QString shown = shownText(path, longestShownPath);
    if (::lstat(QFile::encodeName(path).constData(), &facts) != 0)
        return u"“%1” cannot be looked at."_s.arg(shown);
    const QString kind = S_ISDIR(facts.st_mode) ? u"folder"_s : u"file"_s;
    if (facts.st_uid != 0)
        return u"The %1 “%2” belongs to the user %3, and not to root."_s.arg(
            kind, shown, nameOfUser(facts.st_uid));
    const bool isShared = !S_ISLNK(facts.st_mode) && (facts.st_mode & (S_IWGRP | S_IWOTH)) != 0;
    const bool isSticky = S_ISDIR(facts.st_mode) && (facts.st_mode & S_ISVTX) != 0;
    if (isShared && !(isSticky && sharing == Sharing::IsFineIfSticky))
        return u"Others than root can write the %1 “%2”."_s.arg(kind, shown);
    return {};
}

/// The same for an item and everything above it. The path has no links in it.
QString reasonOfPath(const QString &path)
{
    for (qsizetype end = 1; end > 0; end = path.indexOf(u'/', end + 1)) {
        QString reason = reasonOfItem(path.first(end), Sharing::IsFineIfSticky);
        if (!reason.isEmpty())
            return reason;
    }
    return reasonOfItem(path, Sharing::IsNotFine);
}

} // namespace

bool needsTrustedPane(const QString &home)
{
    struct stat facts;
    return ::getuid() == 0 || ::geteuid() == 0 ||
           (home != QDir::homePath() && ::stat(QFile::encodeName(home).constData(), &facts) == 0 &&
            facts.st_uid != ::geteuid());
}

QString reasonForDistrust(const QString &bundlePath)
{
    QString reason = reasonOfPath(QFileInfo(bundlePath).canonicalFilePath());
    QDirIterator all(bundlePath,
                     QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                     QDirIterator::Subdirectories);
    while (reason.isEmpty() && all.hasNext()) {
        const QString path = all.next();
        const QFileInfo item = all.fileInfo();
        reason = reasonOfItem(path, Sharing::IsNotFine);
        if (reason.isEmpty() && item.isSymLink() && item.isDir())
            reason = u"“%1” is a link to a folder."_s.arg(shownText(path, longestShownPath));
        else if (reason.isEmpty() && item.isSymLink() && item.exists())
            reason = reasonOfPath(item.canonicalFilePath());
    }
    return reason;
}

} // namespace tarnwell::host
