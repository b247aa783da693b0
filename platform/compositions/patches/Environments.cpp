#include "compositions/drawing/Canvas.h"
#include "compositions/drawing/Geometry.h"
#include "compositions/evaluator/Context.h"
#include "compositions/maths/Easing.h"
#include "compositions/patches/Families.h"
#include "compositions/patches/Settings.h"

#include <array>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;
using Type = PortType;

namespace {

QVector3D vectorAt(Context &context, int firstInput)
{
    return {float(context.number(firstInput)), float(context.number(firstInput + 1)),
            float(context.number(firstInput + 2))};
}

void rotate(QMatrix4x4 &matrix, const QVector3D &degrees)
{
    matrix.rotate(degrees.x(), 1.0F, 0.0F, 0.0F);
    matrix.rotate(degrees.y(), 0.0F, 1.0F, 0.0F);
    matrix.rotate(degrees.z(), 0.0F, 0.0F, 1.0F);
}

/// Turns about the origin point, moves, then scales.
void surroundByCamera(Context &context, Canvas &canvas, const std::function<void()> &drawChildren)
{
    const QVector3D origin = vectorAt(context, 0);
    QMatrix4x4 model = canvas.model();
    model.scale(vectorAt(context, 9));
    model.translate(vectorAt(context, 6));
    model.translate(origin);
    rotate(model, vectorAt(context, 3));
    model.translate(-origin);
    canvas.setModel(model);
    drawChildren();
}

/// Draws copies, each a step further along the way from nothing to the full transformation.
void replicate(Context &context, Canvas &canvas, const std::function<void()> &drawChildren)
{
    const QMatrix4x4 around = canvas.model();
    const qint64 copies = context.index(0);
    const QVector3D origin = vectorAt(context, 6);
    for (qint64 i = 0; i < copies && context.takeIteration(); ++i) {
        const double part = copies > 1 ? double(i) / double(copies - 1) : 0.0;
        const auto t = float(ease(context.index(1), part));
        const auto scale = float(1.0 + (context.number(2) - 1.0) * double(t));
        QMatrix4x4 model = around;
        model.translate(vectorAt(context, 12) * t);
        rotate(model, vectorAt(context, 9) * t);
        model.translate(origin);
        rotate(model, vectorAt(context, 3) * t);
        model.scale(scale);
        canvas.setModel(model);
        drawChildren();
    }
}

void drawOnce(Context &, Canvas &, const std::function<void()> &drawChildren)
{
    drawChildren();
}

void iteratorVariables(Context &context)
{
    const Pass pass = context.pass();
    context.set(0, Value::index(pass.index));
    context.set(1, pass.count > 1 ? double(pass.index) / double(pass.count - 1) : 0.0);
    context.set(2, Value::index(pass.count));
}

void screenInfo(Context &context)
{
    const QSize size = context.destination();
    context.set(0, destinationWidth);
    context.set(1, destinationHeight(size));
    context.set(2, Value::index(size.width()));
    context.set(3, Value::index(size.height()));
    context.set(4, double(size.width()) / size.height());
    context.set(5, size.width() / destinationWidth);
}

/// Where the middle of a thing must be so that the thing touches an edge or a corner.
void anchorPosition(Context &context)
{
    const qint64 mode = context.index(0);
    const QSize size = context.destination();
    const auto column = double(mode % 3) - 1.0;
    const double row = 1.0 - double(mode / 3 % 3);
    context.set(0, context.number(1) + column * (destinationWidth - context.number(3)) / 2.0);
    context.set(1, context.number(2) + row * (destinationHeight(size) - context.number(4)) / 2.0);
}

constexpr std::array iteratorInputs{PortDefinition{"inputCount"_L1, Type::Index, 1.0}};
constexpr std::array cameraInputs{PortDefinition{"inputOriginX"_L1, Type::Number},
                                  PortDefinition{"inputOriginY"_L1, Type::Number},
                                  PortDefinition{"inputOriginZ"_L1, Type::Number},
                                  PortDefinition{"inputRotateX"_L1, Type::Number},
                                  PortDefinition{"inputRotateY"_L1, Type::Number},
                                  PortDefinition{"inputRotateZ"_L1, Type::Number},
                                  PortDefinition{"inputTranslateX"_L1, Type::Number},
                                  PortDefinition{"inputTranslateY"_L1, Type::Number},
                                  PortDefinition{"inputTranslateZ"_L1, Type::Number},
                                  PortDefinition{"inputScaleX"_L1, Type::Number, 1.0},
                                  PortDefinition{"inputScaleY"_L1, Type::Number, 1.0},
                                  PortDefinition{"inputScaleZ"_L1, Type::Number, 1.0}};
constexpr std::array replicatorInputs{PortDefinition{"inputCopies"_L1, Type::Index, 1.0},
                                      PortDefinition{"inputInterpolation"_L1, Type::Index},
                                      PortDefinition{"inputScale"_L1, Type::Number, 1.0},
                                      PortDefinition{"inputOrientationX"_L1, Type::Number},
                                      PortDefinition{"inputOrientationY"_L1, Type::Number},
                                      PortDefinition{"inputOrientationZ"_L1, Type::Number},
                                      PortDefinition{"inputOriginX"_L1, Type::Number},
                                      PortDefinition{"inputOriginY"_L1, Type::Number},
                                      PortDefinition{"inputOriginZ"_L1, Type::Number},
                                      PortDefinition{"inputRotationX"_L1, Type::Number},
                                      PortDefinition{"inputRotationY"_L1, Type::Number},
                                      PortDefinition{"inputRotationZ"_L1, Type::Number},
                                      PortDefinition{"inputTranslationX"_L1, Type::Number},
                                      PortDefinition{"inputTranslationY"_L1, Type::Number},
                                      PortDefinition{"inputTranslationZ"_L1, Type::Number}};
constexpr std::array renderInputs{PortDefinition{"inputWidth"_L1, Type::Index},
                                  PortDefinition{"inputHeight"_L1, Type::Index},
                                  PortDefinition{"inputRender"_L1, Type::Boolean, 1.0},
                                  PortDefinition{"inputMipmaps"_L1, Type::Boolean},
                                  PortDefinition{"inputTarget"_L1, Type::Index}};
constexpr std::array renderOutput{PortDefinition{"outputImage"_L1, Type::Image}};
constexpr std::array variableOutputs{PortDefinition{"outputIndex"_L1, Type::Index},
                                     PortDefinition{"outputPosition"_L1, Type::Number},
                                     PortDefinition{"outputCount"_L1, Type::Index}};
constexpr std::array screenOutputs{PortDefinition{"outputWidth"_L1, Type::Number},
                                   PortDefinition{"outputHeight"_L1, Type::Number},
                                   PortDefinition{"outputPixelsWide"_L1, Type::Index},
                                   PortDefinition{"outputPixelsHigh"_L1, Type::Index},
                                   PortDefinition{"outputRatio"_L1, Type::Number},
                                   PortDefinition{"outputResolution"_L1, Type::Number}};
constexpr std::array anchorInputs{
    PortDefinition{"inputMode"_L1, Type::Index}, PortDefinition{"inputX"_L1, Type::Number},
    PortDefinition{"inputY"_L1, Type::Number}, PortDefinition{"inputWidth"_L1, Type::Number},
    PortDefinition{"inputHeight"_L1, Type::Number}};
constexpr std::array anchorOutputs{PortDefinition{"outputX"_L1, Type::Number},
                                   PortDefinition{"outputY"_L1, Type::Number}};

const std::array definitions{
    PatchDefinition{.className = "QCPatch"_L1, .role = Role::Environment},
    PatchDefinition{.className = "QCIterator"_L1, .role = Role::Iterator, .inputs = iteratorInputs},
    PatchDefinition{.className = "QCIteratorVariables"_L1,
                    .outputs = variableOutputs,
                    .traits = Trait::FrameDependent,
                    .run = iteratorVariables},
    PatchDefinition{.className = "QCCamera"_L1,
                    .role = Role::Environment,
                    .inputs = cameraInputs,
                    .surround = surroundByCamera},
    PatchDefinition{.className = "QCReplicator"_L1,
                    .role = Role::Environment,
                    .inputs = replicatorInputs,
                    .surround = replicate},
    // Nobody turns it with a pointer here, so the ball rests.
    PatchDefinition{.className = "QCTrackBall"_L1, .role = Role::Environment, .surround = drawOnce},
    PatchDefinition{.className = "QCRenderInImage"_L1,
                    .role = Role::RenderInImage,
                    .inputs = renderInputs,
                    .outputs = renderOutput},
    PatchDefinition{.className = "QCScreenInfo"_L1,
                    .outputs = screenOutputs,
                    .traits = Trait::FrameDependent,
                    .run = screenInfo},
    PatchDefinition{.className = "QCAnchorPosition"_L1,
                    .inputs = anchorInputs,
                    .outputs = anchorOutputs,
                    .traits = Trait::FrameDependent,
                    .run = anchorPosition},
};

} // namespace

std::span<const PatchDefinition> environmentPatches()
{
    return definitions;
}

} // namespace tarnwell::compositions
