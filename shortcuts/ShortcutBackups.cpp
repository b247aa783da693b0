#include "shortcuts/ShortcutBackups.h"

#include "ports/Clock.h"
#include "ports/FileStore.h"

#include <QDateTime>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwell::shortcuts {

namespace {

constexpr qint64 sizeLimit = 256'000'000;
constexpr QLatin1StringView prefix{"Shortcuts "};
constexpr QLatin1StringView suffix{".plist"};

/// Names sort like the times that they tell, whatever the user's time zone does meanwhile.
QString timeInName(double absoluteTime)
{
    const double seconds = absoluteTime + ports::Clock::absoluteTimeIntervalSince1970;
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(seconds * 1000), Qt::UTC)
        .toString(u"yyyy-MM-dd HH.mm.ss.zzz"_s);
}

} // namespace

ShortcutBackups::ShortcutBackups(ports::FileStore &files, const ports::Clock &clock,
                                 const QString &folder)
    : m_files(files)
    , m_clock(clock)
    , m_folder(folder)
{}

bool ShortcutBackups::keep(const plist::Dictionary &shortcuts, QString *errorMessage)
{
    const double now = m_clock.absoluteTime();
    QStringList existing = names();
    QString name = prefix + timeInName(now) + suffix;
    for (int number = 2; existing.contains(name); ++number)
        name = prefix + timeInName(now) + u" %1"_s.arg(number, 2, 10, u'0') + suffix;
    if (!m_files.writeFile(m_folder + u'/' + name, writeArchive({{now}, shortcuts}), errorMessage))
        return false;
    existing.append(name);
    std::sort(existing.begin(), existing.end());
    // A clock that was set back would make the new one the oldest; it is kept all the same.
    existing.removeOne(name);
    while (existing.size() >= limit)
        m_files.removeFile(m_folder + u'/' + existing.takeFirst());
    return true;
}

QList<ShortcutBackup> ShortcutBackups::list() const
{
    QList<ShortcutBackup> backups;
    QStringList newestFirst = names();
    std::reverse(newestFirst.begin(), newestFirst.end());
    for (const QString &name : newestFirst) {
        const QString path = m_folder + u'/' + name;
        QString ignored;
        if (const auto archive = read(path, &ignored))
            backups.append({path, archive->date, countShortcuts(archive->shortcuts)});
    }
    return backups;
}

std::optional<ShortcutArchive> ShortcutBackups::read(const QString &path,
                                                     QString *errorMessage) const
{
    const auto bytes = m_files.readFile(path, sizeLimit, errorMessage);
    return bytes ? readArchive(*bytes, errorMessage) : std::nullopt;
}

QStringList ShortcutBackups::names() const
{
    QStringList names;
    for (const QString &name : m_files.filesInFolder(m_folder)) {
        if (name.startsWith(prefix) && name.endsWith(suffix))
            names.append(name);
    }
    return names;
}

} // namespace tarnwell::shortcuts
