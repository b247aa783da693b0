// The preview without a composition's frames being drawn: when they are asked for, and how they are
// shown.

#include "CompositionFiles.h"

#include "effects/QCView.h"
#include "fakes/FakeClock.h"
#include "fakes/FakeTimers.h"
#include "support/RowName.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarnwell::tests {

namespace {

/// Makes frames when the test says so.
class FakeSource final : public effects::FrameSource
{
public:
    struct Control
    {
        effects::Performance performance; ///< that was started last
        int starts = 0;
        int stops = 0;
        QList<compositions::FrameRequest> requests;
        FakeSource *source = nullptr;

        void answer(const QColor &color, std::chrono::milliseconds took) const
        {
            QImage picture(requests.constLast().pixels, QImage::Format_RGB32);
            picture.fill(color);
            Q_EMIT source->frameReady(picture, took);
        }
    };

    explicit FakeSource(Control &control)
        : m_control(control)
    {
        control.source = this;
    }
    void start(const effects::Performance &performance) override
    {
        m_control.performance = performance;
        ++m_control.starts;
    }
    void stop() override { ++m_control.stops; }
    void requestFrame(const compositions::FrameRequest &request) override
    {
        m_control.requests.append(request);
    }

private:
    Control &m_control;
};

} // namespace

class Preview : public testing::Test
{
protected:
    QString write(const QByteArray &bytes)
    {
        QFile file(folder.filePath(u"%1.qtz"_s.arg(++files)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }
    void play(const QByteArray &bytes = compositionFile())
    {
        ASSERT_TRUE(view.loadCompositionFromFile(write(bytes)));
        view.startRendering();
    }
    void show()
    {
        view.resize(80, 50);
        view.show();
        paint();
    }
    static void paint()
    {
        for (int round = 0; round < 5; ++round)
            QApplication::processEvents();
    }
    void pass(double seconds)
    {
        clock.control().advance(seconds);
        timers.control().advance(seconds);
    }
    QColor shown() { return view.grab().toImage().pixelColor(40, 25); }
    qsizetype requests() const { return source.requests.size(); }

    QTemporaryDir folder;
    int files = 0;
    FakeSource::Control source;
    int sources = 0;
    fakes::FakeClock clock;
    fakes::FakeTimers timers;
    effects::QCView view{clock, timers, [this] {
                             ++sources;
                             return std::make_unique<FakeSource>(source);
                         }};
};

TEST_F(Preview, AsksForOneFrameAfterTheOther)
{
    show();
    EXPECT_EQ(sources, 0) << "nothing is made before there is something to play";
    play();
    EXPECT_TRUE(view.isRendering());
    paint();
    pass(0.001);
    ASSERT_EQ(requests(), 1);
    EXPECT_EQ(source.requests[0].time, 0.0);
    EXPECT_EQ(source.requests[0].pixels, QSize(80, 50));
    EXPECT_DOUBLE_EQ(source.requests[0].systemTime, clock.absoluteTime());
    view.repaint();
    pass(5.0);
    EXPECT_EQ(requests(), 1) << "a slow frame is waited for";

    source.answer(Qt::red, 2ms);
    paint();
    EXPECT_EQ(shown(), QColor(Qt::red));
    pass(0.0);
    ASSERT_EQ(requests(), 2);
    source.answer(Qt::blue, 2ms);
    paint();
    pass(0.010);
    EXPECT_EQ(requests(), 2) << "no more than sixty a second";
    pass(0.010);
    ASSERT_EQ(requests(), 3);
    EXPECT_NEAR(source.requests[2].time - source.requests[1].time, 0.020, 1e-6);

    for (int frame = 0; frame < 20; ++frame) {
        source.answer(Qt::red, 200ms);
        paint();
        pass(10.0);
    }
    source.answer(Qt::red, 200ms);
    paint();
    ASSERT_EQ(timers.control().scheduledIntervals().size(), 1);
    EXPECT_NEAR(timers.control().scheduledIntervals()[0], 0.4, 0.01) << "slow frames come rarely";
}

TEST_F(Preview, StandsStillWhileNobodyCanSeeIt)
{
    struct Row
    {
        const char *name;
        std::function<void(QWidget &window, QWidget &page)> leave;
        std::function<void(QWidget &window, QWidget &page)> comeBack;
    };
    const Row rows[] = {
        {"other page", [](QWidget &, QWidget &page) { page.hide(); },
         [](QWidget &, QWidget &page) { page.show(); }},
        {"hidden window", [](QWidget &window, QWidget &) { window.hide(); },
         [](QWidget &window, QWidget &) { window.show(); }},
        {"minimised",
         [](QWidget &window, QWidget &) {
             window.setWindowState(window.windowState() | Qt::WindowMinimized);
         },
         [](QWidget &window, QWidget &) {
             window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
             window.update();
         }},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QWidget window;
        auto *page = new QWidget(&window);
        (new QVBoxLayout(&window))->addWidget(page);
        auto *playing = new effects::QCView(
            clock, timers, [this] { return std::make_unique<FakeSource>(source); }, page);
        (new QVBoxLayout(page))->addWidget(playing);
        window.resize(200, 200);
        window.show();
        ASSERT_TRUE(playing->loadCompositionFromFile(write(compositionFile())));
        playing->startRendering();
        paint();
        source.requests.clear();
        pass(0.02);
        ASSERT_EQ(requests(), 1);
        row.leave(window, *page);
        paint();
        source.answer(Qt::red, 1ms);
        paint();
        pass(3600.0);
        EXPECT_EQ(requests(), 1);
        EXPECT_TRUE(timers.control().scheduledIntervals().isEmpty()) << "nothing wakes it";
        EXPECT_TRUE(playing->isRendering());

        const double before = source.requests[0].time;
        row.comeBack(window, *page);
        paint();
        playing->repaint();
        pass(0.02);
        ASSERT_EQ(requests(), 2);
        EXPECT_LE(source.requests[1].time - before, 1.0) << "it goes on where it was";
    }
}

TEST_F(Preview, StopsForWhatIsNoComposition)
{
    const QByteArray good = compositionFile();
    const std::pair<const char *, QString> rows[] = {
        {"empty", write({})},
        {"random", write(QByteArray::fromHex("8f3a00ff17c2d9e4a1b05566"))},
        {"truncated", write(good.left(good.size() / 2))},
        {"another property list", write(plist::write(plist::Array{1, 2}, plist::Format::Xml))},
        {"no root patch", write(plist::write(plist::Dictionary{}, plist::Format::Binary))},
        {"not there", u"/nowhere/at/all.qtz"_s},
        {"a folder", folder.path()},
        {"without an end", u"/dev/zero"_s},
    };
    show();
    for (const auto &[name, path] : rows) {
        SCOPED_TRACE(name);
        play(good);
        EXPECT_FALSE(view.loadCompositionFromFile(path));
        EXPECT_FALSE(view.isRendering());
        EXPECT_EQ(view.composition(), nullptr);
        view.startRendering();
        EXPECT_FALSE(view.isRendering()) << "there is nothing to play";
    }
    EXPECT_EQ(sources, 1);
    EXPECT_EQ(source.starts, source.stops);
}

TEST_F(Preview, HandsOverTheInputs)
{
    show();
    ASSERT_TRUE(view.loadCompositionFromFile(
        write(compositionFile({{u"name"_s, u"Rain"_s}}, {u"MenuItems"_s, u"Speed"_s}))));
    EXPECT_EQ(view.composition()->name, u"Rain"_s);
    EXPECT_EQ(view.inputKeys(), (QStringList{u"MenuItems"_s, u"Speed"_s}));
    view.setValue(compositions::Value(3.0), u"Speed"_s);
    view.startRendering();
    ASSERT_EQ(source.performance.inputs.size(), 1U);
    EXPECT_EQ(source.performance.inputs[0].first, u"Speed"_s);
    play();
    EXPECT_TRUE(source.performance.inputs.empty()) << "they go with their composition";
}

TEST_F(Preview, GivesUpWhereNoFrameCanBeMade)
{
    QStringList reasons;
    QObject::connect(&view, &effects::QCView::failed,
                     [&](const QString &reason) { reasons.append(reason); });
    show();
    const QColor background = shown();
    play();
    paint();
    pass(0.1);
    source.answer(Qt::red, 1ms);
    paint();
    pass(0.1);
    ASSERT_EQ(requests(), 2);
    Q_EMIT source.source->failed(u"No."_s);
    EXPECT_EQ(reasons, QStringList{u"No."_s});
    EXPECT_EQ(shown(), background);
    EXPECT_FALSE(view.isRendering());
    paint();
    pass(60.0);
    EXPECT_EQ(requests(), 2);
}

TEST_F(Preview, DoesNotShowWhatPlayedBeforeForLong)
{
    show();
    const QColor background = shown();
    for (const bool isSlow : {true, false}) {
        play();
        paint();
        pass(0.1);
        source.answer(Qt::red, 1ms);
        EXPECT_EQ(shown(), QColor(Qt::red));
        play();
        EXPECT_EQ(shown(), QColor(Qt::red)) << "nothing flickers";
        pass(0.1);
        if (!isSlow)
            source.answer(Qt::blue, 100ms);
        pass(1.0);
        EXPECT_EQ(shown(), isSlow ? background : QColor(Qt::blue));
    }
}

} // namespace tarnwell::tests
