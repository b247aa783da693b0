#include "CompositionBuilder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tarnwell::compositions::test {
namespace {

using namespace Qt::StringLiterals;
using plist::Dictionary;

SinglePatch oscillator(int type, double period, double phase, double amplitude, double offset)
{
    return {u"QCLFO"_s,
            {{u"inputType"_s, type},
             {u"inputPeriod"_s, period},
             {u"inputPhase"_s, phase},
             {u"inputAmplitude"_s, amplitude},
             {u"inputOffset"_s, offset},
             {u"inputPWMRatio"_s, 0.25}},
            {u"outputValue"_s},
            {{u"randomSeed"_s, 868254495}}};
}

TEST(OscillatorPatch, HasEightWaves)
{
    struct Row
    {
        int type;
        double time;
        double result;
    };
    for (const auto &[type, time, result] : {Row{0, 0, 0},
                                             {0, 1, 1},
                                             {0, 3, -1},
                                             {1, 0, 1},
                                             {1, 2, -1},
                                             {2, 0, 0},
                                             {2, 1, 1},
                                             {2, 2, 0},
                                             {2, 3, -1},
                                             {3, 1, 1},
                                             {3, 3, -1},
                                             {4, 0, -1},
                                             {4, 3, 0.5},
                                             {5, 0, 1},
                                             {5, 3, -0.5},
                                             {6, 0.9, 1},
                                             {6, 1.1, -1},
                                             {6, 3.9, -1}}) {
        EXPECT_NEAR(oscillator(type, 4, 0, 1, 0).numberAt(time), result, 1e-9)
            << type << ' ' << time;
    }
}

TEST(OscillatorPatch, ScalesShiftsAndSurvives)
{
    EXPECT_NEAR(oscillator(0, 4, 90, 1, 0).numberAt(0), 1.0, 1e-9);
    EXPECT_NEAR(oscillator(0, 30, 0, 0.5, 0.5).numberAt(7.5), 1.0, 1e-9);
    EXPECT_NEAR(oscillator(4, 4, 0, 180, 180).numberAt(3), 270.0, 1e-9);
    EXPECT_EQ(oscillator(0, 0, 0, 1, 7).numberAt(1), 7.0);
    EXPECT_NEAR(oscillator(0, -4, 0, 1, 0).numberAt(1), -1.0, 1e-9);
}

TEST(OscillatorPatch, DrawsOneRandomNumberAPeriod)
{
    SinglePatch patch = oscillator(7, 2, 0, 1, 0);
    const double first = patch.numberAt(0.1);
    EXPECT_EQ(patch.numberAt(1.9), first);
    EXPECT_NE(patch.numberAt(2.1), first);
    EXPECT_EQ(oscillator(7, 2, 0, 1, 0).numberAt(0.1), first) << "the same in every run";
    EXPECT_LE(std::abs(first), 1.0);
}

SinglePatch interpolation(const Dictionary &more, const Dictionary &settings = {})
{
    Dictionary inputs{{u"inputValue1"_s, 10.0},
                      {u"inputValue2"_s, 20.0},
                      {u"inputDuration"_s, 2.0},
                      {u"inputRepeat"_s, 0},
                      {u"inputInterpolation"_s, 0}};
    for (const auto &[key, value] : more) {
        inputs.insert(key, value);
    }
    return {u"QCInterpolation"_s, inputs, {u"outputValue"_s}, settings};
}

TEST(InterpolationPatch, RunsItsCourse)
{
    EXPECT_DOUBLE_EQ(interpolation({}).numberAt(0.5), 12.5);
    EXPECT_DOUBLE_EQ(interpolation({}).numberAt(9.0), 20.0);
    EXPECT_DOUBLE_EQ(interpolation({{u"inputRepeat"_s, 1}}).numberAt(2.5), 12.5);
    EXPECT_DOUBLE_EQ(interpolation({{u"inputRepeat"_s, 2}}).numberAt(3.0), 15.0);
    EXPECT_DOUBLE_EQ(interpolation({{u"inputInterpolation"_s, 1}}).numberAt(1.0), 12.5);
}

TEST(InterpolationPatch, MapsAnExternalTime)
{
    SinglePatch patch = interpolation({{u"_time"_s, 0.5}}, {{u"timebase"_s, u"external"_s}});
    EXPECT_DOUBLE_EQ(patch.numberAt(77.0), 12.5);
    EXPECT_DOUBLE_EQ(patch.set(u"_time"_s, -3.0).numberAt(78.0), 10.0) << "time is never negative";
}

TEST(InterpolationPatch, FollowsACurveOfItsOwn)
{
    SinglePatch patch = interpolation({}, {{u"controlPointCount"_s, 1},
                                           {u"controlPointTimes"_s, plist::Array{0.5}},
                                           {u"controlPointValues"_s, plist::Array{1.0}},
                                           {u"controlPointStart"_s, 0.0},
                                           {u"controlPointEnd"_s, 0.0}});
    EXPECT_DOUBLE_EQ(patch.numberAt(1.0), 20.0);
    EXPECT_DOUBLE_EQ(patch.numberAt(2.0), 10.0);
}

TEST(RandomPatch, HashesItsTime)
{
    const Dictionary inputs{{u"inputMin"_s, 5.0}, {u"inputMax"_s, 6.0}, {u"_time"_s, 1.0}};
    const Dictionary settings{{u"timebase"_s, u"external"_s}};
    SinglePatch patch(u"QCRandom"_s, inputs, {u"outputValue"_s}, settings);
    const double first = patch.numberAt(0.0);
    EXPECT_GE(first, 5.0);
    EXPECT_LT(first, 6.0);
    EXPECT_EQ(patch.numberAt(1.0), first);
    EXPECT_NE(patch.set(u"_time"_s, 2.0).numberAt(1.0), first);
    SinglePatch other(u"QCRandom"_s, inputs, {u"outputValue"_s}, settings, {}, {.seed = 1});
    EXPECT_NE(other.numberAt(0.0), first) << "another seed, another number";
}

TEST(TimePatches, TellTheirTime)
{
    EXPECT_EQ(SinglePatch(u"QCTime"_s, {}, {u"outputTime"_s}).numberAt(3.25), 3.25);
    SinglePatch system(u"QCSystemTime"_s, {}, {u"outputTime"_s});
    system.evaluator().evaluate({.time = 1.0, .systemTime = 4e8});
    EXPECT_EQ(system.evaluator().outputValue(u"outputTime"_s).toNumber(), 4e8);
}

TEST(StopwatchPatch, RunsBetweenItsSignals)
{
    SinglePatch patch(u"QCClock"_s,
                      {{u"inputStartSignal"_s, false},
                       {u"inputStopSignal"_s, false},
                       {u"inputResetSignal"_s, false}},
                      {u"outputTime"_s});
    EXPECT_EQ(patch.numberAt(1.0), 0.0);
    EXPECT_EQ(patch.set(u"inputStartSignal"_s, true).numberAt(2.0), 0.0);
    EXPECT_EQ(patch.numberAt(3.5), 1.5);
    EXPECT_EQ(patch.set(u"inputStopSignal"_s, true).numberAt(4.0), 2.0);
    EXPECT_EQ(patch.numberAt(9.0), 2.0);
    EXPECT_EQ(patch.set(u"inputResetSignal"_s, true).numberAt(9.5), 0.0);
}

TEST(TimeLinePatch, FollowsItsTracks)
{
    const auto frame = [](double time, double value) {
        return Dictionary{{u"time"_s, time}, {u"value"_s, value}};
    };
    SinglePatch patch(u"QCTimeLine"_s, {}, {u"output_1"_s, u"output_2"_s},
                      {{u"timeLines"_s,
                        plist::Array{Dictionary{{u"kf"_s, plist::Array{frame(0, 0), frame(2, 4)}}},
                                     Dictionary{{u"kf"_s, plist::Array{frame(0, 7)}}}}}});
    EXPECT_DOUBLE_EQ(patch.at(1.0, u"output_1"_s).toNumber(), 2.0);
    EXPECT_DOUBLE_EQ(patch.at(5.0, u"output_1"_s).toNumber(), 4.0);
    EXPECT_DOUBLE_EQ(patch.at(5.0, u"output_2"_s).toNumber(), 7.0);
}

} // namespace
} // namespace tarnwell::compositions::test
