#include "compositions/maths/ColorSpace.h"
#include "compositions/maths/Curve.h"
#include "compositions/maths/Easing.h"
#include "compositions/maths/Noise.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tarnwell::compositions {
namespace {

TEST(Easing, HasTheKnownCourses)
{
    struct Row
    {
        int curve;
        double at;
        double result;
    };
    for (const auto &[curve, at, result] : {Row{0, 0.25, 0.25},
                                            {1, 0.5, 0.25},
                                            {2, 0.5, 0.75},
                                            {3, 0.25, 0.125},
                                            {4, 0.5, 0.125},
                                            {5, 0.5, 0.875},
                                            {6, 0.25, 0.0625},
                                            {7, 0.5, 0.03125},
                                            {8, 0.5, 0.96875},
                                            {10, 0.5, 1.0 - std::sqrt(0.5)},
                                            {11, 0.5, std::sqrt(0.5)},
                                            {12, 0.5, 0.5},
                                            {12, 0.25, 0.5 * (1.0 - std::sqrt(0.5))},
                                            {99, 0.3, 0.3}}) {
        EXPECT_NEAR(ease(curve, at), result, 1e-12) << "curve " << curve << " at " << at;
    }
}

TEST(Easing, IsMonotoneFromZeroToOne)
{
    for (int curve = 0; curve <= 12; ++curve) {
        EXPECT_EQ(ease(curve, 0.0), 0.0) << curve;
        EXPECT_EQ(ease(curve, 1.0), 1.0) << curve;
        for (double x = 0.01; x <= 1.0; x += 0.01) {
            EXPECT_LE(ease(curve, x - 0.01), ease(curve, x)) << curve << " at " << x;
        }
    }
}

TEST(Easing, Repeats)
{
    struct Row
    {
        int repeat;
        double time;
        double duration;
        double result;
    };
    for (const auto &[repeat, time, duration, result] : {Row{0, 1, 2, 0.5},
                                                         {0, 5, 2, 1},
                                                         {1, 5, 2, 0.5},
                                                         {1, 2, 2, 0},
                                                         {2, 3, 2, 0.5},
                                                         {2, 4, 2, 0},
                                                         {2, 5, 2, 0.5},
                                                         {3, 1, 2, 0.5},
                                                         {3, 3, 2, 0.5},
                                                         {3, 9, 2, 0},
                                                         {0, 1, 0, 1},
                                                         {1, -5, 2, 0},
                                                         {0, std::nan(""), 2, 1}}) {
        EXPECT_DOUBLE_EQ(repeated(repeat, time, duration), result)
            << repeat << " at " << time << " of " << duration;
    }
}

TEST(ColorSpace, KnowsTheCornersOfTheCube)
{
    struct Row
    {
        Hsl hsl;
        Color color;
    };
    for (const auto &[hsl, expected] : {Row{{0, 1, 0.5}, {1, 0, 0, 1}},
                                        {{1.0 / 3, 1, 0.5}, {0, 1, 0, 1}},
                                        {{2.0 / 3, 1, 0.5}, {0, 0, 1, 1}},
                                        {{1.0 / 6, 1, 0.5}, {1, 1, 0, 1}},
                                        {{0.25, 0, 0.5}, {0.5, 0.5, 0.5, 1}},
                                        {{0.5, 1, 1}, {1, 1, 1, 1}},
                                        {{-1.0 / 3, 1, 0.5}, {0, 0, 1, 1}}}) {
        const Color color = colorFromHsl(hsl, 1.0);
        EXPECT_NEAR(color.red, expected.red, 1e-9);
        EXPECT_NEAR(color.green, expected.green, 1e-9);
        EXPECT_NEAR(color.blue, expected.blue, 1e-9);
    }
}

TEST(ColorSpace, ReturnsWhereItCameFrom)
{
    for (double red = 0.05; red < 1.0; red += 0.3) {
        for (double green = 0.1; green < 1.0; green += 0.27) {
            for (double blue = 0.0; blue <= 1.0; blue += 0.25) {
                const Color color = colorFromHsl(hslFromColor({red, green, blue, 1.0}), 1.0);
                EXPECT_NEAR(color.red, red, 1e-9);
                EXPECT_NEAR(color.green, green, 1e-9);
                EXPECT_NEAR(color.blue, blue, 1e-9);
            }
        }
    }
}

TEST(Noise, IsSmoothAndZeroOnTheLattice)
{
    EXPECT_EQ(gradientNoise(3, -2, 7), 0.0);
    double most = 0.0;
    for (double x = 0.0; x < 20.0; x += 0.01) {
        const double here = gradientNoise(x, 0.3, 0.7);
        EXPECT_LE(std::abs(here), 1.0);
        EXPECT_LT(std::abs(gradientNoise(x + 0.001, 0.3, 0.7) - here), 0.01);
        most = std::max(most, std::abs(here));
    }
    EXPECT_GT(most, 0.3);
    EXPECT_EQ(gradientNoise(1e300, 0, 0), 0.0);
    EXPECT_NE(gradientNoise(0.5, 0.3, 0.7, 1), gradientNoise(0.5, 0.3, 0.7, 2));
}

TEST(Noise, HashesCoverTheUnitEvenly)
{
    double sum = 0.0;
    for (quint64 i = 0; i < 10'000; ++i) {
        const double number = hashToUnit(1, i);
        ASSERT_GE(number, 0.0);
        ASSERT_LT(number, 1.0);
        sum += number;
    }
    EXPECT_NEAR(sum / 10'000, 0.5, 0.02);
    EXPECT_EQ(hashToUnit(1, 0.0), hashToUnit(1, -0.0));
}

TEST(Curve, GoesThroughItsPointsAndNeverBeyond)
{
    const Curve curve({{1.0, 10.0}, {0.0, 0.0}, {0.5, 10.0}, {2.0, -5.0}});
    EXPECT_DOUBLE_EQ(curve.valueAt(0.5), 10.0);
    EXPECT_DOUBLE_EQ(curve.valueAt(0.75), 10.0);
    EXPECT_DOUBLE_EQ(curve.valueAt(-1.0), 0.0);
    EXPECT_DOUBLE_EQ(curve.valueAt(9.0), -5.0);
    for (double t = 0.0; t < 2.0; t += 0.01) {
        EXPECT_LE(curve.valueAt(t), 10.0 + 1e-9);
        EXPECT_GE(curve.valueAt(t), -5.0 - 1e-9);
    }
    EXPECT_TRUE(Curve({{std::nan(""), 1.0}}).isEmpty());
}

} // namespace
} // namespace tarnwell::compositions
