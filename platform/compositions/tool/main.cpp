#include "compositions/confinement/Confinement.h"
#include "compositions/evaluator/Report.h"
#include "compositions/opengl/OffscreenDestination.h"
#include "compositions/reader/CompositionReader.h"
#include "compositions/tool/CommandLine.h"
#include "compositions/tool/Server.h"
#include "compositions/tool/Supervision.h"
#include "foundation/BoundedFile.h"
#include "foundation/ForeignText.h"
#include "foundation/StandardErrorLog.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QJsonDocument>

#include <cstdio>

namespace {

using namespace Qt::StringLiterals;
using namespace tarnwell::compositions;
namespace foundation = tarnwell::foundation;

enum ExitStatus { Drawn = 0, NoComposition = 1, Usage = 2, CannotDraw = 3 };

/// Pictures at this rate count as the natural flow of time.
constexpr double framesPerSecond = 60.0;
/// The files themselves are small; something larger is certainly something else.
constexpr qint64 largestFile = 512LL * 1024 * 1024;

ExitStatus fail(ExitStatus status, const QString &reason)
{
    std::fprintf(stderr, "tarnwell-composition: %s\n", qPrintable(foundation::loggedText(reason)));
    return status;
}

/// Seconds since 1 January 2001, 00:00 UTC.
double systemTime()
{
    constexpr double epochOffset = 978'307'200.0;
    return double(QDateTime::currentMSecsSinceEpoch()) / 1000.0 - epochOffset;
}

/// Draws frame after frame, a sixtieth of a second apart.
void measure(Evaluator &evaluator, OffscreenDestination &destination, const CommandLine &line,
             const Progress &progress)
{
    qint64 evaluating = 0;
    QElapsedTimer whole;
    whole.start();
    for (int i = 0; i < line.frames; ++i) {
        QElapsedTimer timer;
        timer.start();
        const Frame frame = evaluator.evaluate({.time = line.time + i / framesPerSecond,
                                                .systemTime = systemTime(),
                                                .pixels = line.size});
        evaluating += timer.nsecsElapsed();
        destination.draw(frame);
        progress.frameIsDone();
    }
    const double seconds = double(whole.nsecsElapsed()) / 1e9;
    std::printf("%d frames in %.3f s: %.1f a second, %.3f ms each, %.3f ms of it evaluation\n",
                line.frames, seconds, line.frames / seconds, seconds * 1e3 / line.frames,
                double(evaluating) / 1e6 / line.frames);
}

/// What remembers needs a past: the moments before the one to show are played quickly, the last
/// few seconds at least. Pictures that stay may have been drawn in any of them.
void playUpTo(Evaluator &evaluator, OffscreenDestination &destination, const CommandLine &line,
              const Progress &progress)
{
    constexpr double longestPast = 5.0;
    constexpr double step = 1.0 / 30.0;
    const double start = line.time > longestPast ? line.time - longestPast : 0.0;
    FrameRequest request{.time = 0.0, .systemTime = systemTime(), .pixels = line.size};
    const auto play = [&](double time) {
        request.time = time;
        const Frame frame = evaluator.evaluate(request);
        if (frame.targets.size() > 1 || time == line.time) {
            destination.draw(frame);
        }
        progress.frameIsDone();
    };
    if (line.time > 0.0) {
        play(0.0);
    }
    for (int i = 1; start + i * step < line.time; ++i) {
        play(start + i * step);
    }
    play(line.time);
}

bool draws(const CommandLine &line)
{
    return !line.showsInfo || !line.picture.isEmpty() || line.frames > 0;
}

/// What has to be opened before the process may open nothing any more.
struct Resources
{
    QByteArray composition;
    std::unique_ptr<OffscreenDestination> destination;
    QFile picture;
};

ExitStatus open(const CommandLine &line, Resources &resources)
{
    foundation::FileReadError fileError;
    auto bytes = foundation::readBoundedFile(line.file, largestFile, &fileError);
    if (!bytes) {
        return fail(NoComposition,
                    QStringLiteral("%1: %2").arg(line.file, fileError.inWords(largestFile)));
    }
    resources.composition = std::move(*bytes);
    resources.picture.setFileName(line.picture);
    if (!line.picture.isEmpty() && !resources.picture.open(QIODevice::ReadWrite)) {
        return fail(CannotDraw, QStringLiteral("%1 cannot be written").arg(line.picture));
    }
    QString error;
    if (draws(line)) {
        resources.destination = OffscreenDestination::create(line.size, &error);
        if (!resources.destination) {
            return fail(CannotDraw, error);
        }
        loadBeforeConfinement();
    }
    return Drawn;
}

ExitStatus draw(Evaluator &evaluator, Resources &resources, const CommandLine &line,
                const Progress &progress)
{
    playUpTo(evaluator, *resources.destination, line, progress);
    if (!line.picture.isEmpty() &&
        !(resources.picture.resize(0) &&
          resources.destination->picture().save(&resources.picture, "PNG"))) {
        return fail(CannotDraw, QStringLiteral("%1 cannot be written").arg(line.picture));
    }
    if (line.frames > 0) {
        measure(evaluator, *resources.destination, line, progress);
    }
    return Drawn;
}

ExitStatus run(const CommandLine &line, const Progress &progress)
{
    Resources resources;
    if (const ExitStatus status = open(line, resources); status != Drawn) {
        return status;
    }
    limitMemory(Allowance().bytes);
    if (!line.isUnconfined) {
        confine();
    }
    QString error;
    const auto composition = readComposition(resources.composition, &error);
    if (!composition) {
        return fail(NoComposition,
                    QStringLiteral("%1 is no composition: %2").arg(line.file, error));
    }
    Evaluator evaluator(
        composition,
        {.seed = 0, .locale = QLocale::system(), .timeZone = QTimeZone::systemTimeZone()});
    for (const auto &[key, value] : line.inputs) {
        if (!evaluator.setInput(key, value)) {
            return fail(Usage, QStringLiteral("there is no input \"%1\"").arg(key));
        }
    }
    if (line.showsInfo) {
        std::fputs(QJsonDocument(describe(evaluator)).toJson().constData(), stdout);
        std::fflush(stdout);
    }
    return draws(line) ? draw(evaluator, resources, line, progress) : Drawn;
}

ExitStatus runWithApplication(int argc, char **argv, const CommandLine &line,
                              const Progress &progress)
{
    // What a script of a composition throws is logged: a stranger's text of any length. The log has
    // a thread, so it is begun in the process that does the work.
    const foundation::StandardErrorLog log;
    if (!draws(line)) {
        const QCoreApplication application(argc, argv);
        return run(line, progress);
    }
    // No window is ever shown: fonts are all that is wanted of a display, and they need none.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QGuiApplication application(argc, argv);
    return run(line, progress);
}

} // namespace

