#include "CompositionBuilder.h"

#include "compositions/Limits.h"
#include "compositions/model/Image.h"
#include "compositions/model/Structure.h"

#include <QImage>
#include <QTemporaryFile>
#include <QUrl>

#include <gtest/gtest.h>

namespace tarnwell::compositions::test {
namespace {

using namespace Qt::StringLiterals;
using plist::Array;
using plist::Dictionary;

TEST(Bounds, Nesting)
{
    MacroBuilder inside;
    inside.node(u"QCSprite"_s, u"S"_s);
    for (int i = 0; i < limits::nesting + 20; ++i) {
        MacroBuilder around;
        around.macro(u"QCPatch"_s, u"P"_s, inside);
        inside = around;
    }
    const auto composition = inside.read();
    ASSERT_TRUE(composition);
    EXPECT_FALSE(composition->findings.isEmpty());
    Evaluator evaluator(composition);
    EXPECT_TRUE(evaluator.evaluate({}).targets.back().commands.empty());
}

/// Each level holds ten copies of the next one: ten to the power of nine nodes.
TEST(Bounds, NodesOfVirtualPatches)
{
    Dictionary patches;
    for (int level = 0; level < 9; ++level) {
        MacroBuilder inside;
        for (int i = 0; i < 10; ++i) {
            inside.node(level < 8 ? u"/level%1"_s.arg(level + 1) : u"QCSprite"_s, u"N%1"_s.arg(i));
        }
        patches.insert(u"/level%1"_s.arg(level),
                       Dictionary{{u"rootPatch"_s, Dictionary{{u"class"_s, u"QCPatch"_s},
                                                              {u"state"_s, inside.state()}}}});
    }
    const Evaluator evaluator(
        MacroBuilder().node(u"/level0"_s, u"N"_s).read({{u"virtualPatches"_s, patches}}));
    EXPECT_EQ(evaluator.network().nodes.size(), size_t(limits::nodes));
    EXPECT_EQ(evaluator.network().findings.size(), 1);
}

TEST(Bounds, ALongChainNeedsNoDeepStack)
{
    constexpr int length = 50'000;
    MacroBuilder root;
    Array nodes;
    Dictionary connections;
    std::vector<std::pair<QString, plist::Value>> entries;
    for (int i = 0; i < length; ++i) {
        nodes.append(Dictionary{
            {u"class"_s, u"QCMath"_s},
            {u"key"_s, u"M%1"_s.arg(i)},
            {u"state"_s, Dictionary{{u"customInputPortStates"_s,
                                     Dictionary{{u"operand_1"_s, Dictionary{{u"value"_s, 1}}}}}}}});
        if (i > 0) {
            entries.emplace_back(u"c%1"_s.arg(i),
                                 Dictionary{{u"sourceNode"_s, u"M%1"_s.arg(i - 1)},
                                            {u"sourcePort"_s, u"outputValue"_s},
                                            {u"destinationNode"_s, u"M%1"_s.arg(i)},
                                            {u"destinationPort"_s, u"inputValue"_s}});
        }
    }
    Dictionary file = root.output(u"out"_s, u"M%1.outputValue"_s.arg(length - 1)).file();
    Dictionary state = root.state();
    state.insert(u"nodes"_s, nodes);
    state.insert(u"connections"_s, Dictionary::fromEntries(entries));
    const auto composition =
        root.read({{u"rootPatch"_s, Dictionary{{u"class"_s, u"QCPatch"_s}, {u"state"_s, state}}}});
    Evaluator evaluator(composition);
    evaluator.evaluate({});
    EXPECT_EQ(evaluator.outputValue(u"out"_s).toNumber(), length);
}

MacroBuilder iterators(int levels, const QString &leaf)
{
    MacroBuilder inside;
    inside.node(leaf, u"S"_s);
    for (int i = 0; i < levels; ++i) {
        MacroBuilder around;
        around.macro(i % 2 == 0 ? u"QCIterator"_s : u"QCReplicator"_s, u"I"_s, inside,
                     {{u"inputCount"_s, 1'000'000'000}, {u"inputCopies"_s, 1'000'000'000}});
        inside = around;
    }
    return inside;
}

TEST(Bounds, Iterations)
{
    for (const int levels : {1, 2, 5}) {
        Evaluator evaluator(iterators(levels, u"QCSprite"_s).read());
        const Frame frame = evaluator.evaluate({});
        EXPECT_LE(frame.targets.back().commands.size(), size_t(limits::iterations)) << levels;
        EXPECT_GE(frame.targets.back().commands.size(), size_t(limits::iterations / 2)) << levels;
    }
}

TEST(Bounds, EvaluationsAndCommands)
{
    MacroBuilder inside;
    for (int i = 0; i < 300; ++i) {
        inside.node(u"QCSprite"_s, u"S%1"_s.arg(i));
    }
    MacroBuilder root;
    root.macro(u"QCIterator"_s, u"I"_s, inside, {{u"inputCount"_s, 10'000}});
    Evaluator evaluator(root.read());
    const Frame frame = evaluator.evaluate({});
    EXPECT_TRUE(evaluator.isExhausted());
    EXPECT_EQ(frame.targets.back().commands.size(), size_t(limits::drawCommands));
}

/// Each of these works on much in every one of its runs.
TEST(Bounds, RunsThatTakeLong)
{
    const QString text = u"x"_s.repeated(limits::stringLength);
    Dictionary members;
    for (int i = 0; i < 10'000; ++i) {
        members.insert(u"k%1"_s.arg(i), i);
    }
    struct Row
    {
        QString className;
        QString input;
        Dictionary inputs;
        Dictionary settings;
        QString identifier;
    };
    const Row rows[] = {
        {u"QCExpression"_s,
         u"x"_s,
         {},
         {{u"expression"_s, u"sin(x)"_s + u"+sin(x)"_s.repeated(8000)}},
         {}},
        {u"QCStringCompare"_s,
         u"inputCaseSensitive"_s,
         {{u"inputString1"_s, text}, {u"inputString2"_s, QString(text + u'y')}},
         {},
         {}},
        {u"QCStructureMember"_s, u"inputKey"_s, {{u"inputStructure"_s, members}}, {}, u"key"_s},
        {u"QCStructureSort"_s,
         u"inputSortingKey"_s,
         {{u"inputStructure"_s, plist::Array{text, text, text, text}}},
         {},
         {}},
        {u"QCTextImage"_s, u"inputKerning"_s, {{u"inputString"_s, text.left(20'000)}}, {}, {}},
    };
    for (const Row &row : rows) {
        MacroBuilder inside;
        inside.node(u"QCIteratorVariables"_s, u"I"_s)
            .node(row.className, u"N"_s, row.inputs, row.settings, row.identifier)
            .node(u"QCSprite"_s, u"S"_s)
            .connect(u"I.outputIndex"_s, u"N."_s + row.input)
            .connect(u"N.outputResult"_s, u"S.inputX"_s)
            .connect(u"N.outputMember"_s, u"S.inputY"_s)
            .connect(u"N.outputStructure"_s, u"S.inputMask"_s)
            .connect(u"N.outputImage"_s, u"S.inputImage"_s);
        MacroBuilder root;
        root.macro(u"QCIterator"_s, u"I"_s, inside, {{u"inputCount"_s, 10'000}});
        Evaluator evaluator(root.read());
        const Frame frame = evaluator.evaluate({});
        EXPECT_LT(frame.targets.back().commands.size(), 8'000U) << row.className.toStdString();
        EXPECT_TRUE(evaluator.isExhausted()) << row.className.toStdString();
    }
}

/// Files say once what many nodes refer to.
TEST(Bounds, DescriptionsThatNodesShare)
{
    Dictionary states;
    for (int i = 0; i < 2'000; ++i) {
        states.insert(u"p%1"_s.arg(i), 1);
    }
    const QString expression = u"x"_s + u"+x"_s.repeated(30'000);
    MacroBuilder inside;
    inside.node(u"QCUnknown"_s, u"U"_s, states)
        .node(u"QCExpression"_s, u"E"_s, {}, {{u"expression"_s, expression}});
    MacroBuilder root;
    for (int i = 0; i < 1'000; ++i) {
        root.node(u"/p"_s, u"N%1"_s.arg(i));
    }
    const Evaluator evaluator(root.read(
        {{u"virtualPatches"_s,
          Dictionary{{u"/p"_s,
                      Dictionary{{u"rootPatch"_s, Dictionary{{u"class"_s, u"QCPatch"_s},
                                                             {u"state"_s, inside.state()}}}}}}}}));
    EXPECT_LT(evaluator.network().nodes.size(), 1'000U);
    EXPECT_EQ(evaluator.network().findings.size(), 1);
}

TEST(Bounds, AFrameEndsWhenAskedTo)
{
    std::stop_source stop;
    Evaluator evaluator(iterators(2, u"QCSprite"_s).read(), {.stop = stop.get_token()});
    EXPECT_GT(evaluator.evaluate({}).targets.back().commands.size(), 100U);
    stop.request_stop();
    EXPECT_LE(evaluator.evaluate({}).targets.back().commands.size(), 1U);
}

TEST(Bounds, Vertices)
{
    MacroBuilder inside;
    inside.node(u"QCSphere"_s, u"S"_s, {}, {{u"slices"_s, 1'000}, {u"stacks"_s, 1'000}});
    MacroBuilder root;
    root.macro(u"QCReplicator"_s, u"R"_s, inside, {{u"inputCopies"_s, 100}});
    Evaluator evaluator(root.read());
    qint64 vertices = 0;
    const Frame frame = evaluator.evaluate({});
    for (const Command &command : frame.targets.back().commands) {
        vertices += qint64(std::get<DrawCommand>(command).mesh->vertices.size());
    }
    EXPECT_GT(vertices, 0);
    EXPECT_LE(vertices, limits::vertices);
}

/// What a file names on this machine or elsewhere stays closed, however it is named.
TEST(Bounds, NoFileIsOpened)
{
    QTemporaryFile picture;
    ASSERT_TRUE(picture.open());
    QImage(4, 4, QImage::Format_RGB32).save(&picture, "PNG");
    picture.flush();
    const QString url = QUrl::fromLocalFile(picture.fileName()).toString();
    // A drawing may refer to files, and there may be somebody who reads drawings.
    const QByteArray drawing =
        "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><image href='" +
        url.toUtf8() + "' width='9' height='9'/></svg>";
    MacroBuilder root;
    root.node(u"QCImageLoader"_s, u"L"_s, {}, {{u"imagePath"_s, picture.fileName()}})
        .node(u"QCImageDownloader"_s, u"D"_s, {{u"inputURL"_s, url}})
        .node(u"QCPatchRenderer"_s, u"P"_s, {{u"inputPath"_s, picture.fileName()}})
        .node(u"QCImageLoader"_s, u"V"_s, {}, {{u"imageData"_s, drawing}})
        .node(u"QCTextImage"_s, u"T"_s, {{u"inputFontName"_s, picture.fileName()}})
        .output(u"loaded"_s, u"L.outputImage"_s)
        .output(u"drawn"_s, u"V.outputImage"_s)
        .output(u"downloaded"_s, u"D.outputImage"_s)
        .output(u"rendered"_s, u"P.outputImage"_s)
        .output(u"painted"_s, u"T.outputImage"_s);
    Evaluator evaluator(root.read());
    evaluator.evaluate({});
    for (const QString &key : evaluator.outputKeys()) {
        EXPECT_FALSE(evaluator.outputValue(key).toImage()) << key.toStdString();
    }
}

TEST(Bounds, ImagesDrawnInto)
{
    // Every pass draws into an image of its own, all of which are shown in the same frame.
    MacroBuilder image;
    image.node(u"QCClear"_s, u"C"_s);
    MacroBuilder inside;
    inside
        .macro(u"QCRenderInImage"_s, u"R"_s, image,
               {{u"inputWidth"_s, 1'000'000}, {u"inputHeight"_s, 1024}})
        .node(u"QCSprite"_s, u"S"_s)
        .connect(u"R.outputImage"_s, u"S.inputImage"_s);
    MacroBuilder root;
    root.macro(u"QCIterator"_s, u"I"_s, inside, {{u"inputCount"_s, 100}});
    Evaluator evaluator(root.read());
    const Frame frame = evaluator.evaluate({});
    qint64 bytes = 0;
    for (size_t i = 0; i + 1 < frame.targets.size(); ++i) {
        EXPECT_LE(frame.targets[i].pixels.width(), limits::imageSide);
        bytes += 4LL * frame.targets[i].pixels.width() * frame.targets[i].pixels.height();
    }
    EXPECT_LE(bytes, limits::imageBytes);
    EXPECT_EQ(frame.targets.size(), 9U) << "eight images of 32 MiB, and the destination";
}

TEST(Bounds, TextsThatGrow)
{
    // The text doubles in every frame.
    MacroBuilder inside;
    inside.node(u"QCRecursor"_s, u"R"_s, {{u"Initial_t"_s, u"xxxxxxxx"_s}})
        .node(u"QCStringFormat"_s, u"F"_s, {}, {{u"format"_s, u"%@%@"_s}}, u"printer"_s)
        .connect(u"R.t"_s, u"F.argument_1"_s)
        .connect(u"R.t"_s, u"F.argument_2"_s)
        .output(u"t"_s, u"F.outputString"_s);
    MacroBuilder root;
    root.macro(u"QCPatch"_s, u"P"_s, inside).output(u"t"_s, u"P.t"_s);
    Evaluator evaluator(root.read());
    for (int i = 0; i < 100; ++i) {
        evaluator.evaluate({.time = double(i)});
        evaluator.outputValue(u"t"_s);
        // Feedback is stored at the end of a frame that asked for it.
        evaluator.evaluate({.time = i + 0.5});
        EXPECT_LE(evaluator.outputValue(u"t"_s).toString().size(), limits::stringLength);
    }
}

TEST(Bounds, PortsThatASettingAsksFor)
{
    MacroBuilder root;
    root.node(u"QCMath"_s, u"M"_s, {}, {{u"operationCount"_s, 2'000'000'000}})
        .node(u"QCMultiplexer"_s, u"X"_s, {}, {{u"inputCount"_s, 2'000'000'000}})
        .node(u"QCDemultiplexer"_s, u"D"_s, {{u"source_999999999"_s, 1}}, {{u"outputCount"_s, -5}})
        .node(u"QCGradient"_s, u"G"_s, {}, {{u"numberOfPoints"_s, 2'000'000'000}});
    Evaluator evaluator(root.read());
    evaluator.evaluate({});
    for (const Node &node : evaluator.network().nodes) {
        EXPECT_LE(node.inputs.size(), size_t(2 * limits::countedPorts + 10));
    }
}

TEST(Bounds, TargetsOfAbsurdSizes)
{
    Evaluator evaluator(MacroBuilder().node(u"QCClear"_s, u"C"_s).read());
    EXPECT_EQ(
        evaluator.evaluate({.time = -5.0, .systemTime = 0.0, .pixels = {0, -3}}).targets[0].pixels,
        QSize(1, 1));
    EXPECT_EQ(evaluator.evaluate({.time = 1e300, .systemTime = 0.0, .pixels = {100'000, 5}})
                  .targets[0]
                  .pixels,
              QSize(limits::imageSide, 5));
}

} // namespace
} // namespace tarnwell::compositions::test
