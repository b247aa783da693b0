#pragma once

#include <QString>

namespace tarnwell::host {

/// Why the toolkit could open no display, as a sentence for the user; empty when it can open one.
/// The platforms are those that -platform or QT_QPA_PLATFORM names, with semicolons between them;
/// none for the toolkit's own choice. Asked before there is an application object, whose making
/// would end the program instead.
QString displayProblem(const QString &platforms);

} // namespace tarnwell::host
