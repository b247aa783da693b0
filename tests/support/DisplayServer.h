#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

namespace tarnwell::tests {

/// A display server that a test program runs on, and how it is started.
struct DisplayServer
{
    QString program;             ///< what has to be installed
    QStringList command;         ///< starts it
    QByteArray platform;         ///< the toolkit's plug-in for it
    QList<QByteArray> variables; ///< set to the words of the first line that it prints
    QByteArray prefix;           ///< before the first of them
};

/// Runs the tests on a server of their own. Where it is not installed they run on the platform that
/// they were started with, and have to see for themselves that it will not do. Returns what main()
/// returns, which tells of a failure when the server doesn't start.
int runTestsOn(const DisplayServer &server, int argc, char **argv);

} // namespace tarnwell::tests
