#pragma once

class QString;
class QTextEdit;

namespace tarnwell::ui {

/// Shows the rich-text package `folder` in a view, from its beginning and in the view's own font
/// and colours. Returns false, and leaves the view as it is, when there is no such text.
bool showRichTextPackage(const QString &folder, QTextEdit &view);

} // namespace tarnwell::ui
