// The pane on homes of growing size: what rebuilding the pop-up costs beside reading the domain
// file, and how long the table takes to follow a refresh of the plug-in.

#include "bench/OpenPane.h"
#include "desktop/TestBus.h"
#include "foundation/plist/PropertyList.h"

#include <QApplication>
#include <QComboBox>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QTableView>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;
using namespace tarnwell;
using bench::LargeHome;
using bench::OpenPane;

namespace {

/// Rebuilds the pop-up of so many applications with 100 changed shortcuts each, and reads the same
/// domain file, in turn: the ratio is of the two in one run.
void rebuildPopup(benchmark::State &state)
{
    const LargeHome home(static_cast<int>(state.range(0)), 100);
    OpenPane open(home);
    open.pane.setIsInNotification(true);
    qint64 rebuilding = 0;
    qint64 reading = 0;
    QElapsedTimer timer;
    for ([[maybe_unused]] auto _ : state) {
        timer.start();
        open.pane.setScArray({});
        open.pane.rebuildPopup();
        rebuilding += timer.nsecsElapsed();
        state.PauseTiming();
        timer.start();
        benchmark::DoNotOptimize(plist::read(home.domainBytes()));
        reading += timer.nsecsElapsed();
        state.ResumeTiming();
    }
    state.counters["rows"] = static_cast<double>(open.pane.scArray().rows().size());
    state.counters["applications"] = open.pane.scPopup()->count();
    state.counters["times_reading"] =
        static_cast<double>(rebuilding) / static_cast<double>(reading);
}

/// Notes when the table was painted.
class PaintWatch : public QObject
{
public:
    bool eventFilter(QObject *, QEvent *event) override
    {
        painted = painted || event->type() == QEvent::Paint;
        return false;
    }
    bool painted = false;
};

/// From the signal on the bus to the painted table, with so many records in one application.
void signalToPaintedRow(benchmark::State &state)
{
    const tests::TestBus bus;
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toUtf8());
    const int items = static_cast<int>(state.range(0));
    LargeHome home(1, items);
    OpenPane open(home);
    open.view->resize(720, 520);
    open.view->show();
    tests::waitUntil([&] { return open.joined; });
    auto client = QDBusConnection::connectToBus(bus.address(), u"plug-in"_s);
    auto signal = QDBusMessage::createSignal(u"/com/varnit/DistributedNotifications"_s,
                                             u"com.varnit.DistributedNotifications"_s, u"Posted"_s);
    signal << u"com.varnit.tarnwell.refresh"_s << u""_s << u""_s;
    PaintWatch watch;
    open.pane.scTable()->viewport()->installEventFilter(&watch);
    int added = 0;
    QElapsedTimer timer;
    std::vector<double> milliseconds;
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        // A few records more or less each time, so that there is something to paint. Some of the
        // generated ones change nothing and never show.
        added = 5 - added;
        home.make(items + added, 1);
        QCoreApplication::processEvents();
        const int shownBefore = open.pane.scTable()->model()->rowCount();
        watch.painted = false;
        state.ResumeTiming();
        timer.start();
        client.send(signal);
        tests::waitUntil([&] {
            return watch.painted && open.pane.scTable()->model()->rowCount() != shownBefore;
        });
        milliseconds.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    std::sort(milliseconds.begin(), milliseconds.end());
    state.counters["median_ms"] = milliseconds[milliseconds.size() / 2];
    QDBusConnection::disconnectFromBus(u"plug-in"_s);
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
}

/// A keystroke in the filter field over so many rows, and the first one, which has to read them.
void filterKeystroke(benchmark::State &state)
{
    const LargeHome home(1, static_cast<int>(state.range(0)));
    OpenPane open(home);
    open.view->resize(720, 520);
    open.view->show();
    const QStringList texts{u"o"_s, u"op"_s, u"ope"_s, u"open p"_s, u"open pa"_s, u"x"_s};
    QElapsedTimer timer;
    // The field has had the focus for a moment when the first letter comes.
    open.view->activateWindow();
    open.pane.scFilterField()->setFocus();
    timer.start();
    while (timer.elapsed() < 1000)
        QCoreApplication::processEvents();
    timer.start();
    open.pane.scFilterField()->setText(u"e"_s);
    QCoreApplication::processEvents();
    const double first = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    std::vector<double> milliseconds;
    int next = 0;
    for ([[maybe_unused]] auto _ : state) {
        timer.start();
        open.pane.scFilterField()->setText(texts.at(next++ % texts.size()));
        QCoreApplication::processEvents();
        milliseconds.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    state.counters["first_ms"] = first;
    std::sort(milliseconds.begin(), milliseconds.end());
    state.counters["median_ms"] = milliseconds[milliseconds.size() / 2];
    state.counters["worst_ms"] = milliseconds.back();
}

BENCHMARK(filterKeystroke)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(rebuildPopup)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(signalToPaintedRow)
    ->Arg(1000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(15);

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QLoggingCategory::setFilterRules(u"tarnwell.*=false"_s);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
