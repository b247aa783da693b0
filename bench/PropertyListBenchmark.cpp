// Reads and writes a preference domain of a thousand applications with a hundred changed shortcuts
// each, and compares that with libplist and with Python's plistlib in the same run.

#include "foundation/plist/PropertyList.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <plist/plist.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <limits>

namespace {

using namespace Qt::StringLiterals;
using namespace tarnwell;

constexpr int applications = 1000;
constexpr int recordsPerApplication = 100;

plist::Dictionary keyCommand(int keyCode, int modifiers, const plist::Value &title)
{
    return {
        {u"kc"_s, keyCode}, {u"cK"_s, u'A' + keyCode % 26}, {u"mod"_s, modifiers}, {u"t"_s, title}};
}

plist::Dictionary menuLevel(const QString &title)
{
    return {{u"MenuItemTitle"_s, title}};
}

plist::Dictionary record(int application, int number)
{
    const plist::Value title(u"Command %1 of Application %2"_s.arg(number).arg(application));
    const plist::Array path{menuLevel(u"Menu %1"_s.arg(number % 8)),
                            menuLevel(u"Submenu %1"_s.arg(number % 40)),
                            plist::Dictionary{{u"MenuItemTitle"_s, title}}};
    return {{u"MenuItemTitle"_s, title},
            {u"OriginalKeyCommands"_s, keyCommand(number % 50, 0x100, title)},
            {u"NewKeyCommands"_s, keyCommand((number * 7) % 50, 0x300, title)},
            {u"MenuPath"_s, path}};
}

plist::Value makeDomain()
{
    plist::Dictionary shortcuts;
    for (int application = 0; application < applications; ++application) {
        plist::Array keys;
        for (int number = 0; number < recordsPerApplication; ++number)
            keys.append(record(application, number));
        const plist::Dictionary group{{u"ParentTitle"_s, u"File"_s}, {u"Keys"_s, keys}};
        shortcuts.insert(u"com.example.application%1"_s.arg(application), plist::Array{group});
    }
    return plist::Dictionary{{u"MenuShortcuts"_s, shortcuts}};
}

qint64 countNodes(const plist::Value &value)
{
    qint64 count = 1;
    for (const plist::Value &element : value.toArray())
        count += countNodes(element);
    for (const auto &[key, element] : value.toDictionary())
        count += 1 + countNodes(element);
    return count;
}

/// The shortest that something took, in seconds. On a busy machine the time of the processor tells
/// more than that of the clock.
struct Shortest
{
    double wall = std::numeric_limits<double>::infinity();
    double processor = std::numeric_limits<double>::infinity();

    void note(double newWall, double newProcessor)
    {
        wall = std::min(wall, newWall);
        processor = std::min(processor, newProcessor);
    }
};

/// The document, and the shortest time of each way to handle it.
struct Run
{
    QByteArray bytes;
    plist::Value value;
    Shortest read;
    Shortest write;
    Shortest libplistRead;
    Shortest plistlibRead;
    Shortest plistlibWrite;
};

double processorTime()
{
    return double(std::clock()) / CLOCKS_PER_SEC;
}

template <typename Work>
void timeOnce(benchmark::State &state, Shortest &shortest, Work work)
{
    const double processorStart = processorTime();
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    shortest.note(taken.count(), processorTime() - processorStart);
    state.SetIterationTime(taken.count());
}

void readOwn(benchmark::State &state, Run &run)
{
    for (auto _ : state) {
        plist::Value value;
        timeOnce(state, run.read, [&] { value = plist::read(run.bytes); });
        if (value != run.value)
            state.SkipWithError("what was read is not what was written");
    }
}

void writeOwn(benchmark::State &state, Run &run)
{
    for (auto _ : state) {
        QByteArray bytes;
        timeOnce(state, run.write, [&] { bytes = plist::write(run.value, plist::Format::Binary); });
        if (bytes != run.bytes)
            state.SkipWithError("the same value was written differently");
    }
}

void readLibplist(benchmark::State &state, Run &run)
{
    for (auto _ : state) {
        plist_t value = nullptr;
        timeOnce(state, run.libplistRead, [&] {
            plist_from_bin(run.bytes.constData(), uint32_t(run.bytes.size()), &value);
        });
        if (!value)
            state.SkipWithError("libplist could not read it");
        plist_free(value);
    }
}

constexpr auto plistlibScript = R"(
import plistlib, sys, time
document = open(sys.argv[1], 'rb').read()
wall, processor = [time.perf_counter()], [time.process_time()]
def lap():
    wall.append(time.perf_counter())
    processor.append(time.process_time())
value = plistlib.loads(document)
lap()
plistlib.dumps(value, fmt=plistlib.FMT_BINARY)
lap()
for clock in wall, processor:
    print(clock[1] - clock[0], clock[2] - clock[1])
)"_L1;

/// What plistlib itself takes to read and to write, without the start of Python.
bool runPlistlib(Run &run)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(u"domain.plist"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(run.bytes) != run.bytes.size())
        return false;
    file.close();
    QProcess python;
    python.start(u"python3"_s, {u"-c"_s, QString(plistlibScript), file.fileName()});
    if (!python.waitForFinished(-1) || python.exitCode() != 0)
        return false;
    const QList<QByteArray> seconds = python.readAllStandardOutput().simplified().split(' ');
    if (seconds.size() != 4)
        return false;
    run.plistlibRead.note(seconds[0].toDouble(), seconds[2].toDouble());
    run.plistlibWrite.note(seconds[1].toDouble(), seconds[3].toDouble());
    return true;
}

void readAndWritePlistlib(benchmark::State &state, Run &run)
{
    for (auto _ : state) {
        if (!runPlistlib(run)) {
            state.SkipWithError("plistlib failed");
            return;
        }
        state.SetIterationTime(run.plistlibRead.wall + run.plistlibWrite.wall);
    }
}

void printComparison(const char *what, const Shortest &own, const char *other,
                     const Shortest &others)
{
    std::printf("property list %s: %.3f s, %s %.3f s, ratio %.1f; processor %.3f s, %s %.3f s, "
                "ratio %.1f\n",
                what, own.wall, other, others.wall, others.wall / own.wall, own.processor, other,
                others.processor, others.processor / own.processor);
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    Run run;
    run.bytes = plist::write(makeDomain(), plist::Format::Binary);
    run.value = plist::read(run.bytes); // what is written back was read before

    using namespace benchmark;
    const auto add = [&run](const char *name, void (*work)(State &, Run &), int times) {
        RegisterBenchmark(name, [work, &run](State &state) { work(state, run); })
            ->UseManualTime()
            ->Unit(kMillisecond)
            ->Iterations(times);
    };
    add("read/own", readOwn, 7);
    add("read/libplist", readLibplist, 5);
    add("write/own", writeOwn, 7);
    add("read+write/plistlib", readAndWritePlistlib, 2);
    RunSpecifiedBenchmarks();

    std::printf("property list: %.1f MB, %lld nodes with keys\n", double(run.bytes.size()) / 1e6,
                static_cast<long long>(countNodes(run.value)));
    printComparison("read", run.read, "libplist", run.libplistRead);
    printComparison("read", run.read, "plistlib", run.plistlibRead);
    printComparison("write", run.write, "plistlib", run.plistlibWrite);
    return 0;
}
