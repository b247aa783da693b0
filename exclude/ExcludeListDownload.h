#pragma once

#include "foundation/plist/Value.h"

#include <QByteArray>
#include <QUrl>

#include <optional>

namespace tarnwell::ports {
class Clock;
class FileManager;
class HttpFetcher;
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

/// The list in what the server sent; nothing when that is no property list or none of an array.
std::optional<plist::Array> readPredefinedList(const QByteArray &body);

struct DownloadServices
{
    ports::Preferences &preferences;
    const ports::Clock &clock;
    const ports::FileManager &fileManager;
    ports::HttpFetcher &httpFetcher;
    ports::Tasks &tasks;
};

/// Downloads the predefined list for the plug-in, when the last download is a year old and the user
/// has not switched that off. Every failure is silent; one of the fetch lets the next call try
/// again.
void refreshPredefinedList(const DownloadServices &services, const QString &domain,
                           const QUrl &address);

} // namespace tarnwell::exclude
