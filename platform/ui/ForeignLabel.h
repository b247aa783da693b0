#pragma once

#include <QString>

class QFileDialog;
class QFontMetrics;
class QLabel;

namespace tarnwell::ui {

/// The text with invisible places to break it at in words that are wider than this many pixels:
/// otherwise the widest word decides how wide a label with wrapped lines, and all around it, is.
QString breakableText(const QString &text, const QFontMetrics &metrics, int width);

/// Shows a text with words of others in a label that wraps its lines: letter for letter, and in
/// whatever width there is. The caller bounds its length.
void showInLabel(QLabel *label, const QString &text);

/// Has the lists of a dialog show each name of a file as one line that hides nothing. What is
/// chosen in them stays the file itself.
void showFileNamesHonestly(QFileDialog *dialog);

} // namespace tarnwell::ui
