// Finding compositions in very many folders, and what the preview takes: while it plays, while
// nobody sees it, and after a thousand compositions.

#include "desktop/BundleCache.h"
#include "desktop/LocalFileManager.h"
#include "desktop/LocalFolders.h"
#include "desktop/QtTimers.h"
#include "desktop/SystemClock.h"
#include "effects/CompositionLists.h"
#include "effects/PreviewProcess.h"
#include "effects/QCView.h"
#include "fakes/FakePreferences.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;
using namespace tarnwell;

namespace {

double milliseconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

double median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + std::ptrdiff_t(values.size() / 2),
                     values.end());
    return values[values.size() / 2];
}

void writeFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("%s cannot be written.", qPrintable(path));
    file.write("no composition");
}

/// What something took: on the wall, and of processors.
struct Cost
{
    double elapsed = 0.0;
    double processor = 0.0;
};

double processorMilliseconds(int who)
{
    rusage usage = {};
    getrusage(who, &usage);
    const auto inMilliseconds = [](const timeval &time) {
        return double(time.tv_sec) * 1e3 + double(time.tv_usec) / 1e3;
    };
    return inMilliseconds(usage.ru_utime) + inMilliseconds(usage.ru_stime);
}

/// Runs find over the same folders, to the same depth, for the same name.
Cost find(const QByteArray &folder)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    const char *const arguments[] = {
        "find", folder.constData(), "-maxdepth", "2", "-iname", "*.qtz", nullptr};
    const double before = processorMilliseconds(RUSAGE_CHILDREN);
    QElapsedTimer timer;
    timer.start();
    pid_t process = 0;
    int status = -1;
    if (posix_spawnp(&process, "find", &actions, nullptr, const_cast<char *const *>(arguments),
                     environ) != 0 ||
        waitpid(process, &status, 0) != process || status != 0)
        qFatal("find cannot be run.");
    const Cost cost{milliseconds(timer), processorMilliseconds(RUSAGE_CHILDREN) - before};
    posix_spawn_file_actions_destroy(&actions);
    return cost;
}

/// Discovery over so many folders with ten compositions each, beside find in the same run.
void discover(benchmark::State &state)
{
    const QTemporaryDir folder;
    const desktop::Places places(folder.path() + "/home"_L1, folder.path() + "/root"_L1);
    const QString top = places.home + "/Library/Application Support/Varnit/Tarnwell"_L1;
    for (int i = 0; i < state.range(0); ++i) {
        const QString inside = top + u"/Folder %1"_s.arg(i);
        QDir().mkpath(inside);
        for (int j = 0; j < 10; ++j)
            writeFile(inside + u"/Composition %1 %2.qtz"_s.arg((i * 7919) % 1000).arg(j));
    }
    const desktop::BundleCache bundles;
    const desktop::LocalFileManager fileManager(places, bundles);
    const desktop::LocalFolders folders;
    const desktop::SystemClock clock;
    fakes::FakePreferences preferences;
    const effects::DiscoveryContext context{preferences, fileManager, folders, clock,
                                            u"com.varnit.tarnwell"_s};
    std::vector<double> found, foundProcessor, finding, findingProcessor;
    qsizetype compositions = 0;
    for ([[maybe_unused]] auto _ : state) {
        const double before = processorMilliseconds(RUSAGE_SELF);
        QElapsedTimer timer;
        timer.start();
        const auto lists =
            effects::copyCompositionLists(context, std::nullopt, effects::NewScreenSavers::Record);
        found.push_back(milliseconds(timer));
        foundProcessor.push_back(processorMilliseconds(RUSAGE_SELF) - before);
        compositions = lists.enabled.size();
        state.PauseTiming();
        const Cost cost = find(QFile::encodeName(top));
        finding.push_back(cost.elapsed);
        findingProcessor.push_back(cost.processor);
        state.ResumeTiming();
    }
    state.counters["compositions"] = static_cast<double>(compositions);
    state.counters["find_ms"] = median(finding);
    state.counters["ratio"] = median(found) / median(finding);
    state.counters["processor_ratio"] = median(foundProcessor) / median(findingProcessor);
}

QStringList ownCompositions()
{
    QStringList paths;
    const QDir folder(QStringLiteral(TARNWELL_COMPOSITIONS));
    for (const QString &name : folder.entryList({u"*.qtz"_s}, QDir::Files, QDir::Name))
        paths.append(folder.filePath(name));
    if (paths.isEmpty())
        qFatal("There are no compositions.");
    return paths;
}

