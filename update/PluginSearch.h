#pragma once

#include "foundation/Bundle.h"

#include <optional>

namespace tarnwell::update {

/// The plug-in of an identifier (compared without regard to case) among the visible folders of a
/// folder, in the order of their names; nothing when none has it.
std::optional<foundation::Bundle> findPlugin(const QString &folder, const QString &identifier,
                                             bool logsDiagnostics);

} // namespace tarnwell::update
