#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace tarnwell::ports {
class Clock;
class FileManager;
class FileStore;
class Preferences;
class Tasks;
} // namespace tarnwell::ports

namespace tarnwell::exclude {

/// What is to be done about the predefined list, by the time of the last download.
enum class DownloadStep { Wait, RecordFirstRun, Download };

/// Times in seconds since 1970; the last one as it is stored, in 32 bits, 0 for never.
DownloadStep nextDownloadStep(qint32 last, qint64 now);

/// The time that a first run records, so that the first download comes half a year later.
qint64 firstRunTime(qint64 now);

struct DownloadServices
{
    ports::Preferences &preferences;
    const ports::Clock &clock;
    const ports::FileManager &fileManager;
    ports::Tasks &tasks;
};

/// Whether the predefined list is to be fetched for the plug-in now: when the last download is a
/// year old and the user has not switched that off. A first run is recorded.
bool isDownloadDue(const DownloadServices &services, const QString &domain);

/// Stores a list that was fetched, as the bytes of a file. Every failure is silent; without a list
/// nothing is recorded either, so that the next call tries again.
void storeDownload(const DownloadServices &services, const QString &domain,
                   const std::optional<QByteArray> &list);

/// Whether this pane has not yet looked after the list today. Remembers that it does so now, in a
/// file of its own; where that fails there would be no end to it, so it is not done at all.
bool beginDailyCheck(ports::FileStore &fileStore, const ports::FileManager &fileManager,
                     const ports::Clock &clock);

} // namespace tarnwell::exclude
