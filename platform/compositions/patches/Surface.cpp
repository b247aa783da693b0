#include "compositions/patches/Surface.h"

#include "compositions/drawing/Canvas.h"
#include "compositions/evaluator/Context.h"

namespace tarnwell::compositions {

Blending blendingOf(qint64 number)
{
    return number >= 0 && number <= 3 ? Blending(number) : Blending::Over;
}

DepthMode depthModeOf(qint64 number)
{
    return number >= 0 && number <= 2 ? DepthMode(number) : DepthMode::None;
}

Culling cullingOf(qint64 number)
{
    return number >= 0 && number <= 3 ? Culling(number) : Culling::None;
}

DrawCommand Surface::command(Context &context, const Canvas &canvas)
{
    DrawCommand command;
    command.transform = canvas.clipFromModel();
    command.transform.translate(float(context.number(X)), float(context.number(Y)),
                                float(context.number(Z)));
    command.transform.rotate(float(context.number(RotationX)), 1.0F, 0.0F, 0.0F);
    command.transform.rotate(float(context.number(RotationY)), 0.0F, 1.0F, 0.0F);
    command.transform.rotate(float(context.number(RotationZ)), 0.0F, 0.0F, 1.0F);
    command.blending = blendingOf(context.index(BlendingMode));
    command.depth = depthModeOf(context.index(Depth));
    command.culling = cullingOf(context.index(CullingMode));
    command.lighting = canvas.lighting();
    return command;
}

} // namespace tarnwell::compositions
