#include "CompositionBuilder.h"

#include "compositions/Limits.h"
#include "compositions/evaluator/Report.h"
#include "compositions/model/Structure.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

namespace tarnwell::compositions::test {
namespace {

using namespace Qt::StringLiterals;
using plist::Array;
using plist::Dictionary;

std::string json(const Value &value)
{
    return QJsonDocument(QJsonArray{toJson(value)}).toJson(QJsonDocument::Compact).toStdString();
}

const Array fruits{u"pear"_s, u"Apple"_s, u"fig"_s};
const QString structure = u"inputStructure"_s;
const QString outputStructure = u"outputStructure"_s;

TEST(StructureMemberPatch, FindsByIndexAndKey)
{
    const QStringList member{u"outputMember"_s};
    SinglePatch byIndex(u"QCStructureMember"_s, {{structure, fruits}, {u"inputIndex"_s, 1}}, member,
                        {}, u"index"_s);
    EXPECT_EQ(byIndex.at(0).toString(), u"Apple"_s);
    EXPECT_TRUE(byIndex.set(u"inputIndex"_s, 3.0).at(1).isNull());
    SinglePatch byKey(u"QCStructureMember"_s,
                      {{structure, Dictionary{{u"x"_s, 7}}}, {u"inputKey"_s, u"x"_s}}, member, {},
                      u"key"_s);
    EXPECT_EQ(byKey.numberAt(0), 7.0);
    EXPECT_TRUE(byKey.set(u"inputKey"_s, u"y"_s).at(1).isNull());
    SinglePatch listByKey(u"QCStructureMember"_s, {{structure, fruits}, {u"inputKey"_s, u"2"_s}},
                          member, {}, u"key"_s);
    EXPECT_EQ(listByKey.at(0).toString(), u"fig"_s);
}

TEST(StructurePatches, SortReverseCountAndCut)
{
    struct Row
    {
        const char *className;
        Dictionary inputs;
        QString output;
        std::string result;
    };
    for (const Row &row :
         {Row{"QCStructureSort",
              {{structure, fruits}},
              outputStructure,
              R"([["Apple","fig","pear"]])"},
          Row{"QCStructureSort",
              {{structure, Array{10, u"a"_s, 9.5}}},
              outputStructure,
              R"([[9.5,10,"a"]])"},
          Row{"QCStructureReverse",
              {{structure, fruits}},
              outputStructure,
              R"([["fig","Apple","pear"]])"},
          Row{"QCStructureRange",
              {{structure, fruits}, {u"inputIndex"_s, 1}, {u"inputLength"_s, 9}},
              outputStructure,
              R"([["Apple","fig"]])"},
          Row{"QCStructureRange",
              {{structure, fruits}, {u"inputIndex"_s, 9}, {u"inputLength"_s, 1}},
              outputStructure,
              "[[]]"},
          Row{"QCStructureCount", {{structure, fruits}}, u"outputCount"_s, "[3]"}}) {
        EXPECT_EQ(
            json(SinglePatch(QString::fromLatin1(row.className), row.inputs, {row.output}).at(0)),
            row.result)
            << row.className;
    }
}

TEST(StructurePatches, SortByAMember)
{
    const auto entry = [](int rank, const QString &name) {
        return Dictionary{{u"rank"_s, rank}, {u"name"_s, name}};
    };
    SinglePatch patch(
        u"QCStructureSort"_s,
        {{structure, Array{entry(3, u"c"_s), entry(1, u"a"_s)}}, {u"inputSortingKey"_s, u"rank"_s}},
        {outputStructure});
    EXPECT_EQ(json(patch.at(0)), R"([[{"name":"a","rank":1},{"name":"c","rank":3}]])");
}

TEST(StructurePatches, GiveNothingForNothing)
{
    EXPECT_TRUE(SinglePatch(u"QCStructureSort"_s, {}, {outputStructure}).at(0).isNull());
    EXPECT_EQ(SinglePatch(u"QCStructureCount"_s, {}, {u"outputCount"_s}).numberAt(0), 0.0);
}

TEST(QueuePatch, KeepsTheNewestLast)
{
    SinglePatch patch(u"QCQueue"_s,
                      {{u"inputValue"_s, 1.0},
                       {u"inputSize"_s, 2},
                       {u"inputFilling"_s, true},
                       {u"inputResetSignal"_s, false}},
                      {u"outputQueue"_s});
    EXPECT_EQ(json(patch.at(0)), "[[1]]");
    EXPECT_EQ(json(patch.at(1)), "[[1]]") << "an unchanged value is no new one";
    EXPECT_EQ(json(patch.set(u"inputValue"_s, 2.0).at(2)), "[[1,2]]");
    EXPECT_EQ(json(patch.set(u"inputValue"_s, 3.0).at(3)), "[[2,3]]");
    patch.set(u"inputFilling"_s, false);
    EXPECT_EQ(json(patch.set(u"inputValue"_s, 4.0).at(4)), "[[2,3]]");
    EXPECT_EQ(json(patch.set(u"inputResetSignal"_s, true).at(5)), "[[]]");
}

TEST(QueuePatch, ForgetsWhatIsTooLargeToBeKept)
{
    SinglePatch patch(
        u"QCQueue"_s,
        {{u"inputValue"_s, u""_s}, {u"inputSize"_s, 1'000'000}, {u"inputFilling"_s, true}},
        {u"outputQueue"_s});
    const QString text = u"x"_s.repeated(limits::stringLength - 1);
    for (int i = 0; i < 100; ++i) {
        patch.set(u"inputValue"_s, QString(text + QChar(u'0' + i))).at(i);
    }
    const StructureRef kept = patch.at(100).toStructure();
    EXPECT_LE(kept->count(),
              limits::structureMembers * Structure::charactersPerMember / limits::stringLength);
    EXPECT_GE(kept->count(), 50);
    EXPECT_TRUE(kept->member(kept->count() - 1).toString().endsWith(QChar(u'0' + 99)));
}

TEST(QueuePatch, CollectsThePassesOfAnIterator)
{
    MacroBuilder inside;
    inside.node(u"QCIteratorVariables"_s, u"V"_s)
        .node(u"QCQueue"_s, u"Q"_s, {{u"inputSize"_s, 3}, {u"inputFilling"_s, true}})
        .connect(u"V.outputIndex"_s, u"Q.inputValue"_s)
        .output(u"all"_s, u"Q.outputQueue"_s);
    MacroBuilder root;
    root.macro(u"QCIterator"_s, u"I"_s, inside, {{u"inputCount"_s, 3}})
        .output(u"all"_s, u"I.all"_s);
    Evaluator evaluator(root.read());
    for (int frame = 0; frame < 3; ++frame) {
        evaluator.evaluate({.time = double(frame)});
        EXPECT_EQ(json(evaluator.outputValue(u"all"_s)), "[[0,1,2]]") << frame;
    }
}

} // namespace
} // namespace tarnwell::compositions::test
