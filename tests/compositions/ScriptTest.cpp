#include "CompositionBuilder.h"

#include "compositions/Limits.h"
#include "compositions/model/Structure.h"
#include "compositions/script/ScriptSignature.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace tarnwell::compositions::test {
namespace {

using namespace Qt::StringLiterals;
using plist::Dictionary;

SinglePatch script(const QString &text, const Dictionary &inputs, const QStringList &outputs,
                   bool isNew = true)
{
    return {
        u"QCJavaScript"_s, inputs, outputs, {{u"script"_s, text}, {u"newMode"_s, isNew ? 1 : 0}}};
}

TEST(ScriptSignature, ReadsTypesNamesAndArrays)
{
    const auto signature = findSignature(
        u"// function (__number no) main (__number no)\n"
        "var text = 'function (a) main (b)';\n"
        "function helper(a) { return a; }\n"
        "function (__structure rows, __boolean flags[2]) main (__number x, __string /* name */ s, plain) { return {}; }"_s);
    ASSERT_TRUE(signature);
    EXPECT_EQ(signature->outputs, (std::vector<ScriptPort>{{u"rows"_s, PortType::Structure, -1},
                                                           {u"flags"_s, PortType::Boolean, 2}}));
    EXPECT_EQ(signature->inputs, (std::vector<ScriptPort>{{u"x"_s, PortType::Number, -1},
                                                          {u"s"_s, PortType::String, -1},
                                                          {u"plain"_s, PortType::Virtual, -1}}));
    EXPECT_TRUE(signature->script.contains(u"function main(x,s,plain) {"_s))
        << signature->script.toStdString();
}

TEST(ScriptSignature, IsMissingWhereNothingFits)
{
    for (const auto &text :
         {u""_s, u"function main(a) {}"_s, u"function (a main (b) {}"_s,
          u"function (__number a[x]) main () {}"_s, u"function (a) main (1) {}"_s,
          u"function (__number a[2000]) main () {}"_s, u"function (a) main ("_s}) {
        EXPECT_FALSE(findSignature(text)) << text.toStdString();
    }
}

TEST(ScriptPatch, ReturnsItsOutputs)
{
    SinglePatch patch =
        script(u"function (__number sum, __string text, __number part[2])\n"
               "main (__number a, __index b, __string s)\n"
               "{ return { sum: a + b, text: s + '!', part: [a, b] }; }"_s,
               {{u"a"_s, 1.5}, {u"b"_s, 2}, {u"s"_s, u"hi"_s}}, {u"sum"_s, u"text"_s, u"part_1"_s});
    EXPECT_EQ(patch.at(0, u"sum"_s).toNumber(), 3.5);
    EXPECT_EQ(patch.at(0, u"text"_s).toString(), u"hi!"_s);
    EXPECT_EQ(patch.at(0, u"part_1"_s).toNumber(), 2.0);
}

TEST(ScriptPatch, KeepsItsGlobalsAndRunsOnChangesOnly)
{
    SinglePatch patch =
        script(u"var calls = 0; if (typeof other === 'undefined') other = 0;\n"
               "function (__number n) main (__number a) { return { n: ++calls + other }; }"_s,
               {{u"a"_s, 1.0}}, {u"n"_s});
    EXPECT_EQ(patch.numberAt(0), 1.0);
    EXPECT_EQ(patch.numberAt(1), 1.0);
    EXPECT_EQ(patch.set(u"a"_s, 2.0).numberAt(2), 2.0);
}

TEST(ScriptPatch, SeesStructuresAsPlainObjects)
{
    SinglePatch patch = script(
        u"function (__structure out, __boolean isList) main (__structure list, __structure map)\n"
        "{ return { out: { first: list[0], length: list.length, x: map.x, names: ['p', 'q'] },\n"
        "           isList: Array.isArray(list) && !_testMode }; }"_s,
        {{u"list"_s, plist::Array{u"a"_s, u"b"_s}}, {u"map"_s, Dictionary{{u"x"_s, 5}}}},
        {u"out"_s, u"isList"_s});
    const StructureRef out = patch.at(0, u"out"_s).toStructure();
    ASSERT_TRUE(out);
    EXPECT_EQ(out->member(u"first"_s).toString(), u"a"_s);
    EXPECT_EQ(out->member(u"length"_s).toNumber(), 2.0);
    EXPECT_EQ(out->member(u"x"_s).toNumber(), 5.0);
    EXPECT_EQ(out->member(u"names"_s).toStructure()->member(1).toString(), u"q"_s);
    EXPECT_TRUE(patch.at(0, u"isList"_s).toBoolean());
}

TEST(ScriptPatch, RunsInTheOldMode)
{
    SinglePatch patch =
        script(u"outputs[0] = inputs[0] * 2; outputs[1] = 'n' + inputs[1];"_s,
               {{u"input_0"_s, 4.0}, {u"input_1"_s, 7.0}}, {u"output_0"_s, u"output_1"_s}, false);
    EXPECT_EQ(patch.at(0, u"output_0"_s).toNumber(), 8.0);
    EXPECT_EQ(patch.at(0, u"output_1"_s).toString(), u"n7"_s);
}

TEST(ScriptPatch, GivesNothingWhenBroken)
{
    for (const auto &text :
         {u"function (__number n) main () { return { n: missing.thing }; }"_s, u"{{{"_s,
          u"function (__number n) main () { throw 'no'; }"_s, u"var x = 1;"_s}) {
        EXPECT_TRUE(script(text, {}, {u"n"_s}).at(0).isNull()) << text.toStdString();
    }
}

/// Each of these would run for ever.
TEST(ScriptPatch, IsStoppedInTime)
{
    const QString frame = u"function (__number n) main (__number a) { %1; return { n: 1 }; }"_s;
    for (const auto &body :
         {u"while (true) {}"_s, u"for (;;) { try { while (true) {} } catch (e) {} }"_s,
          u"var f = function () { return f() + f(); }; f()"_s,
          u"return { get n() { while (true) {} } }"_s}) {
        SinglePatch patch = script(frame.arg(body), {{u"a"_s, 1.0}}, {u"n"_s});
        QElapsedTimer timer;
        timer.start();
        EXPECT_TRUE(patch.at(0).isNull()) << body.toStdString();
        EXPECT_LT(timer.elapsed(), 5'000) << body.toStdString();
    }
}

TEST(ScriptPatch, PutsOutNoMoreThanItMay)
{
    // The engine shares what these texts have in common; outside each would be a million
    // characters.
    SinglePatch patch = script(
        u"function (__structure all, __structure more) main ()\n"
        "{ var text = 'x'.repeat(900000), all = [];\n"
        "  for (var i = 0; i < 100; ++i) all.push(text + i); return { all: all, more: all }; }"_s,
        {}, {u"all"_s, u"more"_s});
    qint64 weight = 0;
    for (const QString &output : {u"all"_s, u"more"_s}) {
        weight += Structure::weightOf(patch.at(0, output));
    }
    EXPECT_LT(weight, 2 * limits::scriptMembers);
}

TEST(ScriptPatch, HasNoWayOut)
{
    // Weak collections bring the engine down when it collects what they hold.
    SinglePatch patch = script(
        u"function (__string s) main ()\n"
        "{ var names = Object.getOwnPropertyNames(this).filter(function (n) { return "
        "/^Weak/.test(n) });\n"
        "  return { s: [typeof XMLHttpRequest, typeof Qt, typeof require, typeof process,\n"
        "               typeof console, typeof gc, typeof WeakMap, typeof WeakSet, names.length].join() }; }"_s,
        {}, {u"s"_s});
    EXPECT_EQ(patch.at(0).toString(), u"undefined,"_s.repeated(8) + u'0');
}

} // namespace
} // namespace tarnwell::compositions::test
