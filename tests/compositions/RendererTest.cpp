#include "CompositionBuilder.h"

#include "compositions/opengl/OffscreenDestination.h"
#include "compositions/opengl/Renderer.h"

#include <QBuffer>
#include <QColor>
#include <QDir>
#include <QImage>

#include <gtest/gtest.h>

#include <cmath>

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

TEST_F(RendererPicture, LightsSurfaces)
{
    const auto lit = [this](Dictionary lights, Dictionary surface,
                            const Dictionary &settings = {}) {
        lights.insert(u"inputObjectSpecular"_s, 0.0);
        lights.insert(u"positionX_1"_s, 0.0);
        lights.insert(u"positionY_1"_s, 0.0);
        surface.insert(u"inputColor"_s, color(0.8, 0.4, 0.2));
        surface.insert(u"inputWidth"_s, 2.0);
        surface.insert(u"inputHeight"_s, 2.0);
        MacroBuilder inside;
        inside.node(u"QCSprite"_s, u"S"_s, surface);
        return draw(MacroBuilder().macro(u"QCLighting"_s, u"L"_s, inside, lights, settings));
    };
    const auto shade = [](double light) {
        return QColor::fromRgbF(float(0.8 * light), float(0.4 * light), float(0.2 * light));
    };
    const QImage plain = lit({{u"color_1"_s, color(1, 1, 1)}}, {});
    expectColor(plain, 32, 32, shade(1.1));
    expectColor(plain, 63, 32, shade(0.1 + 1.0 / std::sqrt(1.0 + 0.984 * 0.984)));
    expectColor(lit({{u"attenuation_1"_s, 1.0}}, {}), 32, 32, shade(0.6));
    expectColor(lit({{u"color_1"_s, color(0, 0.5, 0)}}, {}), 32, 32,
                QColor::fromRgbF(0.08F, 0.24F, 0.02F));
    // Its back shows light only where both sides do.
    expectColor(lit({{u"attenuation_1"_s, 0.0}}, {{u"inputRY"_s, 180.0}}), 32, 32, shade(0.1));
    expectColor(
        lit({{u"attenuation_1"_s, 0.0}}, {{u"inputRY"_s, 180.0}}, {{u"lightTwoSides"_s, true}}), 32,
        32, shade(1.1));
}

/// Against pictures that were looked at once, and that TARNWELL_KEEP_PICTURES makes anew.
void expectGolden(const QString &name, const QImage &picture)
{
    const QImage image = picture.convertToFormat(QImage::Format_RGB32);
    const QString golden = QDir(QStringLiteral(GOLDEN_PICTURES)).filePath(name + u".png"_s);
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

Dictionary colorfulCube()
{
    return {{u"inputRX"_s, 30.0},
            {u"inputRY"_s, 40.0},
            {u"inputWidth"_s, 0.5},
            {u"inputHeight"_s, 0.5},
            {u"inputDepth"_s, 0.5},
            {u"inputColorFront"_s, color(1, 0, 0)},
            {u"inputColorTop"_s, color(0, 1, 0)},
            {u"inputColorLeft"_s, color(1, 1, 1)}};
}

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
        .node(u"QCCube"_s, u"C"_s, colorfulCube());
    expectGolden(u"scene"_s, draw(root));
}

TEST_F(RendererPicture, LooksAsItDidUnderLight)
{
    MacroBuilder inside;
    inside
        .node(u"QCSphere"_s, u"S"_s,
              {{u"inputX"_s, -0.45}, {u"inputScale"_s, 0.8}, {u"inputColor"_s, color(1, 0.8, 0.2)}})
        .node(u"QCCube"_s, u"C"_s, [] {
            Dictionary cube = colorfulCube();
            cube.insert(u"inputX"_s, 0.5);
            return cube;
        }());
    MacroBuilder root;
    root.macro(u"QCLighting"_s, u"L"_s, inside,
               {{u"inputObjectShininess"_s, 20.0},
                {u"color_1"_s, color(1, 1, 1)},
                {u"positionX_1"_s, -1.0},
                {u"color_2"_s, color(0.2, 0.2, 0.9)},
                {u"positionX_2"_s, 1.5},
                {u"positionY_2"_s, -1.0}});
    expectGolden(u"light"_s, draw(root));
}

