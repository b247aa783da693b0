// The pane under a flood: another process sends ten thousand notifications a second, no two of them
// alike. Measured are the longest time for which the event loop did not turn, how long it goes on
// working afterwards, and what the flood leaves in memory, of ours and of the bus.
//
// TARNWELL_FLOOD_SECONDS sets how long it lasts.

#include "bench/OpenPane.h"
#include "desktop/BusConnection.h"
#include "desktop/TestBus.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLoggingCategory>
#include <QTimer>

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <ctime>

using namespace Qt::StringLiterals;
using namespace tarnwell;

namespace {

constexpr int perSecond = 10000;
constexpr int perBatch = 100;

int floodSeconds()
{
    const int seconds = qEnvironmentVariableIntValue("TARNWELL_FLOOD_SECONDS");
    return seconds > 0 ? seconds : 10;
}

// --- the sender, a process of its own ---------------------------------------------------------

desktop::BusMessage notification(const char *name, const char *object, int number)
{
    desktop::BusMessage message(dbus_message_new_signal(
        "/com/varnit/DistributedNotifications", "com.varnit.DistributedNotifications", "Posted"));
    const QByteArray userInfo = "<plist version=\"1.0\"><dict><key>Date</key>"
                                "<date>2026-01-01T00:00:00Z</date><key>Status</key><string>" +
                                QByteArray::number(number) + "</string></dict></plist>";
    const QByteArray numbered = object ? QByteArray(object) : QByteArray::number(number);
    const char *const texts[] = {name, numbered.constData(), userInfo.constData()};
    dbus_message_append_args(message.get(), DBUS_TYPE_STRING, &texts[0], DBUS_TYPE_STRING,
                             &texts[1], DBUS_TYPE_STRING, &texts[2], DBUS_TYPE_INVALID);
    return message;
}

int sendFlood(const char *address, const char *name, const char *object, int seconds)
{
    const auto bus = desktop::BusConnection::open(QString::fromLocal8Bit(address));
    if (!bus)
        return 1;
    const auto flush = [&bus] {
        while (true) {
            auto awaited = bus->awaited();
            const bool isWriting = std::any_of(awaited.begin(), awaited.end(), [](const auto &one) {
                return (one.events & POLLOUT) != 0;
            });
            if (bus->isRegistered() && !isWriting)
                return;
            ::poll(awaited.data(), awaited.size(), -1);
            bus->handle(awaited);
            bus->takeMessage();
        }
    };
    QElapsedTimer timer;
    timer.start();
    for (int sent = 0; sent < seconds * perSecond;) {
        for (int i = 0; i < perBatch; ++i, ++sent)
            bus->send(notification(name, std::strlen(object) > 0 ? object : nullptr, sent));
        flush();
        const qint64 ahead = qint64(sent) * 1000000000 / perSecond - timer.nsecsElapsed();
        const timespec pause{0, std::clamp<long>(ahead, 0, 999999999)};
        ::nanosleep(&pause, nullptr);
    }
    return 0;
}

// --- the pane ---------------------------------------------------------------------------------

double residentMegabytes()
{
    ::malloc_trim(0);
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0.0;
    return file.readAll().split(' ').at(1).toDouble() * 4096 / 1e6;
}

double processorSeconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

/// Turns the event loop while something is so. The longest time between two turns, in milliseconds.
double longestStall(const std::function<bool()> &condition)
{
    qint64 longest = 0;
    QElapsedTimer turn;
    while (condition()) {
        turn.start();
        QCoreApplication::processEvents();
        longest = std::max(longest, turn.nsecsElapsed());
        const timespec pause{0, 200000};
        ::nanosleep(&pause, nullptr);
    }
    return double(longest) / 1e6;
}

/// Whose updates the pane checks, and so whose status it shows.
void installPlugin(const bench::LargeHome &home)
{
    const QString contents = home.path() + u"/Library/Hullforges/Tarnwell.zok/Contents"_s;
    QDir().mkpath(contents);
    QFile info(contents + u"/Info.plist"_s);
    if (!info.open(QIODevice::WriteOnly))
        qFatal("The plug-in could not be made.");
    info.write("<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
               "<string>com.varnit.tarnwell</string></dict></plist>");
}

void flood(benchmark::State &state, const QString &name, const QString &object)
{
    const tests::TestBus bus;
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toUtf8());
    const bench::LargeHome home(10, int(state.range(0)));
    installPlugin(home);
    bench::OpenPane open(home);
    open.view->resize(720, 520);
    open.view->show();
    tests::waitUntil([&] { return open.joined; });
    longestStall([&, timer = [] {
        QElapsedTimer t;
        t.start();
        return t;
    }()] { return timer.elapsed() < 1000; });
    for ([[maybe_unused]] auto _ : state) {
        const double before = residentMegabytes();
        const double processorBefore = processorSeconds();
        QElapsedTimer timer;
        timer.start();
        QProcess sender;
        sender.setProcessChannelMode(QProcess::ForwardedChannels);
        sender.start(QCoreApplication::applicationFilePath(),
                     {u"--send"_s, bus.address(), name, object, QString::number(floodSeconds())});
        const double stall = longestStall([&] { return sender.state() != QProcess::NotRunning; });
        const double seconds = double(timer.nsecsElapsed()) / 1e9;
        const double during = residentMegabytes();
        const double processorDuring = processorSeconds() - processorBefore;
        // Idle when a second costs hardly any time of the processor.
        int afterwards = -1;
        for (double spent = 1.0; spent > 0.1; ++afterwards) {
            const double start = processorSeconds();
            QEventLoop second;
            QTimer::singleShot(1000, &second, &QEventLoop::quit);
            second.exec();
            spent = processorSeconds() - start;
        }
        state.counters["per_second"] = floodSeconds() * perSecond / seconds;
        state.counters["longest_stall_ms"] = stall;
        state.counters["cores"] = processorDuring / seconds;
        state.counters["memory_MB"] = before;
        state.counters["growth_MB"] = during - before;
        state.counters["growth_afterwards_MB"] = residentMegabytes() - before;
        state.counters["busy_afterwards_s"] = afterwards;
    }
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
}

BENCHMARK_CAPTURE(flood, refreshes, u"com.varnit.tarnwell.refresh"_s, u""_s)
    ->Arg(100)
    ->Unit(benchmark::kSecond)
    ->UseRealTime()
    ->Iterations(1);
BENCHMARK_CAPTURE(flood, statusChanges, u"com.varnit.updater.statuschange"_s,
                  u"com.varnit.tarnwell"_s)
    ->Arg(100)
    ->Unit(benchmark::kSecond)
    ->UseRealTime()
    ->Iterations(1);

} // namespace

int main(int argc, char **argv)
{
    if (argc == 6 && std::strcmp(argv[1], "--send") == 0)
        return sendFlood(argv[2], argv[3], argv[4], std::atoi(argv[5]));
    QApplication application(argc, argv);
    QLoggingCategory::setFilterRules(u"tarnwell.*=false"_s);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
