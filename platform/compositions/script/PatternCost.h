#pragma once

#include <QStringView>

namespace tarnwell::compositions {

/// How many steps matching a regular expression of the script language may take at worst, on a text
/// of so many characters. Infinite for expressions that the engine would need too much memory for.
///
/// It is a bound, not an estimate: most matches take far fewer steps. A step is that of all the
/// expression's parts together.
double matchingSteps(QStringView pattern, double textLength);

/// Whether some line of a script may hold an expression that takes too much memory even before it
/// is matched.
bool mayHoldHugePattern(QStringView script);

} // namespace tarnwell::compositions
