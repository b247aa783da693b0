// Reads and writes a preference domain of a thousand applications with a hundred changed shortcuts
// each, and compares that with libplist and with Python's plistlib in the same run.

#include "foundation/plist/PropertyList.h"

#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <plist/plist.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <limits>
#include <optional>

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

/// The document, and the shortest time of each way to handle it.
struct Run
{
    QByteArray bytes;
    plist::Value value;
    double read = std::numeric_limits<double>::infinity();
    double write = std::numeric_limits<double>::infinity();
    double libplistRead = std::numeric_limits<double>::infinity();
    double plistlibRead = std::numeric_limits<double>::infinity();
    double plistlibWrite = std::numeric_limits<double>::infinity();
};

template <typename Work>
void timeOnce(benchmark::State &state, double &shortest, Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(taken.count());
    shortest = std::min(shortest, taken.count());
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
start = time.perf_counter()
value = plistlib.loads(document)
middle = time.perf_counter()
plistlib.dumps(value, fmt=plistlib.FMT_BINARY)
end = time.perf_counter()
print(middle - start, end - middle)
)"_L1;

/// The seconds that plistlib itself takes to read and to write: without the start of Python.
std::optional<std::pair<double, double>> runPlistlib(const QByteArray &bytes)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(u"domain.plist"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return std::nullopt;
    file.close();
    QProcess python;
    python.start(u"python3"_s, {u"-c"_s, QString(plistlibScript), file.fileName()});
    if (!python.waitForFinished(-1) || python.exitCode() != 0)
        return std::nullopt;
    const QList<QByteArray> seconds = python.readAllStandardOutput().trimmed().split(' ');
    if (seconds.size() != 2)
        return std::nullopt;
    return std::pair(seconds[0].toDouble(), seconds[1].toDouble());
}

void readAndWritePlistlib(benchmark::State &state, Run &run)
{
    for (auto _ : state) {
        const auto seconds = runPlistlib(run.bytes);
        if (!seconds) {
            state.SkipWithError("plistlib failed");
            return;
        }
        state.SetIterationTime(seconds->first + seconds->second);
        run.plistlibRead = std::min(run.plistlibRead, seconds->first);
        run.plistlibWrite = std::min(run.plistlibWrite, seconds->second);
    }
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
    std::printf("property list read: %.3f s, libplist %.3f s, ratio %.1f; plistlib %.3f s, "
                "ratio %.1f\n",
                run.read, run.libplistRead, run.libplistRead / run.read, run.plistlibRead,
                run.plistlibRead / run.read);
    std::printf("property list write: %.3f s, plistlib %.3f s, ratio %.1f\n", run.write,
                run.plistlibWrite, run.plistlibWrite / run.write);
    return 0;
}
