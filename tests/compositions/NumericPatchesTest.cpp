#include "CompositionBuilder.h"

#include <gtest/gtest.h>

namespace tarnwell::compositions::test {
namespace {

using namespace Qt::StringLiterals;
using plist::Dictionary;

struct Row
{
    const char *name;
    QString className;
    Dictionary inputs;
    QString output;
    double result;
    Dictionary settings = {};
};

void PrintTo(const Row &row, std::ostream *stream)
{
    *stream << row.name;
}

class NumericPatch : public testing::TestWithParam<Row>
{};

TEST_P(NumericPatch, Calculates)
{
    const Row &row = GetParam();
    SinglePatch patch(row.className, row.inputs, {row.output}, row.settings);
    EXPECT_NEAR(patch.numberAt(1.0), row.result, 1e-9);
}

Dictionary math(double value, int operation, double operand)
{
    return {{u"inputValue"_s, value}, {u"operation_1"_s, operation}, {u"operand_1"_s, operand}};
}

Dictionary range(double value, double least, double most)
{
    return {{u"inputValue"_s, value}, {u"inputMin"_s, least}, {u"inputMax"_s, most}};
}

const QString mathClass = u"QCMath"_s;
const QString value = u"outputValue"_s;

INSTANTIATE_TEST_SUITE_P(
    Table, NumericPatch,
    testing::Values(
        Row{"plus", mathClass, math(2, 0, 3), value, 5},
        Row{"minus", mathClass, math(2, 1, 3), value, -1},
        Row{"times", mathClass, math(2, 2, 3), value, 6},
        Row{"by", mathClass, math(3, 3, 2), value, 1.5},
        Row{"byZero", mathClass, math(3, 3, 0), value, 0},
        Row{"modulo", mathClass, math(365, 4, 360), value, 5},
        Row{"moduloZero", mathClass, math(365, 4, 0), value, 0},
        Row{"power", mathClass, math(2, 5, 10), value, 1024},
        Row{"powerOfNegative", mathClass, math(-2, 5, 0.5), value, 0},
        Row{"least", mathClass, math(2, 6, 3), value, 2},
        Row{"most", mathClass, math(2, 7, 3), value, 3},
        Row{"leftToRight",
            mathClass,
            {{u"inputValue"_s, 2.0},
             {u"operation_1"_s, 0},
             {u"operand_1"_s, 3.0},
             {u"operation_2"_s, 2},
             {u"operand_2"_s, 4.0}},
            value,
            20},
        Row{"countFromSetting", mathClass, math(1, 0, 1), value, 2, {{u"numberOfOperations"_s, 3}}},
        Row{"integerAsReal",
            mathClass,
            {{u"inputValue"_s, 2}, {u"operation_1"_s, 0.0}, {u"operand_1"_s, 1}},
            value,
            3},
        Row{"expression",
            u"QCExpression"_s,
            {{u"a"_s, 2.0}, {u"b"_s, 5.0}},
            u"outputResult"_s,
            11,
            {{u"expression"_s, u"a*b+1"_s}}},
        Row{"brokenExpression",
            u"QCExpression"_s,
            {{u"a"_s, 2.0}},
            u"outputResult"_s,
            0,
            {{u"expression"_s, u"a*"_s}}},
        Row{"round", u"QCRoundValue"_s, {{u"inputValue"_s, -1.5}}, u"outputRound"_s, -2},
        Row{"floor", u"QCRoundValue"_s, {{u"inputValue"_s, -1.5}}, u"outputFloor"_s, -2},
        Row{"ceil", u"QCRoundValue"_s, {{u"inputValue"_s, -1.5}}, u"outputCeil"_s, -1},
        Row{"clip", u"QCRangeValue"_s, range(7, 0, 5), u"outputClip"_s, 5},
        Row{"clipSwapped", u"QCRangeValue"_s, range(-7, 5, 0), u"outputClip"_s, 0},
        Row{"roll", u"QCRangeValue"_s, range(7, 0, 5), u"outputRoll"_s, 2},
        Row{"rollBelow", u"QCRangeValue"_s, range(-1, 0, 5), u"outputRoll"_s, 4},
        Row{"rollNowhere", u"QCRangeValue"_s, range(7, 3, 3), u"outputRoll"_s, 3}),
    [](const auto &row) { return row.param.name; });

TEST(SmoothPatch, FollowsWithTheCurveOfEachDirection)
{
    SinglePatch patch(u"QCSmooth"_s,
                      {{u"inputValue"_s, 0.0},
                       {u"inputIncreasingDuration"_s, 2.0},
                       {u"inputIncreasingInterpolation"_s, 0},
                       {u"inputDecreasingDuration"_s, 1.0},
                       {u"inputDecreasingInterpolation"_s, 1}},
                      {u"outputValue"_s});
    EXPECT_EQ(patch.numberAt(0.0), 0.0);
    patch.set(u"inputValue"_s, 10.0);
    EXPECT_EQ(patch.numberAt(1.0), 0.0);
    EXPECT_DOUBLE_EQ(patch.numberAt(2.0), 5.0);
    // A new target in mid-course starts from where the value is.
    patch.set(u"inputValue"_s, 1.0);
    EXPECT_DOUBLE_EQ(patch.numberAt(2.0), 5.0);
    EXPECT_DOUBLE_EQ(patch.numberAt(2.5), 5.0 - 4.0 * 0.25);
    EXPECT_DOUBLE_EQ(patch.numberAt(9.0), 1.0);
}

TEST(SmoothPatch, JumpsWithoutDuration)
{
    SinglePatch patch(u"QCSmooth"_s, {{u"inputValue"_s, 0.0}, {u"inputIncreasingDuration"_s, 0.0}},
                      {u"outputValue"_s});
    patch.numberAt(0.0);
    EXPECT_EQ(patch.set(u"inputValue"_s, 3.0).numberAt(0.1), 3.0);
}

TEST(DifferentialPatch, IntegratesAndResets)
{
    SinglePatch patch(u"QCDifferentialValue"_s,
                      {{u"inputValue"_s, 2.0}, {u"inputResetSignal"_s, false}}, {u"outputValue"_s},
                      {}, u"integrator"_s);
    EXPECT_EQ(patch.numberAt(1.0), 0.0);
    EXPECT_DOUBLE_EQ(patch.numberAt(1.5), 1.0);
    EXPECT_DOUBLE_EQ(patch.numberAt(3.0), 4.0);
    EXPECT_EQ(patch.set(u"inputResetSignal"_s, true).numberAt(4.0), 0.0);
    EXPECT_DOUBLE_EQ(patch.numberAt(5.0), 2.0);
}

TEST(DifferentialPatch, Derives)
{
    SinglePatch patch(u"QCDifferentialValue"_s,
                      {{u"inputValue"_s, 1.0}, {u"inputResetSignal"_s, false}}, {u"outputValue"_s},
                      {}, u"derivator"_s);
    EXPECT_EQ(patch.numberAt(0.0), 0.0);
    EXPECT_DOUBLE_EQ(patch.set(u"inputValue"_s, 4.0).numberAt(2.0), 1.5);
    EXPECT_DOUBLE_EQ(patch.numberAt(2.0), 1.5) << "no time, no change";
}

} // namespace
} // namespace tarnwell::compositions::test
