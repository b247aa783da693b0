#pragma once

#include <QString>

namespace tarnwell::compositions {

/// The one program that draws everything, for the context that is current; 0, with the reason, when
/// it cannot be built.
unsigned buildProgram(QString *error);

} // namespace tarnwell::compositions
