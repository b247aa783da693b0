#include "CompositionBuilder.h"

#include "compositions/model/Image.h"
#include "compositions/model/Structure.h"

#include <gtest/gtest.h>

namespace tarnwell::compositions::test {
namespace {

using namespace Qt::StringLiterals;
using plist::Array;
using plist::Dictionary;

double outputAt(Evaluator &evaluator, double time, const QString &key = u"out"_s)
{
    evaluator.evaluate({.time = time});
    return evaluator.outputValue(key).toNumber();
}

/// A macro that adds 1 to its published input.
MacroBuilder addOne()
{
    MacroBuilder macro;
    macro.node(u"QCMath"_s, u"M"_s, {{u"inputValue"_s, 5.0}, {u"operand_1"_s, 1.0}})
        .input(u"in"_s, u"M.inputValue"_s)
        .output(u"out"_s, u"M.outputValue"_s);
    return macro;
}

TEST(Evaluator, LeadsConnectionsThroughMacros)
{
    MacroBuilder outer;
    outer.macro(u"QCPatch"_s, u"A"_s, addOne())
        .macro(u"QCPatch"_s, u"B"_s, addOne())
        .connect(u"A.out"_s, u"B.in"_s)
        .input(u"in"_s, u"A.in"_s)
        .output(u"out"_s, u"B.out"_s);
    MacroBuilder root;
    root.node(u"QCTime"_s, u"T"_s)
        .macro(u"QCPatch"_s, u"Outer"_s, outer)
        .connect(u"T.outputTime"_s, u"Outer.in"_s)
        .output(u"out"_s, u"Outer.out"_s);
    Evaluator evaluator(root.read());
    EXPECT_EQ(outputAt(evaluator, 3.0), 5.0);
    EXPECT_EQ(outputAt(evaluator, 4.0), 6.0);
}

TEST(Evaluator, FindsTheInitialValueOfAPublishedInput)
{
    // An inner value stays unless the composition has one of its own.
    MacroBuilder root;
    root.macro(u"QCPatch"_s, u"A"_s, addOne())
        .input(u"in"_s, u"A.in"_s)
        .output(u"out"_s, u"A.out"_s);
    Evaluator plain(root.read());
    EXPECT_EQ(outputAt(plain, 0.0), 6.0);
    Evaluator given(root.read({{u"inputParameters"_s, Dictionary{{u"in"_s, 10}}}}));
    EXPECT_EQ(given.inputKeys(), QStringList{u"in"_s});
    EXPECT_EQ(given.inputType(u"in"_s), PortType::Number);
    EXPECT_EQ(given.inputValue(u"in"_s), Value(10.0));
    EXPECT_EQ(outputAt(given, 0.0), 11.0);
    EXPECT_TRUE(given.setInput(u"in"_s, u"2"_s));
    EXPECT_EQ(outputAt(given, 1.0), 3.0);
    EXPECT_FALSE(given.setInput(u"nothing"_s, 1.0));
}

TEST(Evaluator, StartsAnUntouchedInputAtZero)
{
    MacroBuilder root;
    root.node(u"QCInterpolation"_s, u"I"_s)
        .input(u"in"_s, u"I.inputValue2"_s)
        .output(u"out"_s, u"I.outputValue"_s);
    Evaluator evaluator(root.read());
    EXPECT_EQ(outputAt(evaluator, 1.0), 0.0);
}

TEST(Evaluator, RepeatsThePublishedValueOfANestedMacro)
{
    MacroBuilder inside;
    inside.node(u"QCMath"_s, u"M"_s)
        .input(u"in"_s, u"M.inputValue"_s, 4.5)
        .output(u"out"_s, u"M.outputValue"_s);
    MacroBuilder root;
    root.macro(u"QCPatch"_s, u"A"_s, inside).output(u"out"_s, u"A.out"_s);
    Evaluator evaluator(root.read());
    EXPECT_EQ(outputAt(evaluator, 0.0), 4.5);
}

TEST(Evaluator, OpensVirtualPatches)
{
    const Dictionary reusable{
        {u"rootPatch"_s, Dictionary{{u"class"_s, u"QCPatch"_s}, {u"state"_s, addOne().state()}}},
        {u"inputParameters"_s, Dictionary{{u"in"_s, 7}}}};
    MacroBuilder root;
    root.node(u"/plus"_s, u"A"_s)
        .node(u"/plus"_s, u"B"_s, {},
              {{u"customInputPortStates"_s, Dictionary{{u"in"_s, Dictionary{{u"value"_s, 20}}}}}})
        .node(u"/plus"_s, u"C"_s)
        .connect(u"B.out"_s, u"C.in"_s)
        .output(u"default"_s, u"A.out"_s)
        .output(u"own"_s, u"B.out"_s)
        .output(u"wired"_s, u"C.out"_s);
    Evaluator evaluator(root.read({{u"virtualPatches"_s, Dictionary{{u"/plus"_s, reusable}}}}));
    EXPECT_EQ(outputAt(evaluator, 0.0, u"default"_s), 8.0);
    EXPECT_EQ(outputAt(evaluator, 0.0, u"own"_s), 21.0);
    EXPECT_EQ(outputAt(evaluator, 0.0, u"wired"_s), 22.0);
}

/// Time inside a macro, which something drawn asks for only while it is enabled.
MacroBuilder clockMacro()
{
    MacroBuilder inside;
    inside.node(u"QCTime"_s, u"T"_s).output(u"time"_s, u"T.outputTime"_s);
    return inside;
}

TEST(TimeBases, ParentAndExternalReachTheChildren)
{
    MacroBuilder root;
    root.macro(u"QCPatch"_s, u"P"_s, clockMacro(), {}, {{u"timebase"_s, u"parent"_s}})
        .macro(u"QCPatch"_s, u"E"_s, clockMacro(), {{u"_time"_s, 2.5}},
               {{u"timebase"_s, u"external"_s}})
        .output(u"parent"_s, u"P.time"_s)
        .output(u"external"_s, u"E.time"_s);
    Evaluator evaluator(root.read());
    EXPECT_EQ(outputAt(evaluator, 7.0, u"parent"_s), 7.0);
    EXPECT_EQ(outputAt(evaluator, 7.0, u"external"_s), 2.5);
}

TEST(TimeBases, ExternalTimeCanBeWired)
{
    MacroBuilder root;
    root.node(u"QCTime"_s, u"T"_s)
        .node(u"QCMath"_s, u"Half"_s, {{u"operation_1"_s, 3}, {u"operand_1"_s, 2.0}})
        .macro(u"QCPatch"_s, u"E"_s, clockMacro(), {}, {{u"timebase"_s, u"external"_s}})
        .connect(u"T.outputTime"_s, u"Half.inputValue"_s)
        .connect(u"Half.outputValue"_s, u"E._time"_s)
        .output(u"out"_s, u"E.time"_s);
    Evaluator evaluator(root.read());
    EXPECT_EQ(outputAt(evaluator, 9.0), 4.5);
}

TEST(TimeBases, LocalTimeStartsWhenItsConsumerDoes)
{
    MacroBuilder root;
    root.node(u"QCTime"_s, u"T"_s, {}, {{u"timebase"_s, u"local"_s}})
        .node(u"QCSprite"_s, u"S"_s, {},
              {{u"systemInputPortStates"_s,
                Dictionary{{u"_enable"_s, Dictionary{{u"value"_s, true}}}}}})
        .connect(u"T.outputTime"_s, u"S.inputX"_s)
        .input(u"on"_s, u"S._enable"_s);
    Evaluator evaluator(root.read({{u"inputParameters"_s, Dictionary{{u"on"_s, false}}}}));
    const auto localTime = [&evaluator](double time) {
        evaluator.evaluate({.time = time});
        return evaluator.network().nodes[1].outputs[0].value.toNumber();
    };
    localTime(1.0);
    evaluator.setInput(u"on"_s, true);
    EXPECT_EQ(localTime(5.0), 0.0);
    EXPECT_EQ(localTime(5.5), 0.5);
    evaluator.setInput(u"on"_s, false);
    localTime(6.0);
    evaluator.setInput(u"on"_s, true);
    EXPECT_EQ(localTime(7.0), 0.0);
}

TEST(Iterator, PublishesItsLastPassAndCountsItsPasses)
{
    MacroBuilder inside;
    inside.node(u"QCIteratorVariables"_s, u"V"_s)
        .node(u"QCMath"_s, u"M"_s, {{u"operand_1"_s, 10.0}})
        .connect(u"V.outputIndex"_s, u"M.inputValue"_s)
        .output(u"last"_s, u"M.outputValue"_s)
        .output(u"position"_s, u"V.outputPosition"_s);
    MacroBuilder root;
    root.macro(u"QCIterator"_s, u"I"_s, inside)
        .input(u"count"_s, u"I.inputCount"_s)
        .output(u"last"_s, u"I.last"_s)
        .output(u"position"_s, u"I.position"_s);
    Evaluator evaluator(root.read({{u"inputParameters"_s, Dictionary{{u"count"_s, 4}}}}));
    EXPECT_EQ(outputAt(evaluator, 0.0, u"last"_s), 13.0);
    EXPECT_EQ(outputAt(evaluator, 0.0, u"position"_s), 1.0);
    evaluator.setInput(u"count"_s, 1.0);
    EXPECT_EQ(outputAt(evaluator, 1.0, u"position"_s), 0.0);
}

TEST(Iterator, KeepsAStateForEachPass)
{
    // Only in pass 1 the signal goes up, so only that pass's counter moves.
    MacroBuilder inside;
    inside.node(u"QCIteratorVariables"_s, u"V"_s)
        .node(u"QCLogic"_s, u"And"_s)
        .node(u"QCCounter"_s, u"C"_s)
        .node(u"QCQueue"_s, u"Q"_s, {{u"inputSize"_s, 3}})
        .connect(u"V.outputIndex"_s, u"And.inputValue1"_s)
        .connect(u"And.outputResult"_s, u"C.inputSignal"_s)
        .connect(u"C.outputCount"_s, u"Q.inputValue"_s)
        .input(u"signal"_s, u"And.inputValue2"_s)
        .output(u"all"_s, u"Q.outputQueue"_s);
    MacroBuilder root;
    root.macro(u"QCIterator"_s, u"I"_s, inside, {{u"inputCount"_s, 3}})
        .input(u"signal"_s, u"I.signal"_s)
        .output(u"all"_s, u"I.all"_s);
    Evaluator evaluator(root.read());
    for (const bool high : {true, false, true}) {
        evaluator.setInput(u"signal"_s, high);
        evaluator.evaluate({});
        evaluator.outputValue(u"all"_s);
    }
    const StructureRef all = evaluator.outputValue(u"all"_s).toStructure();
    ASSERT_TRUE(all);
    EXPECT_EQ(all->member(0), Value(0.0));
    EXPECT_EQ(all->member(1), Value(2.0));
    EXPECT_EQ(all->member(2), Value(2.0));
}

TEST(Iterator, DrawsOncePerPassAndNests)
{
    MacroBuilder inner;
    inner.node(u"QCSprite"_s, u"S"_s);
    MacroBuilder outer;
    outer.macro(u"QCIterator"_s, u"I"_s, inner, {{u"inputCount"_s, 3}});
    MacroBuilder root;
    root.macro(u"QCIterator"_s, u"O"_s, outer, {{u"inputCount"_s, 4}});
    Evaluator evaluator(root.read());
    EXPECT_EQ(evaluator.evaluate({}).targets.back().commands.size(), 12U);
}

TEST(Feedback, GivesTheFrameBefore)
{
    // A counter of frames: the macro publishes its own last value plus one.
    MacroBuilder inside;
    inside.node(u"QCRecursor"_s, u"R"_s, {{u"Initial_n"_s, 100.0}, {u"inputInitialize"_s, false}})
        .node(u"QCMath"_s, u"M"_s, {{u"operand_1"_s, 1.0}})
        .connect(u"R.n"_s, u"M.inputValue"_s)
        .input(u"reset"_s, u"R.inputInitialize"_s)
        .output(u"n"_s, u"M.outputValue"_s);
    MacroBuilder root;
    root.macro(u"QCPatch"_s, u"P"_s, inside)
        .node(u"QCSprite"_s, u"S"_s)
        .connect(u"P.n"_s, u"S.inputX"_s)
        .input(u"reset"_s, u"P.reset"_s)
        .output(u"n"_s, u"P.n"_s);
    Evaluator evaluator(root.read());
    EXPECT_EQ(outputAt(evaluator, 0.0, u"n"_s), 101.0);
    EXPECT_EQ(outputAt(evaluator, 0.1, u"n"_s), 102.0);
    EXPECT_EQ(outputAt(evaluator, 0.2, u"n"_s), 103.0);
    evaluator.setInput(u"reset"_s, true);
    EXPECT_EQ(outputAt(evaluator, 0.3, u"n"_s), 101.0);
}

TEST(Evaluator, LeavesWhatIsSwitchedOffAlone)
{
    const Dictionary off{
        {u"systemInputPortStates"_s, Dictionary{{u"_enable"_s, Dictionary{{u"value"_s, false}}}}}};
    MacroBuilder inside;
    inside.node(u"QCSprite"_s, u"S"_s);
    MacroBuilder root;
    root.node(u"QCTime"_s, u"T"_s)
        .node(u"QCSprite"_s, u"S"_s, {}, off)
        .macro(u"QCPatch"_s, u"P"_s, inside, {}, off)
        .connect(u"T.outputTime"_s, u"S.inputX"_s);
    Evaluator evaluator(root.read());
    EXPECT_TRUE(evaluator.evaluate({}).targets.back().commands.empty());
    EXPECT_EQ(evaluator.network().nodes[1].ranAt, 0U);
}

TEST(Evaluator, ShowsTheLastValueInACircle)
{
    MacroBuilder root;
    root.node(u"QCMath"_s, u"A"_s, {{u"operand_1"_s, 1.0}})
        .node(u"QCMath"_s, u"B"_s, {{u"operand_1"_s, 1.0}})
        .connect(u"A.outputValue"_s, u"B.inputValue"_s)
        .connect(u"B.outputValue"_s, u"A.inputValue"_s)
        .output(u"out"_s, u"A.outputValue"_s);
    Evaluator evaluator(root.read());
    EXPECT_EQ(outputAt(evaluator, 0.0), 2.0);
}

TEST(Evaluator, PassesImagesThroughUnknownClasses)
{
    MacroBuilder root;
    root.node(u"QCColorFromComponents"_s, u"C"_s)
        .node(u"NobodysFilter"_s, u"F"_s)
        .node(u"QCImageDimensions"_s, u"D"_s)
        .connect(u"C.outputColor"_s, u"F.inputImage"_s)
        .connect(u"F.outputImage"_s, u"D.inputImage"_s)
        .output(u"out"_s, u"D.outputPixelsWide"_s);
    Evaluator evaluator(root.read());
    // The image is a colour without end, which counts as wide as the destination.
    EXPECT_EQ(outputAt(evaluator, 0.0), 640.0);
}

TEST(Evaluator, IsTheSameInEveryRun)
{
    MacroBuilder root;
    root.node(u"QCRandom"_s, u"R"_s)
        .node(u"QCLFO"_s, u"L"_s, {{u"inputType"_s, 7}})
        .node(u"QCMath"_s, u"M"_s, {{u"operation_1"_s, 0}})
        .connect(u"R.outputValue"_s, u"M.inputValue"_s)
        .connect(u"L.outputValue"_s, u"M.operand_1"_s)
        .output(u"out"_s, u"M.outputValue"_s);
    Evaluator first(root.read(), {.seed = 5});
    Evaluator second(root.read(), {.seed = 5});
    for (double time = 0.0; time < 3.0; time += 0.37) {
        EXPECT_EQ(outputAt(first, time), outputAt(second, time));
    }
}

} // namespace
} // namespace tarnwell::compositions::test
