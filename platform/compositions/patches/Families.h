#pragma once

#include "compositions/evaluator/PatchDefinition.h"

/// The classes of patches, one function a family. A new patch stands in its family's file and there
/// in the table at the end.
namespace tarnwell::compositions {

std::span<const PatchDefinition> numericPatches();
std::span<const PatchDefinition> logicPatches();
std::span<const PatchDefinition> colorPatches();
std::span<const PatchDefinition> imagePatches();
std::span<const PatchDefinition> imageFilterPatches();
std::span<const PatchDefinition> textPatches();
std::span<const PatchDefinition> structurePatches();
std::span<const PatchDefinition> generatorPatches();
std::span<const PatchDefinition> timingPatches();
std::span<const PatchDefinition> scriptPatches();
std::span<const PatchDefinition> environmentPatches();
std::span<const PatchDefinition> consumerPatches();
std::span<const PatchDefinition> shapePatches();
std::span<const PatchDefinition> lightPatches();
std::span<const PatchDefinition> devicePatches();

} // namespace tarnwell::compositions
