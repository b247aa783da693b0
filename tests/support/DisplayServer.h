#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

namespace tarnwell::tests {

/// A display server that a test program runs on, and how it is started.
struct DisplayServer
{
    QStringList programs;        ///< what has to be installed
    QStringList command;         ///< starts it
    QByteArray platform;         ///< the toolkit's plug-in for it
    QList<QByteArray> variables; ///< set to the words of the first line that it prints
    QByteArray prefix;           ///< before the first of them
};

/// Runs the tests on a server of their own, and returns what main() returns. Where it can't be
/// started they are skipped, and the reason is printed.
int runTestsOn(const DisplayServer &server, int argc, char **argv);

} // namespace tarnwell::tests
