#include "CompositionBuilder.h"

#include <gtest/gtest.h>

namespace tarnwell::compositions::test {
namespace {

using namespace Qt::StringLiterals;
using plist::Dictionary;

TEST(ConditionalPatch, KnowsAllTests)
{
    struct Row
    {
        double a;
        int test;
        double b;
        double tolerance;
        bool result;
    };
    for (const auto &[a, test, b, tolerance, result] : {Row{1, 0, 1, 0, true},
                                                        {1, 0, 1.1, 0, false},
                                                        {1, 0, 1.1, 0.2, true},
                                                        {1, 1, 2, 0, true},
                                                        {2, 2, 1, 0, true},
                                                        {1, 2, 1, 0, false},
                                                        {1, 3, 2, 0, true},
                                                        {1, 3, 1, 0, false},
                                                        {1, 4, 1, 0, true},
                                                        {1, 5, 1, 0, true},
                                                        {2, 5, 1, 0, false},
                                                        {1, 6, 1, 0, false}}) {
        SinglePatch patch(u"QCConditional"_s,
                          {{u"inputValue1"_s, a},
                           {u"inputTest"_s, test},
                           {u"inputValue2"_s, b},
                           {u"inputTolerance"_s, tolerance}},
                          {u"outputResult"_s});
        EXPECT_EQ(patch.at(0.0).toBoolean(), result) << a << " test " << test << ' ' << b;
    }
}

TEST(LogicPatch, KnowsAllOperations)
{
    // One column for each of: neither, second only, first only, both.
    const bool results[7][4] = {{false, false, false, true}, {false, true, true, true},
                                {false, true, true, false},  {true, true, false, false},
                                {true, true, true, false},   {true, false, false, false},
                                {true, false, false, true}};
    for (int operation = 0; operation < 7; ++operation) {
        for (int i = 0; i < 4; ++i) {
            SinglePatch patch(u"QCLogic"_s,
                              {{u"inputValue1"_s, (i & 2) != 0},
                               {u"inputOperation"_s, operation},
                               {u"inputValue2"_s, (i & 1) != 0}},
                              {u"outputResult"_s});
            EXPECT_EQ(patch.at(0.0).toBoolean(), results[operation][i]) << operation << ' ' << i;
        }
    }
}

/// Feeds a signal frame by frame and collects what comes out.
std::vector<double> follow(SinglePatch &patch, const QString &input,
                           const std::vector<bool> &signal)
{
    std::vector<double> results;
    double time = 0.0;
    for (const bool high : signal) {
        results.push_back(patch.set(input, high).numberAt(time));
        time += 0.1;
    }
    return results;
}

TEST(CounterPatch, CountsEdgesOnly)
{
    SinglePatch patch(
        u"QCCounter"_s,
        {{u"inputSignal"_s, false}, {u"inputSignalDown"_s, false}, {u"inputSignalReset"_s, false}},
        {u"outputCount"_s});
    EXPECT_EQ(follow(patch, u"inputSignal"_s, {false, true, true, false, true}),
              (std::vector<double>{0, 1, 1, 1, 2}));
    EXPECT_EQ(follow(patch, u"inputSignalDown"_s, {true, false}), (std::vector<double>{1, 1}));
    EXPECT_EQ(follow(patch, u"inputSignalReset"_s, {true, true}), (std::vector<double>{0, 0}));
    EXPECT_EQ(follow(patch, u"inputSignalDown"_s, {true, false}), (std::vector<double>{0, 0}));
}

TEST(PulsePatch, LastsOneFrame)
{
    const std::vector<bool> signal{false, true, true, false, false};
    const std::vector<std::vector<double>> results{
        {0, 1, 0, 0, 0}, {0, 0, 0, 1, 0}, {0, 1, 0, 1, 0}};
    for (int mode = 0; mode < 3; ++mode) {
        SinglePatch patch(u"QCPulse"_s, {{u"inputSignal"_s, false}, {u"inputMode"_s, mode}},
                          {u"outputSignal"_s});
        EXPECT_EQ(follow(patch, u"inputSignal"_s, signal), results[size_t(mode)]) << mode;
    }
}

TEST(SignalPatch, KeepsTime)
{
    const std::vector<std::vector<bool>> results{// at 0, 0.5, 1, 1.5, 2, 2.2, 3.5
                                                 {false, false, true, false, false, false, false},
                                                 {false, false, true, false, true, false, true},
                                                 {true, false, true, false, true, false, true}};
    for (size_t mode = 0; mode < results.size(); ++mode) {
        SinglePatch patch(u"QCSignal"_s, {{u"inputMode"_s, int(mode)}, {u"inputParam"_s, 1.0}},
                          {u"outputSignal"_s});
        std::vector<bool> signal;
        for (const double time : {0.0, 0.5, 1.0, 1.5, 2.0, 2.2, 3.5}) {
            signal.push_back(patch.at(time).toBoolean());
        }
        EXPECT_EQ(signal, results[mode]) << mode;
    }
}

TEST(SignalPatch, SeesItsParameterChange)
{
    for (const int mode : {3, 4}) {
        SinglePatch patch(u"QCSignal"_s, {{u"inputMode"_s, mode}, {u"inputParam"_s, 1.0}},
                          {u"outputSignal"_s});
        EXPECT_EQ(patch.at(0.0).toBoolean(), mode == 4);
        EXPECT_FALSE(patch.at(0.1).toBoolean());
        EXPECT_TRUE(patch.set(u"inputParam"_s, 2.0).at(0.2).toBoolean());
        EXPECT_FALSE(patch.at(0.3).toBoolean());
    }
}

TEST(SampleHoldPatch, KeepsWhatItSawLast)
{
    SinglePatch patch(
        u"QCSampleHold"_s,
        {{u"inputSampleValue"_s, 5.0}, {u"inputSampling"_s, true}, {u"inputResetSignal"_s, false}},
        {u"outputValue"_s});
    EXPECT_EQ(patch.numberAt(0.0), 5.0);
    patch.set(u"inputSampling"_s, false).set(u"inputSampleValue"_s, 7.0);
    EXPECT_EQ(patch.numberAt(0.1), 5.0);
    EXPECT_EQ(patch.set(u"inputResetSignal"_s, true).numberAt(0.2), 0.0);
}

TEST(WatcherPatch, SeesChangesOfAnyType)
{
    SinglePatch patch(u"QCWatcher"_s, {{u"input"_s, u"a"_s}}, {u"outputSignal"_s},
                      {{u"portClass"_s, u"QCStringPort"_s}});
    EXPECT_FALSE(patch.at(0.0).toBoolean());
    EXPECT_TRUE(patch.set(u"input"_s, u"b"_s).at(0.1).toBoolean());
    EXPECT_FALSE(patch.at(0.2).toBoolean());
}

TEST(SplitterPatch, CastsToItsType)
{
    SinglePatch patch(u"QCSplitter"_s, {{u"input"_s, 2.7}}, {u"output"_s},
                      {{u"portClass"_s, u"QCIndexPort"_s}});
    EXPECT_EQ(patch.at(0.0).type(), PortType::Index);
    EXPECT_EQ(patch.numberAt(0.0), 2.0);
}

TEST(MultiplexerPatch, ClampsItsIndexAndLeavesTheRestAlone)
{
    MacroBuilder root;
    root.node(u"QCMultiplexer"_s, u"M"_s, {{u"inputIndex"_s, 0}, {u"source_0"_s, 5.0}},
              {{u"inputCount"_s, 2}});
    // Counts how often it is asked, by the time that has passed for it.
    root.node(u"QCCounter"_s, u"C"_s, {{u"inputSignal"_s, true}});
    root.connect(u"C.outputCount"_s, u"M.source_1"_s);
    root.input(u"index"_s, u"M.inputIndex"_s).output(u"out"_s, u"M.output"_s);
    Evaluator evaluator(root.read({{u"inputParameters"_s, Dictionary{{u"index"_s, 0}}}}));
    evaluator.evaluate({});
    EXPECT_EQ(evaluator.outputValue(u"out"_s).toNumber(), 5.0);
    EXPECT_EQ(evaluator.network().nodes[2].ranAt, 0U) << "an input that is not selected stays idle";
    evaluator.setInput(u"index"_s, 99.0);
    evaluator.evaluate({.time = 1.0});
    EXPECT_EQ(evaluator.outputValue(u"out"_s).toNumber(), 1.0);
}

TEST(DemultiplexerPatch, KeepsOrResetsTheOthers)
{
    for (const bool resets : {false, true}) {
        SinglePatch patch(u"QCDemultiplexer"_s,
                          {{u"input"_s, 3.0}, {u"inputIndex"_s, 0}, {u"inputReset"_s, -1.0}},
                          {u"destination_0"_s, u"destination_1"_s},
                          {{u"outputCount"_s, 2},
                           {u"resetOutputs"_s, resets},
                           {u"portClass"_s, u"QCNumberPort"_s}});
        EXPECT_EQ(patch.at(0.0, u"destination_0"_s).toNumber(), 3.0);
        patch.set(u"inputIndex"_s, 1.0).set(u"input"_s, 4.0);
        EXPECT_EQ(patch.at(0.1, u"destination_1"_s).toNumber(), 4.0);
        EXPECT_EQ(patch.at(0.2, u"destination_0"_s).toNumber(), resets ? -1.0 : 3.0);
    }
}

/// Whatever waits for a pointer or a key gets none.
TEST(Devices, Rest)
{
    MacroBuilder root;
    root.node(u"QCMouse"_s, u"M"_s)
        .node(u"QCKeyboard"_s, u"K"_s)
        .output(u"x"_s, u"M.outputX"_s)
        .output(u"down"_s, u"M.outputButton1"_s)
        .output(u"key"_s, u"K.key_0061"_s);
    Evaluator evaluator(root.read());
    evaluator.evaluate({});
    EXPECT_EQ(evaluator.outputValue(u"x"_s), Value(0.0));
    EXPECT_EQ(evaluator.outputValue(u"down"_s), Value(false));
    EXPECT_EQ(evaluator.outputValue(u"key"_s).type(), PortType::Boolean);
}

} // namespace
} // namespace tarnwell::compositions::test
