#pragma once

#include <QString>
#include <QStringList>

namespace tarnwell::host {

enum class ColorScheme { AsDesktop, Light, Dark };

/// What the command line asks for. Paths are as typed; empty where nothing was given.
struct Options
{
    QString home;
    QString root;
    QString pane;
    QString shots;
    QString platform; ///< of the toolkit, or several with semicolons between them
    ColorScheme colorScheme = ColorScheme::AsDesktop;
    bool demo = false;
    bool help = false;
    bool version = false;

    /// Arguments with one dash, and their values: they may be the toolkit's, which knows.
    QStringList toolkit;

    /// What is wrong with the command line; empty when nothing is.
    QString error;
};

/// Reads the arguments after the program's name. A value may follow its option or an equals sign.
/// Needs no application object.
Options parseOptions(const QStringList &arguments);

/// The arguments after the program's name, as the system hands them over.
QStringList commandLine(int argc, char **argv);

QString helpText();

} // namespace tarnwell::host
