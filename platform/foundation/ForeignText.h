#pragma once

#include <QString>

namespace tarnwell::foundation {

/// A text that somebody else wrote (the name of an application, a menu item, a file), fit to be
/// shown: one line of at most maximumLength characters. A longer one is elided in the middle. What
/// is invisible or changes the direction of the text around it becomes a visible mark: a picture of
/// the control character, or its code point in brackets. Other texts are returned as they are.
QString shownText(const QString &text, qsizetype maximumLength = 80);

/// A text of several lines that somebody else wrote, fit to be shown: its lines stay, each as
/// shownText() would have it, except that a tab is a blank. A text with more lines or characters
/// ends in an ellipsis.
QString shownLines(const QString &text, qsizetype maximumLength, qsizetype maximumLines);

/// A text that may hold what somebody else wrote, fit for the log: one line of at most
/// maximumLength characters, without any character that a terminal would obey or that turns the
/// text around. They are escaped as "\n", "\t" or "\u{202E}". A longer text is cut in the middle,
/// and the log says how much is missing. Does nothing to its own result.
QString loggedText(const QString &text, qsizetype maximumLength = 2000);

} // namespace tarnwell::foundation
