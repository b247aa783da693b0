// Frames as they are really made: by another process, with OpenGL; and what becomes of processes
// that compositions, or anybody else, bring to an end.

#include "CompositionFiles.h"

#include "compositions/preview/SharedMemory.h"
#include "compositions/reader/CompositionReader.h"
#include "desktop/TestBus.h"
#include "effects/PreviewProcess.h"
#include "effects/SampleMenu.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarnwell::tests {

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool isSanitized = true;
constexpr auto firstFrame = 10000ms;
#else
constexpr bool isSanitized = false;
constexpr auto firstFrame = 1500ms;
#endif

QByteArray scripted(const QString &body)
{
    return compositionFile({}, {}, 1.0, u"function (__color color) main () { %1 }"_s.arg(body));
}

} // namespace

class PreviewProcess : public testing::Test
{
protected:
    PreviewProcess() { listenTo(source); }

    void listenTo(effects::PreviewProcess &to)
    {
        QObject::connect(&to, &effects::FrameSource::frameReady, &to,
                         [this](const QImage &picture) { pictures.append(picture); });
        QObject::connect(&to, &effects::FrameSource::failed, &to,
                         [this](const QString &reason) { failures.append(reason); });
        QObject::connect(&to, &effects::FrameSource::playable, &to,
                         [this](bool canPlay) { playable.append(canPlay); });
    }

    void start(const QByteArray &file)
    {
        source.start({compositions::readComposition(file), file, effects::sampleMenuInputs()});
    }
    void request(QSize pixels = {40, 30}, double time = 0.0)
    {
        source.requestFrame({.time = time, .systemTime = 0.0, .pixels = pixels});
    }
    void play(const QByteArray &file)
    {
        start(file);
        request();
    }
    QImage nextFrame()
    {
        const qsizetype before = pictures.size();
        EXPECT_TRUE(waitUntil([&] { return pictures.size() > before; }))
            << failures.join(u'|').toStdString();
        return pictures.isEmpty() ? QImage() : pictures.constLast();
    }
    QString nextFailure()
    {
        EXPECT_TRUE(waitUntil([&] { return !failures.isEmpty(); }));
        return failures.isEmpty() ? QString() : failures.takeLast();
    }
    QColor middle(const QImage &picture)
    {
        return picture.pixelColor(picture.width() / 2, picture.height() / 2);
    }

    const QString program = QCoreApplication::applicationDirPath() + "/tarnwell-composition"_L1;
    effects::PreviewProcess source{program, {firstFrame, 300ms, 50ms}};
    QList<QImage> pictures;
    QStringList failures;
    QList<bool> playable;
};

TEST_F(PreviewProcess, MakesFramesOfTheSizeThatIsAskedFor)
{
    source.prepare();
    ASSERT_TRUE(waitUntil([&] { return !playable.isEmpty(); }));
    if (!playable.first())
        GTEST_SKIP() << "there is no OpenGL here";
    start(compositionFile());
    for (const QSize size : {QSize(300, 7), QSize(1, 1), QSize(640, 400), QSize(20, 10)}) {
        request(size);
        const QImage picture = nextFrame();
        EXPECT_EQ(picture.size(), size);
        EXPECT_EQ(middle(picture), QColor(Qt::red));
    }
    // Only what was started last is shown.
    for (int i = 0; i < 50; ++i)
        play(compositionFile({}, {}, 0.0));
    pictures.clear();
    play(compositionFile());
    EXPECT_EQ(middle(nextFrame()), QColor(Qt::red));
    EXPECT_EQ(pictures.size(), 1);
    request();
    source.stop();
    play(compositionFile({}, {}, 0.0));
    EXPECT_EQ(middle(nextFrame()), QColor(Qt::black));
    EXPECT_TRUE(failures.isEmpty());
}

