#include "CompositionBuilder.h"

#include "compositions/model/Structure.h"
#include "compositions/reader/CompositionReader.h"
#include "compositions/reader/ValueDecoding.h"
#include "foundation/plist/PropertyList.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tarnwell::compositions::test {
namespace {

using namespace Qt::StringLiterals;
using plist::Array;
using plist::Dictionary;
using plist::Uid;

TEST(CompositionReader, ReadsBothFormats)
{
    MacroBuilder root;
    root.node(u"QCClear"_s, u"Clear_1"_s);
    for (const auto format : {plist::Format::Binary, plist::Format::Xml}) {
        const auto composition = readComposition(plist::write(root.file(), format));
        ASSERT_TRUE(composition);
        ASSERT_EQ(composition->root.graph->nodes.size(), 1U);
        EXPECT_EQ(composition->root.graph->nodes[0].className, u"QCClear"_s);
    }
}

TEST(CompositionReader, RefusesWhatIsNone)
{
    const Dictionary noState{{u"rootPatch"_s, Dictionary{}}};
    for (const QByteArray &bytes :
         {QByteArray(), QByteArray("bplist00"), QByteArray("nonsense \xff\x00", 10),
          plist::write(Array{1, 2}, plist::Format::Binary),
          plist::write(Dictionary{{u"name"_s, u"x"_s}}, plist::Format::Xml),
          plist::write(Dictionary{{u"rootPatch"_s, u"x"_s}}, plist::Format::Xml),
          plist::write(noState, plist::Format::Xml)}) {
        QString error;
        EXPECT_FALSE(readComposition(bytes, &error)) << bytes.toStdString();
        EXPECT_FALSE(error.isEmpty()) << bytes.toStdString();
    }
}

TEST(CompositionReader, ReadsTheAttributes)
{
    const auto composition = MacroBuilder().read(
        {{u"name"_s, u"Rings"_s},
         {u"description"_s, u"<b>https://rings.example</b>"_s},
         {u"copyright"_s, u"Nobody"_s},
         {u"frameworkVersion"_s, u"{156.30}"_s},
         {u"aspectRatio"_s, 2},
         {u"protocols"_s, Array{u"a"_s, 5, u"b"_s}},
         {u"category"_s, u"Kind"_s},
         {u"portAttributes"_s, Dictionary{{u"k"_s, Dictionary{{u"name"_s, u"Key"_s}}}}}});
    ASSERT_TRUE(composition);
    EXPECT_EQ(composition->name, u"Rings"_s);
    EXPECT_EQ(composition->copyright, u"Nobody"_s);
    EXPECT_EQ(composition->frameworkVersion, u"156.30"_s);
    EXPECT_EQ(composition->aspectRatio, 2.0);
    EXPECT_EQ(composition->protocols, (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(composition->categories, QStringList{u"Kind"_s});
    EXPECT_EQ(composition->portAttributes.value(u"k"_s).name, u"Key"_s);
}

TEST(CompositionReader, KeepsWhatItDoesNotKnow)
{
    Dictionary broken = MacroBuilder()
                            .node(u"SomebodysPatch"_s, u"X"_s, {{u"a"_s, 1}})
                            .connect(u"X.out"_s, u"Missing.in"_s)
                            .connect(u"Missing.out"_s, u"X.a"_s)
                            .state();
    Array nodes = broken.value(u"nodes"_s).toArray();
    nodes.append(u"no node"_s);
    nodes.append(Dictionary{{u"key"_s, u"without class"_s}});
    nodes.append(Dictionary{{u"class"_s, u"QCMath"_s}}); // neither key nor state
    broken.insert(u"nodes"_s, nodes);
    broken.insert(u"publishedInputPorts"_s, Array{5, Dictionary{}, Dictionary{{u"key"_s, u"k"_s}}});
    const auto composition = readComposition(plist::Value(
        Dictionary{{u"rootPatch"_s, Dictionary{{u"class"_s, u"QCPatch"_s}, {u"state"_s, broken}}},
                   {u"inputParameters"_s, Dictionary{{u"k"_s, 3}}}}));
    ASSERT_TRUE(composition);
    EXPECT_EQ(composition->root.graph->nodes.size(), 2U);
    Evaluator evaluator(composition);
    evaluator.evaluate({});
    EXPECT_EQ(evaluator.inputKeys(), QStringList{u"k"_s});
    EXPECT_EQ(evaluator.inputType(u"k"_s), PortType::Index);
}

TEST(CompositionReader, ReadsAMissingStateAndWrongTypes)
{
    for (const plist::Value &state :
         {plist::Value(5), plist::Value(u"x"_s), plist::Value(Dictionary{{u"nodes"_s, 5}}),
          plist::Value(Dictionary{{u"ivarInputPortStates"_s, Array{}}, {u"timebase"_s, 7}}),
          plist::Value(Dictionary{{u"nodes"_s, Array{}}, {u"connections"_s, Array{}}})}) {
        EXPECT_TRUE(readComposition(plist::Value(Dictionary{
            {u"rootPatch"_s, Dictionary{{u"class"_s, u"QCPatch"_s}, {u"state"_s, state}}}})))
            << plist::description(state).toStdString();
    }
}

TEST(VirtualPatches, MayNotContainThemselves)
{
    const auto reusable = [](const QString &inner) {
        return Dictionary{
            {u"rootPatch"_s, Dictionary{{u"class"_s, u"QCPatch"_s},
                                        {u"state"_s, MacroBuilder().node(inner, u"N"_s).state()}}}};
    };
    const auto composition =
        MacroBuilder()
            .node(u"/a"_s, u"A"_s)
            .node(u"/missing"_s, u"M"_s)
            .read({{u"virtualPatches"_s,
                    Dictionary{{u"/a"_s, reusable(u"/b"_s)}, {u"/b"_s, reusable(u"/a"_s)}}}});
    ASSERT_TRUE(composition);
    EXPECT_EQ(composition->findings.size(), 2);
    Evaluator(composition).evaluate({});
}

TEST(ValueDecoding, TakesEveryForm)
{
    EXPECT_EQ(decodeValue(1.5), Value(1.5));
    EXPECT_EQ(decodeValue(7).type(), PortType::Index);
    EXPECT_EQ(decodeValue(-7), Value(-7.0));
    EXPECT_EQ(decodeValue(true).type(), PortType::Boolean);
    EXPECT_EQ(decodeValue(std::nan("")), Value(0.0));
    EXPECT_EQ(decodeValue(u"x"_s), Value(u"x"_s));
    EXPECT_EQ(decodeValue(color(0.1, 0.2, 0.3, 0.4)), Value(Color{0.1, 0.2, 0.3, 0.4}));
    EXPECT_EQ(decodeValue(Dictionary{{u"red"_s, 1}}), Value(Color{1, 0, 0, 1}));
    EXPECT_EQ(decodeValue(Array{1, u"a"_s}), Value(Structure::list({1.0, u"a"_s})));
    EXPECT_EQ(decodeValue(Dictionary{{u"k"_s, 2}}), Value(Structure::keyed({u"k"_s}, {2.0})));
    EXPECT_TRUE(decodeValue(QByteArray("\x89PNG")).isNull());
}

Dictionary archive(const Array &objects)
{
    return {{u"$archiver"_s, u"NSKeyedArchiver"_s},
            {u"$objects"_s, objects},
            {u"$top"_s, Dictionary{{u"root"_s, Uid{1}}}}};
}

TEST(ArchivedStructure, ReadsListsAndKeys)
{
    const Dictionary structureClass{{u"$classname"_s, u"QCStructure"_s}};
    const Dictionary list{{u"$class"_s, Uid{2}}, {u"count"_s, 2},   {u"$0"_s, Uid{3}},
                          {u"$1"_s, Uid{0}},     {u"$2"_s, Uid{4}}, {u"$3"_s, Uid{0}}};
    EXPECT_EQ(
        Value(decodeArchivedStructure(archive({u"$null"_s, list, structureClass, 0.5, u"x"_s}))),
        Value(Structure::list({0.5, u"x"_s})));
    Dictionary keyed = list;
    keyed.insert(u"$1"_s, Uid{4});
    const QByteArray data = plist::write(archive({u"$null"_s, keyed, structureClass, 0.5, u"x"_s}),
                                         plist::Format::Binary);
    EXPECT_EQ(decodeValue(data), Value(Structure::keyed({u"x"_s, u""_s}, {0.5, u"x"_s})));
}

TEST(ArchivedStructure, SurvivesCyclesAndBombs)
{
    const Dictionary structureClass{{u"$classname"_s, u"QCStructure"_s}};
    const Dictionary cycle{{u"$class"_s, Uid{2}}, {u"count"_s, 1'000'000'000}, {u"$0"_s, Uid{1}}};
    decodeArchivedStructure(archive({u"$null"_s, cycle, structureClass}));
    Array objects{u"$null"_s};
    for (quint64 i = 1; i < 40; ++i) {
        objects.append(Dictionary{{u"$class"_s, Uid{40}},
                                  {u"NS.objects"_s, Array{Uid{i + 1}, Uid{i + 1}, Uid{i + 1}}}});
    }
    objects.append(Dictionary{{u"$classname"_s, u"NSArray"_s}});
    decodeArchivedStructure(archive(objects));
    EXPECT_FALSE(decodeArchivedStructure(archive({u"$null"_s, Uid{99}})));
    EXPECT_FALSE(decodeArchivedStructure(plist::Value()));
}

} // namespace
} // namespace tarnwell::compositions::test
