#include "CompositionBuilder.h"

#include "compositions/opengl/OffscreenDestination.h"

#include "tests/support/RowName.h"

#include <QColor>
#include <QImage>

#include <gtest/gtest.h>

namespace tarnwell::compositions::test {
namespace {

using namespace Qt::StringLiterals;
using plist::Dictionary;

constexpr QSize size(64, 64);

/// Draws a composition whose node "F" gives an image, pixel by pixel from the lower left corner.
class ComputedPicture : public testing::Test
{
protected:
    void SetUp() override
    {
        m_destination = OffscreenDestination::create(size);
        if (!m_destination) {
            GTEST_SKIP() << "there is no OpenGL";
        }
    }

    QImage draw(MacroBuilder root)
    {
        root.node(u"QCImageFilter"_s, u"Window"_s,
                  {{u"inputRectangle_Z"_s, 64.0}, {u"inputRectangle_W"_s, 64.0}}, {}, u"CICrop"_s)
            .node(u"QCImageFilter"_s, u"Black"_s, {{u"inputColor"_s, color(0, 0, 0)}}, {},
                  u"CIConstantColorGenerator"_s)
            .node(u"QCImageFilter"_s, u"Over"_s, {}, {}, u"CISourceOverCompositing"_s)
            .node(u"QCBillboard"_s, u"B"_s, {{u"inputScale"_s, 2.0}})
            .connect(u"F.outputImage"_s, u"Over.inputImage"_s)
            .connect(u"Black.outputImage"_s, u"Over.inputBackgroundImage"_s)
            .connect(u"Over.outputImage"_s, u"Window.inputImage"_s)
            .connect(u"Window.outputImage"_s, u"B.inputImage"_s);
        Evaluator evaluator(root.read());
        m_destination->draw(evaluator.evaluate({.time = 0.0, .systemTime = 0.0, .pixels = size}));
        return m_destination->picture();
    }

