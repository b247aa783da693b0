#include "exclude/ExcludeListDownload.h"

#include "foundation/plist/PropertyList.h"
#include "ports/Clock.h"
#include "ports/FileManager.h"
#include "ports/HttpFetcher.h"
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

qint64 secondsSince1970(const ports::Clock &clock)
{
    return static_cast<qint64>(
        std::floor(clock.absoluteTime() + ports::Clock::absoluteTimeIntervalSince1970));
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

std::optional<plist::Array> readPredefinedList(const QByteArray &body)
{
    const plist::Value value = plist::read(body);
    return value.isArray() ? std::optional(value.toArray()) : std::nullopt;
}

void refreshPredefinedList(const DownloadServices &services, const QString &domain,
                           const QUrl &address)
{
    const auto wrapper = prefs::CFPreferencesWrapper_Tarnwell::preferencesWithApplication(
        services.preferences, domain);
    if (wrapper->boolForKey(prefs::keys::excludeListNoInternetSync))
        return;
    const auto last =
        static_cast<qint32>(wrapper->integerForKey(prefs::keys::excludeListLastInternetCheck));
    const qint64 now = secondsSince1970(services.clock);
    switch (nextDownloadStep(last, now)) {
    case DownloadStep::Wait:
        return;
    case DownloadStep::RecordFirstRun:
        recordTime(*wrapper, firstRunTime(now));
        return;
    case DownloadStep::Download:
        break;
    }

    const std::optional<QByteArray> body = services.httpFetcher.fetch(address);
    const std::optional<plist::Array> list = body ? readPredefinedList(*body) : std::nullopt;
    if (!list)
        return;
    const QString folder = QDir::cleanPath(
        services.fileManager.resolve(u"~/Library/Application Support/Varnit/Tarnwell/"_s));
    if (!services.fileManager.fileExists(folder))
        services.tasks.runAndWait(u"/bin/mkdir"_s, {u"-p"_s, folder});
    writeInPlace(folder + "/HardcodedExcludeList.plist"_L1,
                 plist::write(plist::Value(*list), plist::Format::Xml));
    recordTime(*wrapper, secondsSince1970(services.clock));
}

} // namespace tarnwell::exclude
