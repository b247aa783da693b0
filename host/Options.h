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
    ColorScheme colorScheme = ColorScheme::AsDesktop;
    bool demo = false;
    bool help = false;
    bool version = false;

    /// What is wrong with the command line; empty when nothing is.
    QString error;
};

/// Reads the arguments after the program's name. A value may follow its option or an equals sign.
Options parseOptions(const QStringList &arguments);

QString helpText();

} // namespace tarnwell::host
