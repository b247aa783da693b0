#pragma once

#include <QString>

namespace tarnwell::foundation {

/// What a tool tip takes to show a text letter for letter. Left to itself it reads what looks like
/// markup, so that a file's name could say anything in any size, or name a picture to load.
QString plainToolTip(const QString &text);

} // namespace tarnwell::foundation
