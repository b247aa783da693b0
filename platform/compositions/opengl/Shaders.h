#pragma once

#include <QByteArray>
#include <QString>

namespace tarnwell::compositions {

/// A program for the context that is current, without the line that tells the version; 0, with the
/// reason if wanted, when it cannot be built.
unsigned buildProgram(const QByteArray &vertexShader, const QByteArray &fragmentShader,
                      QString *error);
/// The one program that draws everything but computed images.
unsigned buildProgram(QString *error);

} // namespace tarnwell::compositions
