#pragma once

#include <QByteArray>
#include <QString>

namespace tarnwell::compositions {

/// A program for the context that is current, without the line that tells the version; 0, with the
/// reason if wanted, when it cannot be built.
unsigned buildProgram(const QByteArray &vertexShader, const QByteArray &fragmentShader,
                      QString *error);
/// The programs that draw everything but computed images: what shows its colour as it is, and what
/// lights shine on.
unsigned buildPlainProgram(QString *error);
unsigned buildLitProgram(QString *error);
/// Lights that shine on one thing; the others of a composition are dark.
inline constexpr int mostLights = 8;

} // namespace tarnwell::compositions
