#include "DisplayServer.h"

#include <QApplication>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

namespace tarnwell::tests {

int runTestsOn(const DisplayServer &server, int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    QProcess process;
    if (!QStandardPaths::findExecutable(server.program).isEmpty()) {
        process.start(server.command.first(), server.command.mid(1));
        while (!process.canReadLine()) {
            if (process.waitForReadyRead(-1))
                continue;
            qCritical("%s did not start: %s", qPrintable(server.program),
                      process.readAllStandardError().constData());
            return 1;
        }
        const QList<QByteArray> words = process.readLine().simplified().split(' ');
        for (qsizetype i = 0; i < server.variables.size(); ++i)
            qputenv(server.variables.at(i),
                    (i == 0 ? server.prefix : QByteArray()) + words.value(i));
        qputenv("QT_QPA_PLATFORM", server.platform);
    }
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
