#include "desktop/FileStamp.h"

#include <QFile>

#include <sys/stat.h>

#include <ctime>

namespace tarnwell::desktop {

namespace {

constexpr qint64 second = 1'000'000'000;

qint64 nanoseconds(const timespec &time)
{
    return qint64(time.tv_sec) * second + time.tv_nsec;
}

} // namespace

std::optional<FileStamp> FileStamp::of(const QString &path)
{
    struct stat status = {};
    if (path.isEmpty() || ::stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return FileStamp{quint64(status.st_dev), quint64(status.st_ino), qint64(status.st_size),
                     nanoseconds(status.st_mtim)};
}

bool FileStamp::isSettled() const
{
    timespec now = {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return modified < nanoseconds(now) - 2 * second;
}

} // namespace tarnwell::desktop