TEST_F(PreviewProcess, WhatEndsItIsNamedAndTheNextCompositionPlays)
{
    source.prepare();
    ASSERT_TRUE(waitUntil([&] { return !playable.isEmpty(); }));
    if (!playable.first())
        GTEST_SKIP() << "there is no OpenGL here";
    const QByteArray endless = scripted(u"'a'.repeat(8e5).indexOf('b' + 'a'.repeat(4e5))"_s);
    const auto killIt = [this] { ::kill(pid_t(source.processId()), SIGKILL); };
    const struct
    {
        const char *name;
        QByteArray file;
        std::function<void()> meanwhile;
        const char16_t *words;
    } rows[] = {
        {"loops for ever", endless, {}, u"too long"},
        {"takes all memory", scripted(u"'x'.repeat(1e9)"_s), {}, u"memory"},
        {"killed in mid-frame", endless, killIt, u"stopped the program"},
        {"stopped", compositionFile(), [this] { ::kill(pid_t(source.processId()), SIGSTOP); },
         u"too long"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        if (isSanitized && QStringView(row.words) == u"memory")
            continue; // the sanitizer takes memory of its own, so none is bounded
        play(row.file);
        if (row.meanwhile)
            row.meanwhile();
        EXPECT_TRUE(nextFailure().contains(row.words));
        pictures.clear();
        play(compositionFile());
        EXPECT_EQ(middle(nextFrame()), QColor(Qt::red));
    }
    EXPECT_TRUE(failures.isEmpty());
    // Nobody waits for a frame that is no longer wanted, also not who goes on choosing.
    play(endless);
    const qint64 stuck = source.processId();
    QTimer choosing;
    QObject::connect(&choosing, &QTimer::timeout, &source, [this] { play(compositionFile()); });
    choosing.start(20ms);
    EXPECT_TRUE(waitUntil([&] { return source.processId() != stuck; }));
    choosing.stop();
    play(endless);
    play(compositionFile());
    EXPECT_EQ(middle(nextFrame()), QColor(Qt::red));
}

TEST_F(PreviewProcess, BelievesNothingOfWhatItHears)
{
    using compositions::preview::Reply;
    // A player that answers whatever it is told to.
    const QTemporaryDir folder;
    const QString liar = folder.filePath(u"player"_s);
    const auto number = [](quint64 value, int bytes) {
        return QByteArray(reinterpret_cast<const char *>(&value), bytes);
    };
    const auto reply = [&](quint32 kind, quint32 detail, quint64 which, int width, int height) {
        return number(kind, 4) + number(detail, 4) + number(which, 8) + number(quint32(width), 4) +
               number(quint32(height), 4) + number(1, 8);
    };
    const QByteArray ready = reply(1, 0, compositions::preview::protocolVersion, 0, 0);
    const struct
    {
        const char *name;
        QList<QByteArray> replies;
    } rows[] = {
        {"short", {ready, "x"}},
        {"long", {ready, QByteArray(5000, 'x')}},
        {"unknown kind", {ready, reply(77, 0, 2, 40, 30)}},
        {"slot beyond the memory", {ready, reply(3, 2, 2, 40, 30)}},
        {"another size", {ready, reply(3, 0, 2, 4000, 3000)}},
        {"a frame of the future", {ready, reply(3, 0, 3, 40, 30)}},
        {"a start of the future", {ready, reply(2, 0, 99, 0, 0)}},
        {"ready again", {ready, ready}},
        {"another protocol", {reply(1, 0, 99, 0, 0)}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        QFile script(liar);
        ASSERT_TRUE(script.open(QIODevice::WriteOnly | QIODevice::Truncate));
        script.write("#!/usr/bin/env python3\nimport socket, sys, time\n"
                     "s = socket.socket(fileno=int(sys.argv[2]))\n"
                     "for i in range(3): s.recv(4096)\n");
        for (const QByteArray &bytes : row.replies)
            script.write("s.send(bytes.fromhex('" + bytes.toHex() + "'))\n");
        script.write("time.sleep(60)\n");
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        script.close();
        effects::PreviewProcess lied(liar);
        listenTo(lied);
        const QByteArray file = compositionFile();
        lied.start({compositions::readComposition(file), file, {}});
        lied.requestFrame({.time = 0.0, .systemTime = 0.0, .pixels = {40, 30}});
        EXPECT_TRUE(nextFailure().contains(u"stopped the program"));
        EXPECT_TRUE(pictures.isEmpty());
    }
}

TEST_F(PreviewProcess, SaysWhenThereIsNoPlayer)
{
    const QByteArray file = compositionFile();
    for (const auto &[path, words] : {std::pair(u"/nowhere/player"_s, u"missing"),
                                      std::pair(u"/bin/false"_s, u"cannot be started")}) {
        effects::PreviewProcess none(path);
        listenTo(none);
        none.start({compositions::readComposition(file), file, {}});
        none.requestFrame({.time = 0.0, .systemTime = 0.0, .pixels = {40, 30}});
        EXPECT_TRUE(failures.isEmpty()) << "not before start() returns";
        EXPECT_TRUE(nextFailure().contains(words)) << path.toStdString();
    }
}

} // namespace tarnwell::tests
