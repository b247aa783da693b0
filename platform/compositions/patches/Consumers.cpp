#include "compositions/drawing/Canvas.h"
#include "compositions/drawing/Geometry.h"
#include "compositions/evaluator/Context.h"
#include "compositions/model/Image.h"
#include "compositions/patches/Families.h"
#include "compositions/patches/Settings.h"
#include "compositions/patches/Surface.h"

#include <array>
#include <cmath>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using Type = PortType;

namespace {

void clear(Context &context, Canvas &canvas)
{
    const NodeDescription &description = context.description();
    canvas.clear({.color = context.color(0),
                  .clearsColor = flagSetting(description, "clearColorBuffer"_L1, true),
                  .clearsDepth = flagSetting(description, "clearDepthBuffer"_L1, true)});
}

enum BillboardInput {
    BillboardImage,
    BillboardMask,
    BillboardX,
    BillboardY,
    BillboardRotation,
    BillboardColor,
    BillboardBlending,
    BillboardPixelAligned,
    BillboardScale,
    BillboardWidth,
    BillboardHeight
};

/// Width and height in units, as the mode of the billboard wants them.
QSizeF billboardSize(Context &context, QSize pixels, double unit)
{
    const QString mode = context.description().setting("sizeMode"_L1).toString();
    const double scale = context.number(BillboardScale);
    if (mode == "real"_L1) {
        return QSizeF(pixels) * unit;
    }
    if (mode == "custom"_L1) {
        return {context.number(BillboardWidth), context.number(BillboardHeight)};
    }
    if (mode == "autoWidth"_L1) {
        return {scale * pixels.width() / pixels.height(), scale};
    }
    return {scale, scale * pixels.height() / pixels.width()};
}

/// Moves an edge onto the border between two pixels.
double alignedCenter(double center, double extent, double unit)
{
    return std::round((center - extent / 2.0) / unit) * unit + extent / 2.0;
}

/// Faces the viewer wherever its surroundings put it, takes part in no depth buffer and shows
/// nothing without an image.
void drawBillboard(Context &context, Canvas &canvas)
{
    const ImageRef image = context.image(BillboardImage);
    if (!image) {
        return;
    }
    const double unit = unitsPerPixel(canvas.pixels());
    // What has no end is shown as far as the destination reaches.
    const QSizeF size =
        billboardSize(context, image->isEndless() ? canvas.pixels() : image->pixelSize(), unit);
    double x = context.number(BillboardX);
    double y = context.number(BillboardY);
    const double rotation = context.number(BillboardRotation);
    if (context.boolean(BillboardPixelAligned) && rotation == 0.0) {
        x = alignedCenter(x, size.width(), unit);
        // The origin lies in the middle of the destination, which an odd height cuts through.
        const double bottom = -destinationHeight(canvas.pixels()) / 2.0;
        y = alignedCenter(y - bottom, size.height(), unit) + bottom;
    }
    const QMatrix4x4 &model = canvas.model();
    DrawCommand command;
    command.mesh = unitQuad();
    command.transform = canvas.clipFromView();
    command.transform.translate(model.map(QVector3D(float(x), float(y), 0.0F)));
    command.transform.rotate(float(rotation), 0.0F, 0.0F, 1.0F);
    command.transform.scale(float(size.width()) * model.column(0).toVector3D().length(),
                            float(size.height()) * model.column(1).toVector3D().length());
    command.image = image;
    command.mask = context.image(BillboardMask);
    command.color = context.color(BillboardColor);
    command.blending = blendingOf(context.index(BillboardBlending));
    canvas.draw(std::move(command));
}

enum SpriteInput {
    SpriteImage = Surface::FirstOwnInput,
    SpriteMask,
    SpriteColor,
    SpriteWidth,
    SpriteHeight
};

void drawSprite(Context &context, Canvas &canvas)
{
    DrawCommand command = Surface::command(context, canvas);
    command.mesh = unitQuad();
    command.transform.scale(float(context.number(SpriteWidth)),
                            float(context.number(SpriteHeight)));
    command.image = context.image(SpriteImage);
    command.mask = context.image(SpriteMask);
    command.color = context.color(SpriteColor);
    canvas.draw(std::move(command));
}

constexpr int firstGradientPort = 2;

int gradientPoints(const NodeDescription &description, const PortList &ports)
{
    constexpr int most = 100;
    const int mentioned = ports.mentionedInputCount("inputColor"_L1) - 1;
    return std::clamp(countSetting(description, "numberOfPoints"_L1, mentioned), 2, most);
}

void addGradientPorts(const NodeDescription &description, PortList &ports)
{
    const int points = gradientPoints(description, ports);
    for (int i = 1; i <= points; ++i) {
        const double shade = double(i - 1) / (points - 1);
        ports.addInput(u"inputColor%1"_s.arg(i), Type::Color, Color{shade, shade, shade, 1.0});
        ports.addInput(u"inputPosition%1"_s.arg(i), Type::Number, shade);
    }
}

void drawGradient(Context &context, Canvas &canvas)
{
    std::vector<GradientStop> stops;
    for (int i = firstGradientPort;
         i + 1 < context.inputCount() && context.inputKey(i).startsWith("inputColor"_L1); i += 2) {
        stops.push_back({context.number(i + 1), context.color(i)});
    }
    if (stops.empty()) {
        return;
    }
    // The ends are where they are; only the stops between them can be moved.
    stops.front().position = 0.0;
    stops.back().position = 1.0;
    if (flagSetting(context.description(), "clearDepthBuffer"_L1)) {
        canvas.clear({.color = {}, .clearsColor = false, .clearsDepth = true});
    }
    DrawCommand command;
    command.mesh = gradientMesh(std::move(stops), int(context.index(0) % 4));
    command.color = {1.0, 1.0, 1.0, 1.0};
    command.blending = blendingOf(context.index(1));
    canvas.draw(std::move(command));
}

std::array<float, 4> componentsOf(const Color &color)
{
    return {float(color.red), float(color.green), float(color.blue), float(color.alpha)};
}

enum LineInput {
    LineStart,
    LineEnd = 3,
    LineStartColor = 6,
    LineEndColor,
    LineWidth,
    LineBlending,
    LineDepth
};

void drawLine(Context &context, Canvas &canvas)
{
    auto mesh = std::make_shared<Mesh>();
    mesh->primitive = Primitive::Lines;
    for (const auto &[position, color] :
         {std::pair{LineStart, LineStartColor}, std::pair{LineEnd, LineEndColor}}) {
        Vertex vertex;
        vertex.position = {float(context.number(position)), float(context.number(position + 1)),
                           float(context.number(position + 2))};
        vertex.color = componentsOf(context.color(color));
        mesh->vertices.push_back(vertex);
    }
    DrawCommand command;
    command.mesh = std::move(mesh);
    command.transform = canvas.clipFromModel();
    command.color = {1.0, 1.0, 1.0, 1.0};
    command.blending = blendingOf(context.index(LineBlending));
    command.depth = depthModeOf(context.index(LineDepth));
    command.lineWidth =
        float(std::clamp(context.number(LineWidth), 0.0, double(limits::imageSide)));
    canvas.draw(std::move(command));
}

constexpr std::array clearInputs{PortDefinition{"inputColor"_L1, Type::Color}};
constexpr std::array billboardInputs{PortDefinition{"inputImage"_L1, Type::Image},
                                     PortDefinition{"inputMask"_L1, Type::Image},
                                     PortDefinition{"inputX"_L1, Type::Number},
                                     PortDefinition{"inputY"_L1, Type::Number},
                                     PortDefinition{"inputRotation"_L1, Type::Number},
                                     PortDefinition{"inputColor"_L1, Type::Color, 1.0},
                                     PortDefinition{"inputBlending"_L1, Type::Index, 1.0},
                                     PortDefinition{"inputPixelAligned"_L1, Type::Boolean},
                                     PortDefinition{"inputScale"_L1, Type::Number, 1.0},
                                     PortDefinition{"inputWidth"_L1, Type::Number, 1.0},
                                     PortDefinition{"inputHeight"_L1, Type::Number, 1.0}};
constexpr auto spriteInputs = Surface::inputs(std::array{
    PortDefinition{"inputImage"_L1, Type::Image}, PortDefinition{"inputMask"_L1, Type::Image},
    PortDefinition{"inputColor"_L1, Type::Color, 1.0},
    PortDefinition{"inputWidth"_L1, Type::Number, 1.0},
    PortDefinition{"inputHeight"_L1, Type::Number, 1.0}});
constexpr std::array gradientInputs{PortDefinition{"inputDirection"_L1, Type::Index},
                                    PortDefinition{"inputBlending"_L1, Type::Index}};
constexpr std::array lineInputs{PortDefinition{"inputStartX"_L1, Type::Number},
                                PortDefinition{"inputStartY"_L1, Type::Number},
                                PortDefinition{"inputStartZ"_L1, Type::Number},
                                PortDefinition{"inputEndX"_L1, Type::Number},
                                PortDefinition{"inputEndY"_L1, Type::Number},
                                PortDefinition{"inputEndZ"_L1, Type::Number},
                                PortDefinition{"inputStartColor"_L1, Type::Color, 1.0},
                                PortDefinition{"inputEndColor"_L1, Type::Color, 1.0},
                                PortDefinition{"inputLineWidth"_L1, Type::Number, 1.0},
                                PortDefinition{"inputBlending"_L1, Type::Index, 1.0},
                                PortDefinition{"inputZBuffer"_L1, Type::Index}};

const std::array definitions{
    PatchDefinition{
        .className = "QCClear"_L1, .role = Role::Consumer, .inputs = clearInputs, .draw = clear},
    PatchDefinition{.className = "QCBillboard"_L1,
                    .role = Role::Consumer,
                    .inputs = billboardInputs,
                    .draw = drawBillboard},
    PatchDefinition{.className = "QCSprite"_L1,
                    .role = Role::Consumer,
                    .inputs = spriteInputs,
                    .draw = drawSprite},
    PatchDefinition{.className = "QCGradient"_L1,
                    .role = Role::Consumer,
                    .inputs = gradientInputs,
                    .draw = drawGradient,
                    .addPorts = addGradientPorts},
    PatchDefinition{
        .className = "QCLine"_L1, .role = Role::Consumer, .inputs = lineInputs, .draw = drawLine},
};

} // namespace

std::span<const PatchDefinition> consumerPatches()
{
    return definitions;
}

} // namespace tarnwell::compositions
