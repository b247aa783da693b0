// Frames as they are really made: on another thread, by OpenGL.

#include "CompositionFiles.h"

#include "compositions/opengl/OffscreenDestination.h"
#include "compositions/reader/CompositionReader.h"
#include "desktop/ScreenWindowServer.h"
#include "desktop/TestBus.h"
#include "effects/FrameThread.h"
#include "effects/SampleMenu.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>

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

TEST(WindowServer, PlaysNothingWhereNobodyLooks)
{
    ASSERT_EQ(QGuiApplication::platformName(), u"offscreen"_s);
    EXPECT_FALSE(desktop::ScreenWindowServer().canPlayCompositions());
}

} // namespace tarnwell::tests
