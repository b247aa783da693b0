// Frames as they are really made: on another thread, by OpenGL.

#include "CompositionFiles.h"

#include "compositions/opengl/OffscreenDestination.h"
#include "compositions/reader/CompositionReader.h"
#include "desktop/ScreenWindowServer.h"
#include "desktop/TestBus.h"
#include "effects/FrameThread.h"
#include "effects/FrameWorker.h"
#include "effects/SampleMenu.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QSemaphore>

#include <gtest/gtest.h>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool isSanitized = true; // freed memory is kept for a while
#else
constexpr bool isSanitized = false;
#endif

double residentMegabytes()
{
    QFile file(u"/proc/self/statm"_s);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll().split(' ').value(1).toDouble() * double(::sysconf(_SC_PAGESIZE)) /
           (1024.0 * 1024.0);
}

} // namespace

class Frames : public testing::Test
{
protected:
    void SetUp() override
    {
        QString error;
        if (!compositions::OffscreenDestination::create({16, 16}, &error))
            GTEST_SKIP() << error.toStdString();
        QObject::connect(&thread, &effects::FrameSource::frameReady, &thread,
                         [this](const QImage &picture, double) { pictures.append(picture); });
    }

    void start(const QByteArray &bytes)
    {
        thread.start({compositions::readComposition(bytes), effects::sampleMenuInputs()});
    }
    void request(double time = 0.0, QSize pixels = {40, 30})
    {
        thread.requestFrame({.time = time, .systemTime = 0.0, .pixels = pixels});
    }
    QImage nextFrame()
    {
        const qsizetype before = pictures.size();
        EXPECT_TRUE(waitUntil([&] { return pictures.size() > before; }));
        return pictures.constLast();
    }

    effects::FrameThread thread;
    QList<QImage> pictures;
};

TEST_F(Frames, HaveTheSizeThatIsAskedFor)
{
    start(compositionFile());
    for (const QSize size : {QSize(300, 7), QSize(1, 1), QSize(640, 400)}) {
        request(0.0, size);
        const QImage picture = nextFrame();
        EXPECT_EQ(picture.size(), size);
        EXPECT_EQ(picture.pixelColor(size.width() / 2, size.height() / 2), QColor(Qt::red));
    }
}

TEST_F(Frames, AreThoseOfTheCompositionThatWasStartedLast)
{
    for (int i = 0; i < 50; ++i) {
        start(compositionFile({}, {}, 0.0));
        request();
    }
    start(compositionFile());
    request();
    EXPECT_EQ(nextFrame().pixelColor(5, 5), QColor(Qt::red));
    EXPECT_EQ(pictures.size(), 1);
    request();
    thread.stop();
    start(compositionFile({}, {}, 0.0));
    request();
    EXPECT_EQ(nextFrame().pixelColor(5, 5), QColor(Qt::black));
    EXPECT_EQ(pictures.size(), 2);
}

TEST_F(Frames, GoOnAfterAThousandCompositions)
{
    QList<QByteArray> files;
    const QDir folder(QStringLiteral(TARNWELL_COMPOSITIONS));
    for (const QString &name : folder.entryList({u"*.qtz"_s}, QDir::Files)) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        files.append(file.readAll());
    }
    ASSERT_FALSE(files.isEmpty());
    const auto play = [&](int compositions) {
        for (int i = 0; i < compositions; ++i) {
            start(files.at(i % files.size()));
            request(1.0, {120, 75});
            EXPECT_FALSE(nextFrame().isNull());
            pictures.clear();
        }
    };
    play(100); // fonts, shaders and the heap's own room
    const double before = residentMegabytes();
    play(isSanitized ? 50 : 1000);
    EXPECT_LT(residentMegabytes() - before, isSanitized ? 1000.0 : 4.0);
}

