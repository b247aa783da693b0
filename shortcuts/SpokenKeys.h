#pragma once

#include <QString>

namespace tarnwell::shortcuts {

/// The text of a shortcut in words ("Shift Command F1", "Control Comma"), since a speech
/// synthesiser reads glyphs and punctuation badly or not at all.
QString spokenShortcut(const QString &shortcut);

} // namespace tarnwell::shortcuts
