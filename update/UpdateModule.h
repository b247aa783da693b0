#pragma once

#include "foundation/Bundle.h"
#include "foundation/plist/Value.h"

namespace tarnwell::update {

/// The identifier that a plug-in goes by: it names its preference domain, its lock and the object
/// of its notifications. Empty when the bundle has none.
QString moduleIdentifier(const foundation::Bundle &bundle);

/// The name for log lines: CFBundleName unless that is empty, else CFBundleExecutable. Null when
/// the bundle has neither, and anything at all when its author made a mistake.
plist::Value productName(const foundation::Bundle &bundle);

/// The version that the bundle shows to users; empty when it has none.
QString shortVersion(const foundation::Bundle &bundle);

/// Whether a version text marks a beta or a final candidate: it holds "b" or "fc" anywhere.
bool isBetaVersion(const QString &shortVersion);

/// Seconds between two checks where the user chose nothing: a week, of a beta version a day.
double defaultCheckInterval(const foundation::Bundle &bundle);

inline constexpr double oneDay = 86400.0;
inline constexpr double oneWeek = 7 * oneDay;

} // namespace tarnwell::update