double residentKilobytes()
{
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0.0;
    return file.readAll().split(' ').value(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / 1024.0;
}

void runEventLoop(int forMilliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(forMilliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

QString playerProgram()
{
    return QCoreApplication::applicationDirPath() + u"/../bin/tarnwell-composition"_s;
}

/// Makes frames as the pane has them made, and counts them.
std::unique_ptr<effects::FrameSource> countingSource(int &frames)
{
    auto source = std::make_unique<effects::PreviewProcess>(playerProgram());
    QObject::connect(source.get(), &effects::FrameSource::frameReady, source.get(),
                     [&frames] { ++frames; });
    return source;
}

/// A window with two pages, a preview on the first.
struct PreviewWindow
{
    PreviewWindow()
    {
        view->setFixedSize(480, 300);
        pages.addTab(view, u"Effects"_s);
        pages.addTab(new QWidget, u"Other"_s);
        pages.show();
    }
    void play(const QString &path)
    {
        if (!view->loadCompositionFromFile(path))
            qFatal("%s is no composition.", qPrintable(path));
        view->startRendering();
    }

    int frames = 0;
    desktop::SystemClock clock;
    desktop::QtTimers timers;
    QTabWidget pages;
    effects::QCView *view =
        new effects::QCView(clock, timers, [this] { return countingSource(frames); });
};

/// One of our own compositions at play for three seconds at 480 x 300.
void play(benchmark::State &state)
{
    const QString path = ownCompositions().at(state.range(0));
    PreviewWindow window;
    window.play(path);
    runEventLoop(500);
    double seconds = 0.0, processor = 0.0;
    window.frames = 0;
    for ([[maybe_unused]] auto _ : state) {
        QElapsedTimer timer;
        timer.start();
        const double before = processorMilliseconds(RUSAGE_SELF);
        runEventLoop(3000);
        processor += processorMilliseconds(RUSAGE_SELF) - before;
        seconds += milliseconds(timer) / 1e3;
    }
    state.SetLabel(QFileInfo(path).completeBaseName().toStdString());
    state.counters["frames_per_s"] = window.frames / seconds;
    state.counters["cores"] = processor / 1e3 / seconds;
}

/// What two seconds cost that nobody sees: on another page, hidden, minimised.
void playUnseen(benchmark::State &state)
{
    PreviewWindow window;
    window.play(ownCompositions().constFirst());
    runEventLoop(300);
    const char *const names[] = {"other page", "hidden window", "minimised"};
    switch (state.range(0)) {
    case 0:
        window.pages.setCurrentIndex(1);
        break;
    case 1:
        window.pages.hide();
        break;
    default:
        window.pages.setWindowState(Qt::WindowMinimized);
        break;
    }
    runEventLoop(300);
    window.frames = 0;
    double processor = 0.0;
    for ([[maybe_unused]] auto _ : state) {
        const double before = processorMilliseconds(RUSAGE_SELF);
        runEventLoop(2000);
        processor += processorMilliseconds(RUSAGE_SELF) - before;
    }
    state.SetLabel(names[state.range(0)]);
    state.counters["processor_ms"] = processor / double(state.iterations());
    state.counters["frames"] = window.frames;
}

/// A thousand compositions, one frame of each, after a hundred that fill all caches.
void switchCompositions(benchmark::State &state)
{
    const QStringList paths = ownCompositions();
    PreviewWindow window;
    const auto switchTimes = [&](int times) {
        for (int i = 0; i < times; ++i) {
            window.play(paths.at(i % paths.size()));
            const int before = window.frames;
            while (window.frames == before)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    };
    switchTimes(100);
    for ([[maybe_unused]] auto _ : state) {
        const double before = residentKilobytes();
        switchTimes(1000);
        state.counters["growth_kB"] = residentKilobytes() - before;
    }
    state.counters["resident_kB"] = residentKilobytes();
}

BENCHMARK(discover)->ArgName("folders")->Arg(50)->Arg(500)->Unit(benchmark::kMillisecond);
BENCHMARK(play)
    ->ArgName("composition")
    ->DenseRange(0, 7)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(playUnseen)
    ->ArgName("how")
    ->DenseRange(0, 2)
    ->Iterations(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(switchCompositions)->Iterations(1)->UseRealTime()->Unit(benchmark::kSecond);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
