#pragma once

#include "host/Options.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace tarnwell::tutorial {

struct Options
{
    QString home; ///< empty for the user's own
    QString root;
    host::ColorScheme colorScheme = host::ColorScheme::AsDesktop;
    bool verbose = false;
    bool help = false;
    QString error; ///< what is wrong; empty when all is well
};

/// Reads the arguments, without the program's name. Where no folders are named there, the
/// environment's TARNWELL_HOME and TARNWELL_ROOT count, which whoever starts other programs from
/// moved folders leaves there. Anything that is no option is a document, and there are none.
Options parseOptions(const QStringList &arguments, const QProcessEnvironment &environment);

QString helpText();

} // namespace tarnwell::tutorial