    std::unique_ptr<OffscreenDestination> m_destination;
};

/// The pixel so many to the right and so many up.
void expectColor(const QImage &image, int x, int y, const QColor &expected, int tolerance = 3)
{
    const QColor found = image.pixelColor(x, image.height() - 1 - y);
    EXPECT_NEAR(found.red(), expected.red(), tolerance) << x << ',' << y;
    EXPECT_NEAR(found.green(), expected.green(), tolerance) << x << ',' << y;
    EXPECT_NEAR(found.blue(), expected.blue(), tolerance) << x << ',' << y;
}

void addColor(MacroBuilder &root, const QString &key, const Dictionary &shade)
{
    root.node(u"QCImageFilter"_s, key, {{u"inputColor"_s, shade}}, {},
              u"CIConstantColorGenerator"_s);
}

/// A rectangle of one colour.
void addRectangle(MacroBuilder &root, const QString &key, const Dictionary &shade, double x,
                  double y, double width, double height)
{
    addColor(root, key + u"Color"_s, shade);
    root.node(u"QCImageFilter"_s, key,
              {{u"inputRectangle_X"_s, x},
               {u"inputRectangle_Y"_s, y},
               {u"inputRectangle_Z"_s, width},
               {u"inputRectangle_W"_s, height}},
              {}, u"CICrop"_s)
        .connect(key + u"Color.outputImage"_s, key + u".inputImage"_s);
}

struct OneColor
{
    const char *name;
    QString filter;
    Dictionary inputs;
    QColor result;
};

class ColorFilter : public ComputedPicture, public testing::WithParamInterface<OneColor>
{};

/// Of (0.8, 0.4, 0.2) over the lower half.
TEST_P(ColorFilter, ComputesTheColor)
{
    if (IsSkipped()) {
        return;
    }
    MacroBuilder root;
    addRectangle(root, u"S"_s, color(0.8, 0.4, 0.2), 0, 0, 64, 32);
    root.node(u"QCImageFilter"_s, u"F"_s, GetParam().inputs, {}, GetParam().filter)
        .connect(u"S.outputImage"_s, u"F.inputImage"_s);
    const QImage image = draw(root);
    expectColor(image, 20, 10, GetParam().result);
    expectColor(image, 20, 50, Qt::black);
}

const double grey = 0.8 * 0.2125 + 0.4 * 0.7154 + 0.2 * 0.0721;

QColor shade(double red, double green, double blue)
{
    return QColor::fromRgbF(float(red), float(green), float(blue));
}

INSTANTIATE_TEST_SUITE_P(
    Table, ColorFilter,
    testing::Values(
        OneColor{"Invert", u"CIColorInvert"_s, {}, shade(0.2, 0.6, 0.8)},
        OneColor{
            "Grey", u"CIColorControls"_s, {{u"inputSaturation"_s, 0}}, shade(grey, grey, grey)},
        OneColor{
            "Brighter", u"CIColorControls"_s, {{u"inputBrightness"_s, 0.1}}, shade(0.9, 0.5, 0.3)},
        OneColor{"MoreContrast",
                 u"CIColorControls"_s,
                 {{u"inputContrast"_s, 1.5}},
                 shade(0.95, 0.35, 0.05)},
        OneColor{"Gamma", u"CIGammaAdjust"_s, {{u"inputPower"_s, 2}}, shade(0.64, 0.16, 0.04)},
        OneColor{"Exposure", u"CIExposureAdjust"_s, {{u"inputEV"_s, -1}}, shade(0.4, 0.2, 0.1)},
        OneColor{
            "Matrix",
            u"CIColorMatrix"_s,
            {{u"inputRVector_X"_s, 0}, {u"inputRVector_Y"_s, 1}, {u"inputBiasVector_Z"_s, 0.5}},
            shade(0.4, 0.4, 0.7)},
        OneColor{"Monochrome",
                 u"CIColorMonochrome"_s,
                 {{u"inputColor"_s, color(1, 0, 1)}},
                 shade(grey, 0, grey)},
        OneColor{"FalseColor",
                 u"CIFalseColor"_s,
                 {{u"inputColor0"_s, color(0, 0, 1)}, {u"inputColor1"_s, color(1, 0, 0)}},
                 shade(grey, 0, 1 - grey)},
        OneColor{"MaskToAlpha", u"CIMaskToAlpha"_s, {}, shade(grey, grey, grey)},
        OneColor{"Maximum", u"CIMaximumComponent"_s, {}, shade(0.8, 0.8, 0.8)},
        OneColor{"Minimum", u"CIMinimumComponent"_s, {}, shade(0.2, 0.2, 0.2)}),
    tests::RowName());

struct Blend
{
    const char *name;
    QString filter;
    QColor result;
};

class BlendFilter : public ComputedPicture, public testing::WithParamInterface<Blend>
{};

/// Half opaque (0.8, 0.4, 0.2) on opaque (0.5, 0.5, 1.0).
TEST_P(BlendFilter, ComputesTheColor)
{
    if (IsSkipped()) {
        return;
    }
    MacroBuilder root;
    addRectangle(root, u"S"_s, color(0.8, 0.4, 0.2, 0.5), 0, 0, 64, 32);
    addColor(root, u"D"_s, color(0.5, 0.5, 1));
    root.node(u"QCImageFilter"_s, u"F"_s, {}, {}, GetParam().filter)
        .connect(u"S.outputImage"_s, u"F.inputImage"_s)
        .connect(u"D.outputImage"_s, u"F.inputBackgroundImage"_s);
    expectColor(draw(root), 20, 10, GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    Table, BlendFilter,
    testing::Values(Blend{"Over", u"CISourceOverCompositing"_s, shade(0.65, 0.45, 0.6)},
                    Blend{"In", u"CISourceInCompositing"_s, shade(0.4, 0.2, 0.1)},
                    Blend{"Out", u"CISourceOutCompositing"_s, shade(0, 0, 0)},
                    Blend{"Atop", u"CISourceAtopCompositing"_s, shade(0.65, 0.45, 0.6)},
                    Blend{"Add", u"CIAdditionCompositing"_s, shade(0.9, 0.7, 1)},
                    Blend{"Maximum", u"CIMaximumCompositing"_s, shade(0.5, 0.5, 1)},
                    Blend{"Multiply", u"CIMultiplyBlendMode"_s, shade(0.45, 0.35, 0.6)},
                    Blend{"Screen", u"CIScreenBlendMode"_s, shade(0.7, 0.6, 1)},
                    Blend{"Darken", u"CIDarkenBlendMode"_s, shade(0.5, 0.45, 0.6)},
                    Blend{"Lighten", u"CILightenBlendMode"_s, shade(0.65, 0.5, 1)},
                    Blend{"Difference", u"CIDifferenceBlendMode"_s, shade(0.4, 0.3, 0.9)},
                    Blend{"Exclusion", u"CIExclusionBlendMode"_s, shade(0.5, 0.5, 0.9)},
                    Blend{"HardLight", u"CIHardLightBlendMode"_s, shade(0.65, 0.45, 0.7)}),
    tests::RowName());

TEST_F(ComputedPicture, DissolvesAndMasks)
{
    MacroBuilder dissolve;
    addColor(dissolve, u"A"_s, color(1, 0, 0));
    addColor(dissolve, u"Z"_s, color(0, 0, 1));
    MacroBuilder mask = dissolve;
    dissolve
        .node(u"QCImageFilter"_s, u"F"_s, {{u"inputTime"_s, 0.25}}, {}, u"CIDissolveTransition"_s)
        .connect(u"A.outputImage"_s, u"F.inputImage"_s)
        .connect(u"Z.outputImage"_s, u"F.inputTargetImage"_s);
    expectColor(draw(dissolve), 30, 30, shade(0.75, 0, 0.25));
    addRectangle(mask, u"M"_s, color(1, 1, 1), 0, 0, 32, 64);
    mask.node(u"QCImageFilter"_s, u"F"_s, {}, {}, u"CIBlendWithMask"_s)
        .connect(u"A.outputImage"_s, u"F.inputImage"_s)
        .connect(u"Z.outputImage"_s, u"F.inputBackgroundImage"_s)
        .connect(u"M.outputImage"_s, u"F.inputMaskImage"_s);
    const QImage image = draw(mask);
    expectColor(image, 10, 30, Qt::red);
    expectColor(image, 50, 30, Qt::blue);
}

TEST_F(ComputedPicture, DrawsPatterns)
{
    MacroBuilder radial;
    radial.node(u"QCImageFilter"_s, u"F"_s,
                {{u"inputCenter_X"_s, 32},
                 {u"inputCenter_Y"_s, 16},
                 {u"inputRadius0"_s, 8},
                 {u"inputRadius1"_s, 24}},
                {}, u"CIRadialGradient"_s);
    QImage image = draw(radial);
    expectColor(image, 32, 16, Qt::white);
    expectColor(image, 48, 16, shade(0.47, 0.47, 0.47), 5);
    expectColor(image, 32, 42, Qt::black);
    MacroBuilder linear;
    linear.node(u"QCImageFilter"_s, u"F"_s, {{u"inputPoint1_X"_s, 64}, {u"inputPoint1_Y"_s, 0}}, {},
                u"CILinearGradient"_s);
    image = draw(linear);
    for (const int x : {0, 16, 40, 63}) {
        const double light = 1.0 - (x + 0.5) / 64.0;
        expectColor(image, x, x / 2, shade(light, light, light));
    }
    MacroBuilder board;
    board.node(u"QCImageFilter"_s, u"F"_s,
               {{u"inputCenter_X"_s, 0}, {u"inputCenter_Y"_s, 0}, {u"inputWidth"_s, 16}}, {},
               u"CICheckerboardGenerator"_s);
    image = draw(board);
    expectColor(image, 8, 8, Qt::white);
    expectColor(image, 24, 8, Qt::black);
    expectColor(image, 24, 24, Qt::white);
}

TEST_F(ComputedPicture, MovesScalesAndTiles)
{
    const auto transformed = [this](const QString &filter, const Dictionary &inputs) {
        MacroBuilder root;
        addRectangle(root, u"S"_s, color(1, 0, 0), 4, 4, 8, 8);
        root.node(u"QCImageFilter"_s, u"F"_s, inputs, {}, filter)
            .connect(u"S.outputImage"_s, u"F.inputImage"_s);
        return draw(root);
    };
    QImage image = transformed(u"CIAffineTransform"_s, {{u"inputTransform_TranslateX"_s, 20}});
    expectColor(image, 28, 8, Qt::red);
    expectColor(image, 8, 8, Qt::black);
    image = transformed(u"CIAffineTransform"_s,
                        {{u"inputTransform_ScaleX"_s, 4}, {u"inputTransform_ScaleY"_s, 4}});
    expectColor(image, 18, 46, Qt::red);
    expectColor(image, 46, 18, Qt::red);
    expectColor(image, 12, 12, Qt::black);
    image = transformed(u"CIAffineTransform"_s, {{u"inputTransform_OriginX"_s, 32},
                                                 {u"inputTransform_OriginY"_s, 32},
                                                 {u"inputTransform_Rotate"_s, 180}});
    expectColor(image, 56, 56, Qt::red);
    expectColor(image, 8, 8, Qt::black);
    image = transformed(u"CILanczosScaleTransform"_s, {{u"inputScale"_s, 2}});
    expectColor(image, 20, 20, Qt::red);
    expectColor(image, 6, 6, Qt::black);
    for (const QString &filter : {u"CIAffineTile"_s, u"CIAffineClamp"_s}) {
        image = transformed(filter, {});
        expectColor(image, 1, 1, Qt::red);
        expectColor(image, 60, 33, Qt::red);
    }
}

/// Against the integral of the bell curve, for blurs with and without a smaller picture between.
TEST_F(ComputedPicture, Blurs)
{
    for (const double radius : {2.0, 6.0, 10.0}) {
        MacroBuilder root;
        addRectangle(root, u"S"_s, color(1, 1, 1), -200, -200, 232, 600);
        root.node(u"QCImageFilter"_s, u"F"_s, {{u"inputRadius"_s, radius}}, {}, u"CIGaussianBlur"_s)
            .connect(u"S.outputImage"_s, u"F.inputImage"_s);
        const QImage image = draw(root);
        for (const int x : {2, 20, 28, 31, 36, 44, 60}) {
            const double part = 0.5 * std::erfc((x + 0.5 - 32.0) / radius / std::sqrt(2.0));
            expectColor(image, x, 30, shade(part, part, part), 8);
        }
    }
}

TEST_F(ComputedPicture, RunsTheKernelOfAnAuthor)
{
    const auto run = [this](const QString &source, const Dictionary &inputs = {}) {
        MacroBuilder root;
        addRectangle(root, u"S"_s, color(0.2, 0.4, 0.6), 0, 0, 32, 64);
        root.node(u"QCImageKernel"_s, u"F"_s, inputs, {{u"sourceCode"_s, source}})
            .connect(u"S.outputImage"_s, u"F.image"_s);
        return draw(root);
    };
    QImage image = run(
        u"vec4 turned(vec4 input) { return input.bgra; }"
        "kernel vec4 k(sampler image, float gain, vec2 way, __color plus)"
        "{ vec4 c = turned(sample(image, samplerCoord(image) + way)); c.rgb *= gain;"
        "  return compare(vec4(c.a - 0.5), vec4(0.0, 0.0, 0.0, 1.0), c) + plus; }"_s,
        {{u"gain"_s, 0.5}, {u"way_X"_s, 8.0}, {u"way_Y"_s, 0.0}, {u"plus"_s, color(0.1, 0, 0, 0)}});
    expectColor(image, 10, 10, shade(0.4, 0.2, 0.1));
    expectColor(image, 28, 10, shade(0.1, 0, 0));
    // The place of a pixel, and a function for angles.
    image = run(u"kernel vec4 k(sampler image) { vec2 cs = cossin(0.0);"
                "return vec4(destCoord() / 64.0 * cs.x, samplerSize(image).x / 64.0, 1.0); }"_s);
    expectColor(image, 16, 32, shade(16.5 / 64, 32.5 / 64, 0.5));
    // Loops that never end do.
    image = run(u"kernel vec4 k(sampler image) { float x = 0.0; for (;;) x += 0.001;"
                "while (true) { x += 0.001; } do { x += 0.001; } while (true);"
                "return vec4(0.0, min(x, 1.0), 0.0, 1.0); }"_s);
    expectColor(image, 10, 10, Qt::green);
    // What no shader can be made of shows its image.
    image = run(u"kernel vec4 k(sampler image) { return nothing; }"_s);
    expectColor(image, 10, 10, shade(0.2, 0.4, 0.6));
}

TEST_F(ComputedPicture, Resizes)
{
    const auto resized = [this](int mode, int condition) {
        MacroBuilder root;
        addRectangle(root, u"S"_s, color(1, 0, 0), 5, 5, 20, 10);
        root.node(u"QCImageResize"_s, u"F"_s,
                  {{u"inputWidth"_s, 40},
                   {u"inputHeight"_s, 40},
                   {u"inputMode"_s, mode},
                   {u"inputCondition"_s, condition}})
            .connect(u"S.outputImage"_s, u"F.inputImage"_s);
        return draw(root);
    };
    const QImage stretched = resized(0, 0);
    expectColor(stretched, 38, 38, Qt::red);
    expectColor(stretched, 42, 20, Qt::black);
    const QImage fitted = resized(1, 1);
    expectColor(fitted, 38, 18, Qt::red);
    expectColor(fitted, 20, 24, Qt::black);
    const QImage filled = resized(2, 0);
    expectColor(filled, 38, 38, Qt::red);
    const QImage left = resized(0, 2);
    expectColor(left, 38, 38, Qt::black);
    expectColor(left, 15, 10, Qt::red);
}

} // namespace
} // namespace tarnwell::compositions::test
