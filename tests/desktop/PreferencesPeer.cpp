// Another process that uses a preference domain, for the tests to run beside themselves and to
// kill. It says on standard output how far it came.

#include "desktop/FilePreferences.h"
#include "desktop/LockedFile.h"
#include "desktop/SystemClock.h"

#include <QString>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

using namespace tarnwell;

namespace {

void report(int number)
{
    std::printf("%d\n", number);
    std::fflush(stdout);
}

/// Another process may hold the lock for longer than a synchronise waits.
bool store(desktop::FilePreferences &preferences, const QString &domain)
{
    constexpr int tries = 30'000;
    bool isStored = preferences.appSynchronize(domain);
    for (int i = 0; i < tries && !isStored; ++i) {
        // Another writer gets nowhere while this one only asks.
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        isStored = preferences.appStorePending(domain);
    }
    return isStored;
}

/// Adds keys of its own, one at a time, and moves a counter.
int addKeys(desktop::FilePreferences &preferences, const QString &domain, const QString &prefix,
            int count)
{
    for (int i = 1; i <= count; ++i) {
        preferences.setAppValue(prefix + QString::number(i), i, domain);
        preferences.setAppValue(prefix, i, domain);
        if (!store(preferences, domain))
            return 1;
    }
    return 0;
}

/// Changes two keys together for ever, of which one makes the file long.
int changePair(desktop::FilePreferences &preferences, const QString &domain, int start)
{
    for (int i = start;; ++i) {
        preferences.setAppValue(QStringLiteral("number"), i, domain);
        preferences.setAppValue(QStringLiteral("text"), QString::number(i).repeated(20000), domain);
        if (!preferences.appSynchronize(domain))
            return 1;
        report(i);
    }
}

/// Holds the lock until its standard input ends.
int holdLock(const QString &path)
{
    QString error;
    using desktop::LockedFile;
    const auto locked =
        LockedFile::acquire(path, std::chrono::milliseconds(0), LockedFile::Links::Follow, &error);
    if (!locked)
        return 1;
    report(0);
    while (std::getchar() != EOF) {
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 3 && std::strcmp(argv[1], "hold") == 0)
        return holdLock(QString::fromLocal8Bit(argv[2]));
    if (argc < 5)
        return 2;
    const desktop::SystemClock clock;
    desktop::FilePreferences preferences(QString::fromLocal8Bit(argv[2]), clock);
    const QString domain = QString::fromLocal8Bit(argv[3]);
    if (argc == 6 && std::strcmp(argv[1], "add") == 0)
        return addKeys(preferences, domain, QString::fromLocal8Bit(argv[4]), std::atoi(argv[5]));
    if (std::strcmp(argv[1], "pair") == 0)
        return changePair(preferences, domain, std::atoi(argv[4]));
    return 2;
}