#ifdef __SANITIZE_ADDRESS__
/// The search for leaks stops the process from another one, which a confined process may not start.
extern "C" [[gnu::visibility("default")]] const char *__asan_default_options()
{
    return "detect_leaks=0";
}
#endif

int main(int argc, char **argv)
{
    foundation::secureStandardStreams();
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    QString error;
    // What the pane starts; nobody types it, as the number is that of a descriptor.
    if (arguments.size() == 2 && arguments.first() == "--serve"_L1) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("MESA_SHADER_CACHE_DISABLE", "true");
        const foundation::StandardErrorLog log;
        const QGuiApplication application(argc, argv);
        serve(arguments.last().toInt());
    }
    if (arguments == QStringList(u"--confinement"_s)) {
        const QStringList lacks = confine();
        for (const QString &lack : lacks) {
            std::printf("%s\n", qPrintable(lack));
        }
        std::puts(lacks.isEmpty() ? "confined" : "not wholly confined");
        return lacks.isEmpty() ? Drawn : CannotDraw;
    }
    const auto line = parseCommandLine(arguments, &error);
    if (!line) {
        std::fprintf(stderr, "tarnwell-composition: %s\n%s",
                     qPrintable(foundation::loggedText(error)), usage);
        return Usage;
    }
    Allowance allowance;
    allowance.secondsOfAFrame = line->deadline.value_or(allowance.secondsOfAFrame);
    const bool isNewPicture = !line->picture.isEmpty() && !QFileInfo::exists(line->picture);
    const int status =
        runSupervised(line->file, allowance, CannotDraw, [&](const Progress &progress) {
            return runWithApplication(argc, argv, *line, progress);
        });
    if (status != Drawn && isNewPicture) {
        QFile::remove(line->picture);
    }
    return status;
}
