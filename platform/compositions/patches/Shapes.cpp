#include "compositions/drawing/Canvas.h"
#include "compositions/drawing/Geometry.h"
#include "compositions/evaluator/Context.h"
#include "compositions/patches/Families.h"
#include "compositions/patches/Settings.h"
#include "compositions/patches/Surface.h"

#include <array>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using Type = PortType;

namespace {

enum CubeInput {
    CubeWidth = Surface::FirstOwnInput,
    CubeHeight,
    CubeDepth,
    FirstCubeColor,
    FirstCubeImage = FirstCubeColor + 6
};

/// How a square that faces the viewer gets to each face of a cube of side 1.
struct Face
{
    float angle;
    QVector3D axis;
};
const std::array faces{
    Face{0.0F, {0.0F, 1.0F, 0.0F}},   // front
    Face{180.0F, {0.0F, 1.0F, 0.0F}}, // back
    Face{-90.0F, {0.0F, 1.0F, 0.0F}}, // left
    Face{90.0F, {0.0F, 1.0F, 0.0F}},  // right
    Face{-90.0F, {1.0F, 0.0F, 0.0F}}, // top
    Face{90.0F, {1.0F, 0.0F, 0.0F}},  // bottom
};

void drawCube(Context &context, Canvas &canvas)
{
    DrawCommand body = Surface::command(context, canvas);
    body.mesh = unitQuad();
    body.transform.scale(float(context.number(CubeWidth)), float(context.number(CubeHeight)),
                         float(context.number(CubeDepth)));
    for (size_t i = 0; i < faces.size(); ++i) {
        DrawCommand face = body;
        face.transform.rotate(faces[i].angle, faces[i].axis);
        face.transform.translate(0.0F, 0.0F, 0.5F);
        face.color = context.color(FirstCubeColor + int(i));
        face.image = context.image(FirstCubeImage + int(i));
        canvas.draw(std::move(face));
    }
}

enum SphereInput { SphereScale = Surface::FirstOwnInput, SphereColor, SphereImage };

void drawSphere(Context &context, Canvas &canvas)
{
    constexpr int usualSlices = 24;
    constexpr int usualStacks = 12;
    static const MeshRef usualMesh = unitSphere(usualSlices, usualStacks);
    const int slices = countSetting(context.description(), "slices"_L1, usualSlices);
    const int stacks = countSetting(context.description(), "stacks"_L1, usualStacks);
    if (!context.charge(slices * stacks / 16)) {
        return;
    }
    DrawCommand command = Surface::command(context, canvas);
    command.mesh =
        slices == usualSlices && stacks == usualStacks ? usualMesh : unitSphere(slices, stacks);
    command.transform.scale(float(context.number(SphereScale)));
    command.color = context.color(SphereColor);
    command.image = context.image(SphereImage);
    canvas.draw(std::move(command));
}

constexpr auto cubeInputs =
    Surface::inputs(std::array{PortDefinition{"inputWidth"_L1, Type::Number, 1.0},
                               PortDefinition{"inputHeight"_L1, Type::Number, 1.0},
                               PortDefinition{"inputDepth"_L1, Type::Number, 1.0},
                               PortDefinition{"inputColorFront"_L1, Type::Color, 1.0},
                               PortDefinition{"inputColorBack"_L1, Type::Color, 1.0},
                               PortDefinition{"inputColorLeft"_L1, Type::Color, 1.0},
                               PortDefinition{"inputColorRight"_L1, Type::Color, 1.0},
                               PortDefinition{"inputColorTop"_L1, Type::Color, 1.0},
                               PortDefinition{"inputColorBottom"_L1, Type::Color, 1.0},
                               PortDefinition{"inputImageFront"_L1, Type::Image},
                               PortDefinition{"inputImageBack"_L1, Type::Image},
                               PortDefinition{"inputImageLeft"_L1, Type::Image},
                               PortDefinition{"inputImageRight"_L1, Type::Image},
                               PortDefinition{"inputImageTop"_L1, Type::Image},
                               PortDefinition{"inputImageBottom"_L1, Type::Image}},
                    0.0, 1.0);
constexpr auto sphereInputs =
    Surface::inputs(std::array{PortDefinition{"inputScale"_L1, Type::Number, 1.0},
                               PortDefinition{"inputColor"_L1, Type::Color, 1.0},
                               PortDefinition{"inputImage"_L1, Type::Image}},
                    0.0, 1.0);

const std::array definitions{
    PatchDefinition{
        .className = "QCCube"_L1, .role = Role::Consumer, .inputs = cubeInputs, .draw = drawCube},
    PatchDefinition{.className = "QCSphere"_L1,
                    .role = Role::Consumer,
                    .inputs = sphereInputs,
                    .draw = drawSphere},
};

} // namespace

std::span<const PatchDefinition> shapePatches()
{
    return definitions;
}

} // namespace tarnwell::compositions
