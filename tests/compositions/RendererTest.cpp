#include "CompositionBuilder.h"

#include "compositions/opengl/OffscreenDestination.h"
#include "compositions/opengl/Renderer.h"

#include <QBuffer>
#include <QColor>
#include <QDir>
#include <QImage>

#include <gtest/gtest.h>

namespace tarnwell::compositions::test {
namespace {

using namespace Qt::StringLiterals;
using plist::Dictionary;

constexpr QSize size(64, 64);

class RendererPicture : public testing::Test
{
protected:
    void SetUp() override
    {
        QString error;
        m_destination = OffscreenDestination::create(size, &error);
        if (!m_destination) {
            GTEST_SKIP() << error.toStdString();
        }
    }

    QImage draw(const MacroBuilder &root, double time = 0.0)
    {
        Evaluator evaluator(root.read());
        m_destination->draw(evaluator.evaluate({.time = time, .systemTime = 0.0, .pixels = size}));
        return m_destination->picture();
    }

    std::unique_ptr<OffscreenDestination> m_destination;
};

/// A difference of rounding passes, one that an eye could see does not.
void expectColor(const QImage &image, int x, int y, const QColor &expected)
{
    const QColor color = image.pixelColor(x, y);
    const int difference = std::max(
        {std::abs(color.red() - expected.red()), std::abs(color.green() - expected.green()),
         std::abs(color.blue() - expected.blue()), std::abs(color.alpha() - expected.alpha())});
    EXPECT_LE(difference, 3) << x << ',' << y << " is " << color.name().toStdString() << " not "
                             << expected.name().toStdString();
}

Dictionary sprite(double x, double width, const Dictionary &tint, int blending = 1, double z = 0.0)
{
    return {{u"inputX"_s, x}, {u"inputWidth"_s, width}, {u"inputHeight"_s, 2.0},
            {u"inputZ"_s, z}, {u"inputColor"_s, tint},  {u"inputBlending"_s, blending}};
}

TEST_F(RendererPicture, FillsWhatACornerSays)
{
    MacroBuilder root;
    root.node(u"QCClear"_s, u"C"_s, {{u"inputColor"_s, color(0, 0, 1)}})
        .node(u"QCSprite"_s, u"S"_s,
              {{u"inputX"_s, 0.5}, {u"inputY"_s, 0.5}, {u"inputColor"_s, color(1, 0, 0)}});
    const QImage image = draw(root);
    expectColor(image, 16, 16, Qt::blue);
    expectColor(image, 48, 16, Qt::red);
    expectColor(image, 33, 30, Qt::red);
    expectColor(image, 48, 48, Qt::blue);
}

TEST_F(RendererPicture, IsOpaqueAndBlackWithoutAnything)
{
    expectColor(draw(MacroBuilder()), 5, 5, Qt::black);
    MacroBuilder clear;
    clear.node(u"QCClear"_s, u"C"_s, {{u"inputColor"_s, color(1, 1, 1, 0.5)}});
    expectColor(draw(clear), 5, 5, QColor(128, 128, 128));
}

TEST_F(RendererPicture, Blends)
{
    struct Row
    {
        int blending;
        QColor result;
    };
    for (const auto &[blending, result] :
         {Row{0, {128, 0, 0}}, {1, {128, 0, 128}}, {2, {128, 0, 255}}, {3, {64, 0, 128}}}) {
        MacroBuilder root;
        root.node(u"QCClear"_s, u"C"_s, {{u"inputColor"_s, color(0, 0, 1)}})
            .node(u"QCSprite"_s, u"S"_s, sprite(0, 2, color(1, 0, 0, 0.5), blending));
        expectColor(draw(root), 32, 32, result);
    }
}

TEST_F(RendererPicture, TestsDepth)
{
    MacroBuilder root;
    root.node(u"QCSprite"_s, u"Near"_s, sprite(0, 4, color(0, 1, 0), 1, 0.1))
        .node(u"QCSprite"_s, u"Far"_s, sprite(0, 4, color(1, 0, 0), 1, -0.1));
    expectColor(draw(root), 32, 32, Qt::green);
    Dictionary flat = sprite(0, 4, color(1, 0, 0), 1, -0.1);
    flat.insert(u"inputZBuffer"_s, 0);
    root.node(u"QCSprite"_s, u"Flat"_s, flat);
    expectColor(draw(root), 32, 32, Qt::red);
}

/// Four pixels: red and green above, blue and white below.
QByteArray fourColors()
{
    QImage image(2, 2, QImage::Format_RGB32);
    image.setPixelColor(0, 0, Qt::red);
    image.setPixelColor(1, 0, Qt::green);
    image.setPixelColor(0, 1, Qt::blue);
    image.setPixelColor(1, 1, Qt::white);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data();
}

void expectFourColors(const QImage &image)
{
    expectColor(image, 8, 8, Qt::red);
    expectColor(image, 56, 8, Qt::green);
    expectColor(image, 8, 56, Qt::blue);
    expectColor(image, 56, 56, Qt::white);
}

TEST_F(RendererPicture, ShowsAnImageTheRightWayUp)
{
    MacroBuilder direct;
    direct.node(u"QCImageLoader"_s, u"L"_s, {}, {{u"imageData"_s, fourColors()}})
        .node(u"QCBillboard"_s, u"B"_s, {{u"inputScale"_s, 2.0}})
        .connect(u"L.outputImage"_s, u"B.inputImage"_s);
    expectFourColors(draw(direct));
    MacroBuilder indirect;
    indirect.macro(u"QCRenderInImage"_s, u"R"_s, direct)
        .node(u"QCSprite"_s, u"S"_s, {{u"inputWidth"_s, 2.0}, {u"inputHeight"_s, 2.0}})
        .connect(u"R.outputImage"_s, u"S.inputImage"_s);
    expectFourColors(draw(indirect));
}

TEST_F(RendererPicture, MasksByBrightness)
{
    MacroBuilder root;
    root.node(u"QCImageLoader"_s, u"L"_s, {}, {{u"imageData"_s, fourColors()}})
        .node(u"QCSprite"_s, u"S"_s, {{u"inputWidth"_s, 2.0}, {u"inputHeight"_s, 2.0}})
        .connect(u"L.outputImage"_s, u"S.inputMask"_s);
    const QImage image = draw(root);
    expectColor(image, 56, 56, Qt::white);
    expectColor(image, 8, 8, QColor(76, 76, 76));
}

TEST_F(RendererPicture, DrawsGradientsAndLines)
{
    MacroBuilder root;
    root.node(u"QCGradient"_s, u"G"_s,
              {{u"inputColor1"_s, color(0, 0, 0)},
               {u"inputColor2"_s, color(1, 1, 1)},
               {u"inputDirection"_s, 1}})
        .node(u"QCLine"_s, u"L"_s,
              {{u"inputStartX"_s, -1.0},
               {u"inputEndX"_s, 1.0},
               {u"inputLineWidth"_s, 8.0},
               {u"inputStartColor"_s, color(1, 0, 0)},
               {u"inputEndColor"_s, color(1, 0, 0)}});
    const QImage image = draw(root);
    expectColor(image, 31, 5, QColor(126, 126, 126));
    EXPECT_LT(image.pixelColor(2, 5).red(), 20);
    EXPECT_GT(image.pixelColor(61, 5).red(), 235);
    expectColor(image, 32, 32, Qt::red);
    expectColor(image, 32, 29, Qt::red);
    EXPECT_NE(image.pixelColor(32, 26), QColor(Qt::red));
}

TEST_F(RendererPicture, GivesTheTexturesOfOldImagesBack)
{
    MacroBuilder inside;
    inside.node(u"QCClear"_s, u"C"_s, {{u"inputColor"_s, color(1, 0, 0)}});
    MacroBuilder root;
    root.macro(u"QCRenderInImage"_s, u"R"_s, inside)
        .node(u"QCSprite"_s, u"S"_s, sprite(0, 2, color(1, 1, 1)))
        .connect(u"R.outputImage"_s, u"S.inputImage"_s);
    Evaluator evaluator(root.read());
    for (int i = 0; i < 100; ++i) {
        m_destination->draw(
            evaluator.evaluate({.time = i / 60.0, .systemTime = 0.0, .pixels = size}));
    }
    EXPECT_LE(m_destination->renderer().textures().count(), 3U);
    expectColor(m_destination->picture(), 32, 32, Qt::red);
}

/// A picture with something of everything, against one that was looked at once.
TEST_F(RendererPicture, LooksAsItDid)
{
    MacroBuilder ball;
    ball.node(u"QCSphere"_s, u"S"_s,
              {{u"inputScale"_s, 0.4}, {u"inputColor"_s, color(1, 0.8, 0.2)}});
    MacroBuilder root;
    root.node(u"QCGradient"_s, u"G"_s,
              {{u"inputColor1"_s, color(0.1, 0.1, 0.4)}, {u"inputColor2"_s, color(0.6, 0.8, 1)}})
        .macro(u"QCReplicator"_s, u"R"_s, ball,
               {{u"inputCopies"_s, 6},
                {u"inputOriginX"_s, 0.6},
                {u"inputRotationZ"_s, 300.0},
                {u"inputScale"_s, 0.5}})
        .node(u"QCCube"_s, u"C"_s,
              {{u"inputRX"_s, 30.0},
               {u"inputRY"_s, 40.0},
               {u"inputWidth"_s, 0.5},
               {u"inputHeight"_s, 0.5},
               {u"inputDepth"_s, 0.5},
               {u"inputColorFront"_s, color(1, 0, 0)},
               {u"inputColorTop"_s, color(0, 1, 0)},
               {u"inputColorLeft"_s, color(1, 1, 1)}});
    const QImage image = draw(root).convertToFormat(QImage::Format_RGB32);
    const QString golden = QStringLiteral(GOLDEN_PICTURES "/scene.png");
    if (qEnvironmentVariableIsSet("TARNWELL_KEEP_PICTURES")) {
        image.save(golden);
    }
    const QImage expected = QImage(golden).convertToFormat(QImage::Format_RGB32);
    ASSERT_EQ(image.size(), expected.size());
    // Edges may fall one pixel to either side from one driver to the next.
    constexpr int tolerance = 24;
    int different = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor a = image.pixelColor(x, y);
            const QColor b = expected.pixelColor(x, y);
            different += std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) +
                                     std::abs(a.blue() - b.blue()) >
                                 tolerance
                             ? 1
                             : 0;
        }
    }
    EXPECT_LE(different, image.width() * image.height() / 50);
}

} // namespace
} // namespace tarnwell::compositions::test