TEST_F(RendererPicture, LooksAsItDidWithLines)
{
    MacroBuilder pass;
    pass.node(u"QCIteratorVariables"_s, u"V"_s)
        .node(u"QCExpression"_s, u"X"_s, {}, {{u"expression"_s, u"cos(p * 720)"_s}})
        .node(u"QCExpression"_s, u"Y"_s, {}, {{u"expression"_s, u"sin(p * 1080)"_s}})
        .node(u"QCColorFromComponents"_s, u"C"_s, {{u"input2"_s, 0.8}, {u"input3"_s, 0.5}}, {},
              u"hsl"_s)
        .node(u"QCLine"_s, u"L"_s, {{u"inputLineWidth"_s, 2.0}, {u"inputStartZ"_s, -1.0}})
        .connect(u"V.outputPosition"_s, u"X.p"_s)
        .connect(u"V.outputPosition"_s, u"Y.p"_s)
        .connect(u"V.outputPosition"_s, u"C.input1"_s)
        .connect(u"X.outputResult"_s, u"L.inputEndX"_s)
        .connect(u"Y.outputResult"_s, u"L.inputEndY"_s)
        .connect(u"C.outputColor"_s, u"L.inputEndColor"_s);
    MacroBuilder lines;
    lines.macro(u"QCIterator"_s, u"I"_s, pass, {{u"inputCount"_s, 24}});
    MacroBuilder root;
    root.macro(u"QCCamera"_s, u"K"_s, lines,
               {{u"inputRotateX"_s, 20.0}, {u"inputTranslateY"_s, 0.1}, {u"inputScaleX"_s, 0.9}});
    expectGolden(u"lines"_s, draw(root));
}

TEST_F(RendererPicture, LooksAsItDidThroughFilters)
{
    MacroBuilder root;
    root.node(u"QCImageFilter"_s, u"Board"_s, {{u"inputWidth"_s, 12.0}}, {},
              u"CICheckerboardGenerator"_s)
        .node(u"QCImageFilter"_s, u"Cut"_s,
              {{u"inputRectangle_Z"_s, 48.0}, {u"inputRectangle_W"_s, 48.0}}, {}, u"CICrop"_s)
        .node(u"QCImageFilter"_s, u"Turned"_s,
              {{u"inputTransform_Rotate"_s, 30.0}, {u"inputTransform_TranslateX"_s, 20.0}}, {},
              u"CIAffineTransform"_s)
        .node(u"QCImageFilter"_s, u"Soft"_s, {{u"inputRadius"_s, 1.5}}, {}, u"CIGaussianBlur"_s)
        .node(u"QCImageFilter"_s, u"Sun"_s,
              {{u"inputCenter_X"_s, 30.0},
               {u"inputCenter_Y"_s, 40.0},
               {u"inputRadius1"_s, 40.0},
               {u"inputColor0"_s, color(1, 0.9, 0.3)},
               {u"inputColor1"_s, color(0.4, 0, 0.3)}},
              {}, u"CIRadialGradient"_s)
        .node(u"QCImageFilter"_s, u"Both"_s, {}, {}, u"CIMultiplyBlendMode"_s)
        .node(u"QCBillboard"_s, u"B"_s, {{u"inputScale"_s, 2.0}})
        .connect(u"Board.outputImage"_s, u"Cut.inputImage"_s)
        .connect(u"Cut.outputImage"_s, u"Turned.inputImage"_s)
        .connect(u"Turned.outputImage"_s, u"Soft.inputImage"_s)
        .connect(u"Soft.outputImage"_s, u"Both.inputImage"_s)
        .connect(u"Sun.outputImage"_s, u"Both.inputBackgroundImage"_s)
        .connect(u"Both.outputImage"_s, u"B.inputImage"_s);
    expectGolden(u"filters"_s, draw(root));
}

} // namespace
} // namespace tarnwell::compositions::test
