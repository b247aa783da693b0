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
    // Several of one instant are told by a number, which sorts like the rest of the name.
    const QString start = prefix + timeInName(now) + u' ';
    int number = 1;
    for (const QString &earlier : std::as_const(existing)) {
        if (earlier.startsWith(start))
            number = earlier.mid(start.size(), 2).toInt() % 99 + 1;
    }
    const QString name = start + u"%1"_s.arg(number, 2, 10, QChar(u'0')) + suffix;
    if (!m_files.writeFile(m_folder + u'/' + name, writeArchive({{now}, shortcuts}), errorMessage))
        return false;
    // The new one is not among those that may go, even if a clock set back makes it the oldest.
    existing.removeOne(name);
    while (existing.size() >= limit)
        m_files.removeFile(m_folder + u'/' + existing.takeFirst());
    return true;
}

bool ShortcutBackups::keepForDropping(const plist::Dictionary &dropped,
                                      const plist::Dictionary &shortcuts, QString *errorMessage)
{
    const QStringList existing = names();
    QString ignored;
    const auto newest =
        existing.isEmpty() ? std::nullopt : read(m_folder + u'/' + existing.last(), &ignored);
    const bool isHeld =
        newest && std::all_of(dropped.begin(), dropped.end(), [&](const auto &application) {
            return newest->shortcuts.value(application.key) == application.value;
        });
    return isHeld || keep(shortcuts, errorMessage);
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
