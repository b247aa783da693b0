#include "exclude/ExcludeListDownload.h"

#include "ports/Clock.h"
#include "ports/FileManager.h"
#include "ports/FileStore.h"
#include "ports/Tasks.h"
#include "prefs/CFPreferencesWrapper_Tarnwell.h"
#include "prefs/PreferenceKeys.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cmath>

namespace tarnwell::exclude {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 firstRunBackDating = 15552000; ///< seconds: 180 days
constexpr qint64 minimumInterval = 31104001;    ///< seconds: 360 days and one second
constexpr qint64 oneDay = 24 * 60 * 60;         ///< seconds
constexpr qint64 stampSizeLimit = 64;           ///< bytes

qint64 secondsSince1970(const ports::Clock &clock)
{
    return static_cast<qint64>(
        std::floor(clock.absoluteTime() + ports::Clock::absoluteTimeIntervalSince1970));
}

/// A time in the future is that of a clock that went wrong.
bool wasToday(qint64 time, qint64 now)
{
    return time <= now && now - time < oneDay;
}

void recordTime(prefs::CFPreferencesWrapper_Tarnwell &wrapper, qint64 time)
{
    wrapper.setInteger(time, prefs::keys::excludeListLastInternetCheck);
    wrapper.synchronize();
}

/// In place: the plug-in takes a half-written list for none, and the next year brings another.
void writeInPlace(const QString &path, const QByteArray &bytes)
{
    // Opening a pipe that somebody put there would wait for a reader.
    if (QFileInfo::exists(path) && !QFileInfo(path).isFile())
        return;
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

} // namespace

DownloadStep nextDownloadStep(qint32 last, qint64 now)
{
    if (last == 0)
        return DownloadStep::RecordFirstRun;
    return now - last < minimumInterval ? DownloadStep::Wait : DownloadStep::Download;
}

qint64 firstRunTime(qint64 now)
{
    return now - firstRunBackDating;
}

bool isDownloadDue(const DownloadServices &services, const QString &domain)
{
    const auto wrapper = prefs::CFPreferencesWrapper_Tarnwell::preferencesWithApplication(
        services.preferences, domain);
    if (wrapper->boolForKey(prefs::keys::excludeListNoInternetSync))
        return false;
    const auto last =
        static_cast<qint32>(wrapper->integerForKey(prefs::keys::excludeListLastInternetCheck));
    const qint64 now = secondsSince1970(services.clock);
    const DownloadStep step = nextDownloadStep(last, now);
    if (step == DownloadStep::RecordFirstRun)
        recordTime(*wrapper, firstRunTime(now));
    return step == DownloadStep::Download;
}

void storeDownload(const DownloadServices &services, const QString &domain,
                   const std::optional<QByteArray> &list)
{
    const auto wrapper = prefs::CFPreferencesWrapper_Tarnwell::preferencesWithApplication(
        services.preferences, domain);
    // The user may have switched it off while the list was on its way.
    if (!list || wrapper->boolForKey(prefs::keys::excludeListNoInternetSync))
        return;
    const QString folder = QDir::cleanPath(
        services.fileManager.resolve(u"~/Library/Application Support/Varnit/Tarnwell/"_s));
    if (!services.fileManager.fileExists(folder))
        services.tasks.runAndWait(u"/bin/mkdir"_s, {u"-p"_s, folder});
    writeInPlace(folder + "/HardcodedExcludeList.plist"_L1, *list);
    recordTime(*wrapper, secondsSince1970(services.clock));
}

bool beginDailyCheck(ports::FileStore &fileStore, const ports::FileManager &fileManager,
                     const ports::Clock &clock)
{
    const QString path = fileManager.folder(ports::FolderDomain::User, ports::FolderKind::State) +
                         "/tarnwell/exclude-list-check"_L1;
    const qint64 now = secondsSince1970(clock);
    QString error;
    const auto stamp = fileStore.readFile(path, stampSizeLimit, &error);
    if (stamp && wasToday(stamp->toLongLong(), now))
        return false;
    return fileStore.writeFile(path, QByteArray::number(now), &error);
}

} // namespace tarnwell::exclude
