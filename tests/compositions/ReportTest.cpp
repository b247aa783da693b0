#include "CompositionBuilder.h"

#include "compositions/evaluator/Report.h"

#include <QJsonArray>

#include <gtest/gtest.h>

namespace tarnwell::compositions::test {
namespace {

using namespace Qt::StringLiterals;
using plist::Array;
using plist::Dictionary;

const Dictionary switched{
    {u"systemInputPortStates"_s, Dictionary{{u"_enable"_s, Dictionary{{u"value"_s, true}}}}}};

QStringList unsupported(const MacroBuilder &root)
{
    QStringList names;
    for (const UnsupportedClass &entry : findUnsupportedClasses(Evaluator(root.read()).network())) {
        names.append(entry.className +
                     (entry.identifier.isEmpty() ? QString() : u":"_s + entry.identifier));
    }
    return names;
}

TEST(UnsupportedClasses, AreThoseThatSomethingDrawnNeeds)
{
    MacroBuilder root;
    root.node(u"QCImageFilter"_s, u"F"_s, {}, {}, u"CISomebodysBlur"_s)
        .node(u"Behind"_s, u"B"_s)
        .node(u"Idle"_s, u"I"_s)
        .node(u"QCSprite"_s, u"S"_s)
        .connect(u"B.outputImage"_s, u"F.inputImage"_s)
        .connect(u"F.outputImage"_s, u"S.inputImage"_s);
    EXPECT_EQ(unsupported(root), (QStringList{u"Behind"_s, u"QCImageFilter:CISomebodysBlur"_s}));
}

TEST(UnsupportedClasses, IncludeWhatWouldDrawItself)
{
    MacroBuilder root;
    root.node(u"SomebodysCloud"_s, u"C"_s, {}, switched)
        .node(u"Feeds"_s, u"F"_s)
        .connect(u"F.out"_s, u"C.in"_s);
    EXPECT_EQ(unsupported(root), (QStringList{u"Feeds"_s, u"SomebodysCloud"_s}));
}

TEST(UnsupportedClasses, IncludeMacrosAroundAndInsideImages)
{
    MacroBuilder image;
    image.node(u"InImage"_s, u"X"_s).node(u"QCSprite"_s, u"S"_s).connect(u"X.out"_s, u"S.inputX"_s);
    MacroBuilder unused;
    unused.node(u"Unused"_s, u"X"_s).node(u"QCSprite"_s, u"S"_s).connect(u"X.out"_s, u"S.inputX"_s);
    MacroBuilder lit;
    lit.macro(u"QCRenderInImage"_s, u"R"_s, image)
        .macro(u"QCRenderInImage"_s, u"U"_s, unused)
        .node(u"QCBillboard"_s, u"B"_s)
        .connect(u"R.outputImage"_s, u"B.inputImage"_s);
    MacroBuilder root;
    root.node(u"Switch"_s, u"W"_s)
        .macro(u"SomebodysLamp"_s, u"L"_s, lit)
        .connect(u"W.out"_s, u"L._enable"_s);
    EXPECT_EQ(unsupported(root), (QStringList{u"InImage"_s, u"SomebodysLamp"_s, u"Switch"_s}));
}

TEST(UnsupportedClasses, IncludeWhatIsSwitchedByAWire)
{
    MacroBuilder root;
    root.node(u"QCLFO"_s, u"O"_s)
        .node(u"SomebodysCloud"_s, u"C"_s)
        .node(u"SomebodysRain"_s, u"R"_s)
        .connect(u"O.outputValue"_s, u"C._enable"_s)
        .input(u"Rains"_s, u"R._enable"_s);
    EXPECT_EQ(unsupported(root), (QStringList{u"SomebodysCloud"_s, u"SomebodysRain"_s}));
    EXPECT_TRUE(hasConsumers(Evaluator(root.read()).network()));
    EXPECT_FALSE(hasConsumers(Evaluator(MacroBuilder().node(u"QCLFO"_s, u"O"_s).read()).network()));
}

TEST(UnknownPorts, AreThoseOfKnownClassesThatSomethingDrawnNeeds)
{
    MacroBuilder root;
    root.node(u"QCLFO"_s, u"O"_s, {{u"inputPeriod"_s, 2}, {u"inputWobble"_s, 3}})
        .node(u"QCLFO"_s, u"Idle"_s, {{u"inputIdle"_s, 3}})
        .node(u"QCMath"_s, u"M"_s, {{u"operand_1"_s, 3}, {u"operation_1"_s, 2}})
        .node(u"Other"_s, u"X"_s, {{u"inputAnything"_s, 3}})
        .node(u"QCSprite"_s, u"S"_s, {{u"_inputInteraction"_s, 1}}, switched)
        .connect(u"O.outputFlip"_s, u"S.inputX"_s)
        .connect(u"M.outputValue"_s, u"S.inputY"_s)
        .connect(u"X.outputAnything"_s, u"S.inputZ"_s);
    EXPECT_EQ(findUnknownPorts(Evaluator(root.read()).network()),
              (QStringList{u"QCLFO.inputWobble"_s, u"QCLFO.outputFlip"_s}));
}

TEST(Report, SaysWhatACompositionIsMadeOf)
{
    MacroBuilder root;
    root.node(u"QCSplitter"_s, u"P"_s, {}, {{u"portClass"_s, u"QCColorPort"_s}})
        .node(u"QCSprite"_s, u"S"_s, {}, switched)
        .connect(u"P.output"_s, u"S.inputColor"_s)
        .input(u"Tint"_s, u"P.input"_s)
        .input(u"MenuItems"_s, u"Gone.input"_s);
    const auto composition = root.read(
        {{u"name"_s, u"Test"_s},
         {u"description"_s, u"<img src=\"x\" />\t\n<h4>Title &amp; more</h4>"_s},
         {u"inputParameters"_s,
          Dictionary{{u"Tint"_s, color(1, 0.5, 0)}, {u"MenuItems"_s, Array{u"a"_s}}}},
         {u"portAttributes"_s, Dictionary{{u"Tint"_s, Dictionary{{u"name"_s, u"The tint"_s}}}}}});
    const QJsonObject report = describe(Evaluator(composition));
    const QJsonObject attributes = report.value(u"attributes"_s).toObject();
    EXPECT_EQ(attributes.value(u"name"_s).toString(), u"Test"_s);
    EXPECT_EQ(attributes.value(u"description"_s).toString(), u"Title & more"_s);
    EXPECT_TRUE(attributes.value(u"hasConsumers"_s).toBool());
    EXPECT_FALSE(attributes.value(u"isTimeDependent"_s).toBool());
    const QJsonArray inputs = report.value(u"inputs"_s).toArray();
    ASSERT_EQ(inputs.size(), 2);
    const QJsonObject tint = inputs[0].toObject();
    EXPECT_EQ(tint.value(u"key"_s).toString(), u"Tint"_s);
    EXPECT_EQ(tint.value(u"type"_s).toString(), u"Color"_s);
    EXPECT_EQ(tint.value(u"name"_s).toString(), u"The tint"_s);
    EXPECT_EQ(tint.value(u"value"_s).toObject().value(u"green"_s).toDouble(), 0.5);
    EXPECT_EQ(inputs[1].toObject().value(u"type"_s).toString(), u"Structure"_s);
    EXPECT_EQ(report.value(u"classes"_s).toArray(),
              (QJsonArray{u"QCPatch"_s, u"QCSplitter"_s, u"QCSprite"_s}));
    EXPECT_TRUE(report.value(u"unsupported"_s).toArray().isEmpty());
}

TEST(Report, FindsImagesThatCannotBeRead)
{
    MacroBuilder root;
    root.node(u"QCImageLoader"_s, u"L"_s, {}, {{u"imageData"_s, QByteArray("%PDF-1.4")}});
    EXPECT_EQ(describe(Evaluator(root.read())).value(u"findings"_s).toArray().size(), 1);
}

TEST(Json, ReturnsWhereItCameFrom)
{
    const QJsonArray values{
        1.5,
        true,
        u"text"_s,
        QJsonArray{1, QJsonArray{u"a"_s}},
        QJsonObject{{u"key"_s, u"value"_s}},
        QJsonObject{{u"alpha"_s, 1}, {u"blue"_s, 0}, {u"green"_s, 0.5}, {u"red"_s, 1}}};
    EXPECT_EQ(toJson(fromJson(values)), QJsonValue(values));
    EXPECT_EQ(fromJson(values[5]).type(), PortType::Color);
}

} // namespace
} // namespace tarnwell::compositions::test
