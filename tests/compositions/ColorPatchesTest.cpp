#include "CompositionBuilder.h"

#include <gtest/gtest.h>

namespace tarnwell::compositions::test {
namespace {

using namespace Qt::StringLiterals;

void expectColor(const Value &value, const Color &expected)
{
    EXPECT_EQ(value.type(), PortType::Color);
    EXPECT_NEAR(value.toColor().red, expected.red, 1e-9);
    EXPECT_NEAR(value.toColor().green, expected.green, 1e-9);
    EXPECT_NEAR(value.toColor().blue, expected.blue, 1e-9);
    EXPECT_NEAR(value.toColor().alpha, expected.alpha, 1e-9);
}

TEST(ColorFromComponentsPatch, ReadsBothKinds)
{
    const plist::Dictionary inputs{
        {u"input1"_s, 0.5}, {u"input2"_s, 1.0}, {u"input3"_s, 0.5}, {u"inputAlpha"_s, 0.25}};
    expectColor(
        SinglePatch(u"QCColorFromComponents"_s, inputs, {u"outputColor"_s}, {}, u"rgb"_s).at(0),
        {0.5, 1.0, 0.5, 0.25});
    expectColor(
        SinglePatch(u"QCColorFromComponents"_s, inputs, {u"outputColor"_s}, {}, u"hsl"_s).at(0),
        {0.0, 1.0, 1.0, 0.25});
}

TEST(ColorToComponentsPatch, IsTheReverse)
{
    SinglePatch patch(u"QCColorToComponents"_s, {{u"inputColor"_s, color(0, 1, 1, 0.25)}},
                      {u"output1"_s, u"output2"_s, u"output3"_s, u"outputAlpha"_s}, {}, u"hsl"_s);
    EXPECT_NEAR(patch.at(0, u"output1"_s).toNumber(), 0.5, 1e-9);
    EXPECT_NEAR(patch.at(0, u"output2"_s).toNumber(), 1.0, 1e-9);
    EXPECT_NEAR(patch.at(0, u"output3"_s).toNumber(), 0.5, 1e-9);
    EXPECT_NEAR(patch.at(0, u"outputAlpha"_s).toNumber(), 0.25, 1e-9);
}

TEST(ColorTransformPatch, TurnsTheHueByDegrees)
{
    expectColor(SinglePatch(u"QCColorTransform"_s,
                            {{u"inputColor"_s, color(1, 0, 0)}, {u"inputHue"_s, 120.0}},
                            {u"outputColor"_s})
                    .at(0),
                {0, 1, 0, 1});
}

TEST(ColorMixerPatch, MixesAlongACurve)
{
    SinglePatch patch(u"QCColorMixer"_s,
                      {{u"inputColor1"_s, color(0, 0, 0, 0)},
                       {u"inputColor2"_s, color(1, 0.5, 0, 1)},
                       {u"inputMix"_s, 0.5},
                       {u"inputInterpolation"_s, 1}},
                      {u"outputColor"_s});
    expectColor(patch.at(0), {0.25, 0.125, 0, 0.25});
    expectColor(patch.set(u"inputMix"_s, 7.0).at(1), {1, 0.5, 0, 1});
}

} // namespace
} // namespace tarnwell::compositions::test
