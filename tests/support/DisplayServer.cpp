#include "DisplayServer.h"

#include <QApplication>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

int skipped(const QString &reason)
{
    // What CTest is told to take for neither passed nor failed.
    constexpr int code = 77;
    qWarning("Skipped: %s", qPrintable(reason));
    return code;
}

} // namespace

int runTestsOn(const DisplayServer &server, int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    QProcess process;
    for (const QString &program : server.programs) {
        if (QStandardPaths::findExecutable(program).isEmpty())
            return skipped(program + " is not installed"_L1);
    }
    process.start(server.command.first(), server.command.mid(1));
    while (!process.canReadLine()) {
        if (!process.waitForReadyRead(-1))
            return skipped(server.programs.first() + " does not start: "_L1 +
                           QString::fromLocal8Bit(process.readAllStandardError()));
    }
    const QList<QByteArray> words = process.readLine().simplified().split(' ');
    for (qsizetype i = 0; i < server.variables.size(); ++i)
        qputenv(server.variables.at(i), (i == 0 ? server.prefix : QByteArray()) + words.value(i));
    qputenv("QT_QPA_PLATFORM", server.platform);
    int result = 0;
    {
        QApplication application(argc, argv);
        result = RUN_ALL_TESTS();
    }
    process.terminate();
    process.waitForFinished();
    return result;
}

} // namespace tarnwell::tests
