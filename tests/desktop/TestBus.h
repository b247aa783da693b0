#pragma once

#include "desktop/ChildProcess.h"

#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>
#include <memory>

namespace tarnwell::tests {

/// A message bus of the test's own. It can die and come back at the same address.
class TestBus
{
public:
    TestBus() { start(); }

    QString address() const
    {
        return QStringLiteral("unix:path=") + m_folder.filePath(QStringLiteral("bus"));
    }
    bool isRunning() const { return m_daemon != nullptr; }

    void start()
    {
        QFile configuration(m_folder.filePath(QStringLiteral("bus.conf")));
        if (!configuration.open(QIODevice::WriteOnly))
            return;
        configuration.write("<busconfig><type>session</type><listen>" + address().toUtf8() +
                            "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
                            "<allow send_destination=\"*\" eavesdrop=\"true\"/>"
                            "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
        configuration.close();
        auto daemon = std::make_unique<ChildProcess>(
            QList<QByteArray>{"dbus-daemon", "--nofork", "--print-address",
                              "--config-file=" + QFile::encodeName(configuration.fileName())});
        // The address is printed once the bus listens.
        if (daemon->isStarted() && !daemon->readLine().isEmpty())
            m_daemon = std::move(daemon);
    }
    void die() { m_daemon.reset(); }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<ChildProcess> m_daemon;
};

/// Runs the event loop until something is so. False when it did not become so in a minute, which
/// only a failing test waits for.
inline bool waitUntil(const std::function<bool()> &condition)
{
    bool tooLong = false;
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, [&] { tooLong = true; });
    limit.start(60000);
    QEventLoop loop;
    while (!condition() && !tooLong)
        loop.processEvents(QEventLoop::WaitForMoreEvents);
    return !tooLong;
}

} // namespace tarnwell::tests
