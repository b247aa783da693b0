#include "CompositionBuilder.h"

#include "compositions/drawing/Geometry.h"
#include "compositions/model/Image.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tarnwell::compositions::test {
namespace {

using namespace Qt::StringLiterals;
using plist::Array;
using plist::Dictionary;

constexpr QSize square(200, 200);

Frame frameOf(const MacroBuilder &root, QSize pixels = square, double time = 0.0)
{
    Evaluator evaluator(root.read());
    return evaluator.evaluate({.time = time, .systemTime = 0.0, .pixels = pixels});
}

const DrawCommand &drawn(const Frame &frame, size_t index = 0)
{
    return std::get<DrawCommand>(frame.targets.back().commands.at(index));
}

/// Where a corner of a unit square, or another point, ends up: from -1 to 1 across the destination.
QVector3D placed(const DrawCommand &command, QVector3D point = {0.5F, 0.5F, 0.0F})
{
    return command.transform.map(point);
}

void expectPoint(const QVector3D &point, double x, double y)
{
    EXPECT_NEAR(point.x(), x, 1e-4);
    EXPECT_NEAR(point.y(), y, 1e-4);
}

TEST(Projection, MakesTheMiddlePlaneTwoUnitsWide)
{
    expectPoint(projection({400, 200}).map(QVector3D(1.0F, 0.5F, 0.0F)), 1.0, 1.0);
    expectPoint(projection({400, 300}).map(QVector3D(-1.0F, -0.75F, 0.0F)), -1.0, -1.0);
    // Twice as far from the eye, half as large.
    expectPoint(projection(square).map(QVector3D(1.0F, 0.0F, float(-eyeDistance))), 0.5, 0.0);
    const QVector4D near = projection(square) * QVector4D(0, 0, 1.64F, 1);
    EXPECT_LT(near.z(), -near.w()) << "beyond the near plane nothing shows";
}

TEST(SpriteConsumer, StandsTurnsAndStretches)
{
    MacroBuilder root;
    root.node(u"QCSprite"_s, u"S"_s,
              {{u"inputX"_s, 0.25},
               {u"inputWidth"_s, 0.5},
               {u"inputHeight"_s, 1.0},
               {u"inputColor"_s, color(1, 0.5, 0, 0.25)},
               {u"inputBlending"_s, 2},
               {u"inputZBuffer"_s, 2},
               {u"inputCulling"_s, 1}})
        .node(u"QCSprite"_s, u"T"_s, {{u"inputRZ"_s, 90.0}, {u"inputWidth"_s, 0.5}});
    const Frame frame = frameOf(root);
    ASSERT_EQ(frame.targets.size(), 1U);
    const DrawCommand &first = drawn(frame);
    expectPoint(placed(first), 0.5, 0.5);
    EXPECT_EQ(first.color, (Color{1, 0.5, 0, 0.25}));
    EXPECT_EQ(first.blending, Blending::Add);
    EXPECT_EQ(first.depth, DepthMode::ReadOnly);
    EXPECT_EQ(first.culling, Culling::Back);
    expectPoint(placed(drawn(frame, 1)), -0.5, 0.25);
}

TEST(SpriteConsumer, DropsWhatIsNoNumber)
{
    MacroBuilder root;
    root.node(u"QCSprite"_s, u"S"_s, {{u"inputX"_s, std::numeric_limits<double>::infinity()}});
    EXPECT_TRUE(frameOf(root).targets.back().commands.empty());
}

/// A billboard with an image of 100 x 50 pixels.
MacroBuilder billboard(const Dictionary &inputs, const Dictionary &settings = {})
{
    MacroBuilder inside;
    inside.node(u"QCClear"_s, u"C"_s);
    MacroBuilder root;
    root.macro(u"QCRenderInImage"_s, u"R"_s, inside,
               {{u"inputWidth"_s, 100}, {u"inputHeight"_s, 50}})
        .node(u"QCBillboard"_s, u"B"_s, inputs, settings)
        .connect(u"R.outputImage"_s, u"B.inputImage"_s);
    return root;
}

TEST(BillboardConsumer, HasFourWaysToGetItsSize)
{
    struct Row
    {
        QString mode;
        double halfWidth;
        double halfHeight;
    };
    const Dictionary inputs{
        {u"inputScale"_s, 1.0}, {u"inputWidth"_s, 0.4}, {u"inputHeight"_s, 0.6}};
    for (const auto &[mode, halfWidth, halfHeight] : {Row{u"autoHeight"_s, 0.5, 0.25},
                                                      {u"autoWidth"_s, 1.0, 0.5},
                                                      {u"custom"_s, 0.2, 0.3},
                                                      {u"real"_s, 0.5, 0.25},
                                                      {u""_s, 0.5, 0.25}}) {
        const Frame frame = frameOf(billboard(inputs, {{u"sizeMode"_s, mode}}));
        expectPoint(placed(drawn(frame)), halfWidth, halfHeight);
    }
}

TEST(BillboardConsumer, DrawsNothingWithoutAnImage)
{
    MacroBuilder root;
    root.node(u"QCBillboard"_s, u"B"_s);
    EXPECT_TRUE(frameOf(root).targets.back().commands.empty());
}

TEST(BillboardConsumer, AlignsToPixels)
{
    const Frame frame = frameOf(billboard({{u"inputX"_s, 0.0033}, {u"inputPixelAligned"_s, true}},
                                          {{u"sizeMode"_s, u"real"_s}}));
    expectPoint(placed(drawn(frame)), 0.5, 0.25);
}

TEST(BillboardConsumer, FacesTheViewerWhateverIsAround)
{
    MacroBuilder root;
    root.macro(u"QCCamera"_s, u"C"_s, billboard({{u"inputX"_s, 0.5}, {u"inputScale"_s, 0.5}}),
               {{u"inputRotateZ"_s, 90.0}});
    const Frame frame = frameOf(root);
    expectPoint(placed(drawn(frame), {0, 0, 0}), 0.0, 0.5);
    expectPoint(placed(drawn(frame)), 0.25, 0.625);
}

TEST(RenderInImage, DrawsIntoItsImageFirst)
{
    const Frame frame = frameOf(billboard({}));
    ASSERT_EQ(frame.targets.size(), 2U);
    EXPECT_EQ(frame.targets[0].pixels, QSize(100, 50));
    EXPECT_EQ(frame.targets[0].image, drawn(frame).image);
    EXPECT_EQ(frame.targets[0].commands.size(), 1U);
}

TEST(RenderInImage, RunsOnlyWhenItIsNeededAndTakesTheSizeAround)
{
    MacroBuilder inside;
    inside.node(u"QCScreenInfo"_s, u"I"_s)
        .node(u"QCSprite"_s, u"S"_s)
        .connect(u"I.outputHeight"_s, u"S.inputHeight"_s);
    MacroBuilder root;
    root.macro(u"QCRenderInImage"_s, u"R"_s, inside);
    EXPECT_EQ(frameOf(root).targets.size(), 1U);
    root.node(u"QCSprite"_s, u"S"_s).connect(u"R.outputImage"_s, u"S.inputImage"_s);
    const Frame frame = frameOf(root, {300, 150});
    ASSERT_EQ(frame.targets.size(), 2U);
    EXPECT_EQ(frame.targets[0].pixels, QSize(300, 150));
    expectPoint(placed(std::get<DrawCommand>(frame.targets[0].commands[0])), 0.5, 1.0);
}

TEST(CameraEnvironment, TurnsAboutItsOriginThenMovesThenScales)
{
    MacroBuilder inside;
    inside.node(u"QCSprite"_s, u"S"_s, {{u"inputX"_s, 0.5}});
    MacroBuilder root;
    root.macro(u"QCCamera"_s, u"C"_s, inside,
               {{u"inputOriginX"_s, 0.5},
                {u"inputRotateZ"_s, 90.0},
                {u"inputTranslateY"_s, 0.25},
                {u"inputScaleX"_s, 0.5},
                {u"inputScaleY"_s, 0.5}})
        .node(u"QCSprite"_s, u"After"_s);
    const Frame frame = frameOf(root);
    expectPoint(placed(drawn(frame), {0, 0, 0}), 0.25, 0.125);
    expectPoint(placed(drawn(frame)), 0.0, 0.375);
    expectPoint(placed(drawn(frame, 1)), 0.5, 0.5);
}

TEST(ReplicatorEnvironment, GoesFromNothingToTheWhole)
{
    MacroBuilder inside;
    inside.node(u"QCSprite"_s, u"S"_s);
    MacroBuilder root;
    root.macro(u"QCReplicator"_s, u"R"_s, inside,
               {{u"inputCopies"_s, 3},
                {u"inputOriginX"_s, 0.5},
                {u"inputRotationZ"_s, 180.0},
                {u"inputScale"_s, 0.5},
                {u"inputTranslationY"_s, 0.2}});
    const Frame frame = frameOf(root);
    ASSERT_EQ(frame.targets.back().commands.size(), 3U);
    expectPoint(placed(drawn(frame, 0), {0, 0, 0}), 0.5, 0.0);
    expectPoint(placed(drawn(frame, 1), {0, 0, 0}), 0.0, 0.6);
    expectPoint(placed(drawn(frame, 2), {0, 0, 0}), -0.5, 0.2);
    expectPoint(placed(drawn(frame, 2)), -0.75, -0.05);
}

TEST(ClearConsumer, NamesItsBuffers)
{
    MacroBuilder root;
    root.node(u"QCClear"_s, u"C"_s, {{u"inputColor"_s, color(0, 1, 0)}},
              {{u"clearDepthBuffer"_s, 0}, {u"clearColorBuffer"_s, true}});
    const Frame frame = frameOf(root);
    const auto &clear = std::get<ClearCommand>(frame.targets.back().commands.at(0));
    EXPECT_EQ(clear.color, (Color{0, 1, 0, 1}));
    EXPECT_TRUE(clear.clearsColor);
    EXPECT_FALSE(clear.clearsDepth);
}

TEST(GradientMesh, RunsInItsDirection)
{
    const Color black{0, 0, 0, 1};
    const Color red{1, 0, 0, 1};
    struct Row
    {
        int direction;
        std::array<float, 2> last;
    };
    for (const auto &[direction, last] :
         {Row{0, {1, 1}}, {1, {1, 1}}, {2, {1, -1}}, {3, {-1, 1}}}) {
        const MeshRef mesh = gradientMesh({{0.0, black}, {1.0, red}}, direction);
        ASSERT_EQ(mesh->vertices.size(), 4U);
        EXPECT_EQ(mesh->vertices[0].color[0], 0.0F);
        EXPECT_EQ(mesh->vertices[3].color[0], 1.0F);
        EXPECT_EQ(mesh->vertices[3].position[0], last[0]) << direction;
        EXPECT_EQ(mesh->vertices[3].position[1], last[1]) << direction;
    }
    const MeshRef held = gradientMesh({{0.8, black}, {0.3, red}, {7.0, black}}, 0);
    EXPECT_EQ(held->vertices.size(), 8U) << "one stop is added at the start";
    EXPECT_FLOAT_EQ(held->vertices[4].position[1], 0.6F) << "a stop cannot stand before another";
}

TEST(GradientConsumer, ReadsFixedAndCustomPorts)
{
    MacroBuilder root;
    root.node(u"QCGradient"_s, u"G"_s,
              {{u"inputColor1"_s, color(1, 0, 0)},
               {u"inputColor2"_s, color(0, 1, 0)},
               {u"inputColor3"_s, color(0, 0, 1)},
               {u"inputPosition2"_s, 0.25}});
    const MeshRef mesh = drawn(frameOf(root)).mesh;
    ASSERT_EQ(mesh->vertices.size(), 6U);
    EXPECT_FLOAT_EQ(mesh->vertices[2].position[1], -0.5F);
    EXPECT_EQ(mesh->vertices[2].color[1], 1.0F);
}

TEST(LineExpansion, CoversItsWidthInPixels)
{
    const ClipVertex from{{-1, 0, 0, 1}, {1, 0, 0, 1}};
    const ClipVertex to{{1, 0, 0, 1}, {0, 0, 1, 1}};
    const auto corners = expandLine(from, to, 10.0, {200, 100});
    ASSERT_EQ(corners.size(), 6U);
    EXPECT_NEAR(corners[2].position.y() - corners[1].position.y(), 0.2, 1e-6);
    EXPECT_EQ(corners[0].color[0], 1.0F);
    EXPECT_EQ(corners[1].color[2], 1.0F);
}

TEST(LineExpansion, EndsBeforeTheViewer)
{
    const ClipVertex inFront{{0, 0, 0, 1}, {}};
    const ClipVertex behind{{5, 0, 0, -1}, {}};
    EXPECT_TRUE(expandLine(behind, behind, 1.0, square).empty());
    for (const ClipVertex &corner : expandLine(inFront, behind, 1.0, square)) {
        EXPECT_GT(corner.position.w(), 0.0F);
    }
}

TEST(Sphere, HasItsDiameterAndFacesOutwards)
{
    const MeshRef mesh = unitSphere(24, 12);
    for (size_t i = 0; i < mesh->vertices.size(); i += 3) {
        std::array<QVector3D, 3> corner;
        for (size_t j = 0; j < 3; ++j) {
            const auto &p = mesh->vertices[i + j].position;
            corner[j] = {p[0], p[1], p[2]};
            EXPECT_NEAR(corner[j].length(), 0.5, 1e-5);
        }
        const QVector3D normal =
            QVector3D::crossProduct(corner[1] - corner[0], corner[2] - corner[0]);
        EXPECT_GE(QVector3D::dotProduct(normal, corner[0] + corner[1] + corner[2]), 0.0F);
    }
}

TEST(AnchorPatch, TouchesEdgesAndCorners)
{
    struct Row
    {
        int mode;
        double x;
        double y;
    };
    for (const auto &[mode, x, y] : {Row{0, -0.75, 0.5},
                                     {1, 0, 0.5},
                                     {2, 0.75, 0.5},
                                     {3, -0.75, 0},
                                     {4, 0, 0},
                                     {5, 0.75, 0},
                                     {6, -0.75, -0.5},
                                     {8, 0.75, -0.5}}) {
        // 640 x 480: the destination is 1.5 units high.
        SinglePatch patch(u"QCAnchorPosition"_s,
                          {{u"inputMode"_s, mode}, {u"inputWidth"_s, 0.5}, {u"inputHeight"_s, 0.5}},
                          {u"outputX"_s, u"outputY"_s});
        EXPECT_DOUBLE_EQ(patch.at(0, u"outputX"_s).toNumber(), x) << mode;
        EXPECT_DOUBLE_EQ(patch.at(0, u"outputY"_s).toNumber(), y) << mode;
    }
}

TEST(ScreenInfoPatch, MeasuresTheDestination)
{
    struct Row
    {
        const char *output;
        double value;
    };
    for (const auto &[output, value] : {Row{"outputWidth", 2},
                                        {"outputHeight", 1.5},
                                        {"outputPixelsWide", 640},
                                        {"outputPixelsHigh", 480},
                                        {"outputRatio", 640.0 / 480},
                                        {"outputResolution", 320}}) {
        const QString key = QString::fromLatin1(output);
        EXPECT_DOUBLE_EQ(SinglePatch(u"QCScreenInfo"_s, {}, {key}).numberAt(0), value) << output;
    }
}

} // namespace
} // namespace tarnwell::compositions::test
