#include "compositions/evaluator/Evaluator.h"
#include "compositions/opengl/OffscreenDestination.h"
#include "compositions/reader/CompositionReader.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>

namespace {

using namespace tarnwell::compositions;

/// A thousand numeric patches, each of which changes in every frame: oscillators that feed chains
/// of calculations, the last of which something drawn needs.
std::shared_ptr<const Composition> thousandNodes()
{
    auto graph = std::make_shared<GraphDescription>();
    const auto key = [](int i) { return QStringLiteral("N%1").arg(i); };
    for (int i = 0; i < 1'000; ++i) {
        NodeDescription node;
        node.key = key(i);
        const int kind = i % 10;
        node.className = QString::fromLatin1(kind == 0   ? "QCLFO"
                                             : kind == 3 ? "QCExpression"
                                             : kind == 6 ? "QCRangeValue"
                                                         : "QCMath");
        QString input = QStringLiteral("inputValue");
        if (kind == 3) {
            node.settings.insert(QStringLiteral("expression"), QStringLiteral("sin(a*90)+a/2"));
            input = QStringLiteral("a");
        } else if (kind != 0 && kind != 6) {
            node.portValues.insert(QStringLiteral("operation_1"), Value::index(i % 3));
            node.portValues.insert(QStringLiteral("operand_1"), Value(1.0 + i % 7));
        }
        graph->nodes.push_back(node);
        if (kind != 0) {
            graph->connections.push_back({key(i - 1),
                                          QString::fromLatin1(kind == 4   ? "outputResult"
                                                              : kind == 7 ? "outputRoll"
                                                                          : "outputValue"),
                                          key(i), input});
        }
        if (kind == 9) {
            NodeDescription sprite;
            sprite.className = QStringLiteral("QCSprite");
            sprite.key = QStringLiteral("S%1").arg(i);
            graph->connections.push_back(
                {key(i), QStringLiteral("outputValue"), sprite.key, QStringLiteral("inputX")});
            graph->nodes.push_back(sprite);
        }
    }
    auto composition = std::make_shared<Composition>();
    composition->root.className = QStringLiteral("QCPatch");
    composition->root.graph = graph;
    return composition;
}

void evaluateThousandNodes(benchmark::State &state)
{
    Evaluator evaluator(thousandNodes());
    double time = 0.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(evaluator.evaluate({.time = time += 1.0 / 60.0}));
    }
}
BENCHMARK(evaluateThousandNodes)->Unit(benchmark::kMicrosecond);

void makeEvaluator(benchmark::State &state)
{
    const auto composition = thousandNodes();
    for (auto _ : state) {
        benchmark::DoNotOptimize(Evaluator(composition).network().nodes.size());
    }
}
BENCHMARK(makeEvaluator)->Unit(benchmark::kMicrosecond);

/// One frame of a composition of ours as the preview shows it. The processor's time counts the
/// threads of a software renderer too: above 16.7 ms, 60 frames a second take more than one core.
void playSample(benchmark::State &state, const QString &path)
{
    const QSize size(480, 300);
    QFile file(path);
    const auto composition =
        file.open(QIODevice::ReadOnly) ? readComposition(file.readAll()) : nullptr;
    const auto destination = OffscreenDestination::create(size);
    if (!composition || !destination) {
        state.SkipWithError("it cannot be drawn here");
        return;
    }
    Evaluator evaluator(composition);
    double time = 0.0;
    for (auto _ : state) {
        destination->draw(evaluator.evaluate({.time = time, .systemTime = time, .pixels = size}));
        time += 1.0 / 60.0;
    }
}

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const QDir folder(QStringLiteral(SAMPLE_COMPOSITIONS));
    for (const QString &name : folder.entryList({QStringLiteral("*.qtz")}, QDir::Files)) {
        benchmark::RegisterBenchmark(qPrintable(QStringLiteral("play/") + name.chopped(4)),
                                     playSample, folder.filePath(name))
            ->Unit(benchmark::kMillisecond)
            ->MeasureProcessCPUTime()
            ->UseRealTime()
            ->Iterations(600);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