namespace {

/// Stays where it is until it is let go, as something that cannot be ended does.
class StuckWorker final : public effects::FrameWorker
{
public:
    struct Control
    {
        QSemaphore stuck;
        QSemaphore letGo;
        std::atomic<bool> isGone = false;
    };

    explicit StuckWorker(Control &control)
        : m_control(control)
    {}
    ~StuckWorker() override { m_control.isGone = true; }
    void makeFrame(const compositions::FrameRequest &, quint64) override
    {
        m_control.stuck.release();
        m_control.letGo.acquire();
    }

private:
    Control &m_control;
};

/// Makes a frame without drawing any.
class QuickWorker final : public effects::FrameWorker
{
public:
    explicit QuickWorker(std::atomic<int> &gone)
        : m_gone(gone)
    {}
    ~QuickWorker() override { ++m_gone; }
    void makeFrame(const compositions::FrameRequest &request, quint64 number) override
    {
        Q_EMIT made(QImage(request.pixels, QImage::Format_RGB32), {}, 0.0, number);
    }

private:
    std::atomic<int> &m_gone;
};

} // namespace

TEST(FrameThread, LeavesAloneWhatCannotBeEnded)
{
    StuckWorker::Control control;
    int made = 0;
    std::atomic<int> gone = 0; // of those that made frames
    auto thread = std::make_unique<effects::FrameThread>(
        [&]() -> std::unique_ptr<effects::FrameWorker> {
            if (++made == 1)
                return std::make_unique<StuckWorker>(control);
            return std::make_unique<QuickWorker>(gone);
        },
        std::chrono::milliseconds(0));
    QList<QImage> pictures;
    QObject::connect(thread.get(), &effects::FrameSource::frameReady, thread.get(),
                     [&](const QImage &picture, double) { pictures.append(picture); });
    const effects::Performance performance{compositions::readComposition(compositionFile()), {}};
    const compositions::FrameRequest request{.time = 0.0, .systemTime = 0.0, .pixels = {4, 3}};
    thread->start(performance);
    thread->requestFrame(request);
    control.stuck.acquire();

    thread->start(performance);
    thread->requestFrame(request);
    EXPECT_TRUE(waitUntil([&] { return !pictures.isEmpty(); })) << "another thread goes on";
    EXPECT_FALSE(control.isGone);
    control.letGo.release();
    EXPECT_TRUE(waitUntil([&] { return control.isGone.load(); })) << "it tidies up when it can";

    // The window closes in the middle of a frame.
    control.isGone = false;
    thread = std::make_unique<effects::FrameThread>(
        [&] { return std::make_unique<StuckWorker>(control); }, std::chrono::milliseconds(0));
    thread->start(performance);
    thread->requestFrame(request);
    control.stuck.acquire();
    thread.reset();
    EXPECT_FALSE(control.isGone);
    control.letGo.release();
    EXPECT_TRUE(waitUntil([&] { return control.isGone.load() && gone == made - 1; }));
    // What is left of the threads goes in this one.
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST_F(Frames, EndWhereTheyTakeTooMuchMemory)
{
    effects::FrameThread strict([] { return std::make_unique<effects::FrameWorker>(-(1LL << 40)); },
                                std::chrono::seconds(2));
    QStringList reasons;
    QObject::connect(&strict, &effects::FrameSource::failed, &strict,
                     [&](const QString &reason) { reasons.append(reason); });
    strict.start({compositions::readComposition(compositionFile()), {}});
    strict.requestFrame({.time = 0.0, .systemTime = 0.0, .pixels = {40, 30}});
    EXPECT_TRUE(waitUntil([&] { return !reasons.isEmpty(); }));
    EXPECT_TRUE(reasons.value(0).contains(u"memory"_s));
}

TEST(WindowServer, PlaysNothingWhereNobodyLooks)
{
    ASSERT_EQ(QGuiApplication::platformName(), u"offscreen"_s);
    EXPECT_FALSE(desktop::ScreenWindowServer().canPlayCompositions());
}

} // namespace tarnwell::tests
