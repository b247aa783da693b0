#pragma once

#include "compositions/drawing/Frame.h"
#include "compositions/evaluator/PatchDefinition.h"

#include <array>

namespace tarnwell::compositions {

/// The stored numbers; unknown ones mean the mode that most things are drawn with.
Blending blendingOf(qint64 number);
DepthMode depthModeOf(qint64 number);
Culling cullingOf(qint64 number);

/// What all things that stand somewhere in space have in common.
namespace Surface {

enum Input {
    X,
    Y,
    Z,
    RotationX,
    RotationY,
    RotationZ,
    BlendingMode,
    Depth,
    CullingMode,
    FirstOwnInput
};

/// The common inputs with those of one class behind them.
template <size_t N>
constexpr std::array<PortDefinition, FirstOwnInput + N>
inputs(const std::array<PortDefinition, N> &own, double blending = 1.0, double culling = 0.0)
{
    std::array<PortDefinition, FirstOwnInput + N> all{};
    all[X] = {QLatin1StringView("inputX"), PortType::Number};
    all[Y] = {QLatin1StringView("inputY"), PortType::Number};
    all[Z] = {QLatin1StringView("inputZ"), PortType::Number};
    all[RotationX] = {QLatin1StringView("inputRX"), PortType::Number};
    all[RotationY] = {QLatin1StringView("inputRY"), PortType::Number};
    all[RotationZ] = {QLatin1StringView("inputRZ"), PortType::Number};
    all[BlendingMode] = {QLatin1StringView("inputBlending"), PortType::Index, blending};
    all[Depth] = {QLatin1StringView("inputZBuffer"), PortType::Index, 1.0};
    all[CullingMode] = {QLatin1StringView("inputCulling"), PortType::Index, culling};
    for (size_t i = 0; i < N; ++i) {
        all[FirstOwnInput + i] = own[i];
    }
    return all;
}

/// A command at the place and with the modes that the common inputs give; the rest is missing.
DrawCommand command(Context &context, const Canvas &canvas);

} // namespace Surface

} // namespace tarnwell::compositions
