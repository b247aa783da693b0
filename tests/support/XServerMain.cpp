#include <QApplication>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

/// Runs the tests on an X server of their own. Without Xvfb they run on the platform that they were
/// started with, and have to see for themselves that it will not do.
int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    QProcess server;
    if (!QStandardPaths::findExecutable(QStringLiteral("Xvfb")).isEmpty()) {
        server.start(QStringLiteral("Xvfb"),
                     {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                      QStringLiteral("0"), QStringLiteral("1280x1024x24"),
                      QStringLiteral("-noreset"), QStringLiteral("-nolisten"),
                      QStringLiteral("tcp")});
    }
    if (server.waitForStarted() && server.waitForReadyRead()) {
        qputenv("DISPLAY", ':' + server.readLine().trimmed());
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    int result = 0;
    {
        QApplication application(argc, argv);
        result = RUN_ALL_TESTS();
    }
    server.terminate();
    server.waitForFinished();
    return result;
}
