#pragma once

#include "compositions/model/Value.h"

#include <QString>

#include <utility>
#include <vector>

namespace tarnwell::effects {

/// What the preview puts into the inputs by which the plug-in tells a composition of the menu that
/// was used: their keys with the values of a menu that looks like one.
std::vector<std::pair<QString, compositions::Value>> sampleMenuInputs();

} // namespace tarnwell::effects
