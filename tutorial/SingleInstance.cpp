#include "tutorial/SingleInstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalSocket>
#include <QLockFile>

#include <utility>

namespace tarnwell::tutorial {

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 3000;        // milliseconds
constexpr qint64 longestToken = 4096; // bytes, with the end of the line
constexpr auto answer = "ok\n";

} // namespace

QString instanceSocket(const QString &home, const QString &root)
{
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!QDir::isAbsolutePath(folder) || !QDir(folder).exists())
        return {};
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QByteArray &part :
         {home.toUtf8(), root.toUtf8(), qgetenv("WAYLAND_DISPLAY"), qgetenv("DISPLAY")})
        hash.addData(part + '\0');
    const QByteArray name = hash.result().toHex().first(16);
    return folder + "/tarnwell-tutorial-"_L1 + QLatin1StringView(name);
}

SingleInstance::SingleInstance(QString socket, QObject *parent)
    : QObject(parent)
    , m_socket(std::move(socket))
{
    connect(&m_server, &QLocalServer::newConnection, this, &SingleInstance::receive);
}

bool SingleInstance::handOver(const QByteArray &activationToken)
{
    if (m_socket.isEmpty())
        return false;
    // Of two that start at the same moment one has to see the other's socket.
    QLockFile turn(m_socket + ".lock"_L1);
    if (!turn.tryLock(patience))
        return false;
    QLocalSocket first;
    first.connectToServer(m_socket);
    if (!first.waitForConnected(patience)) {
        QLocalServer::removeServer(m_socket); // of one that was killed
        m_server.listen(m_socket);
        return false;
    }
    turn.unlock();
    first.write(activationToken.first(qMin(activationToken.size(), longestToken - 1)) + '\n');
    return first.waitForBytesWritten(patience) && first.waitForReadyRead(patience);
}

void SingleInstance::receive()
{
    while (QLocalSocket *other = m_server.nextPendingConnection()) {
        connect(other, &QLocalSocket::disconnected, other, &QObject::deleteLater);
        const auto read = [this, other] {
            if (!other->canReadLine() && other->bytesAvailable() < longestToken)
                return;
            const QByteArray token = other->readLine(longestToken).trimmed();
            other->write(answer);
            other->disconnectFromServer();
            Q_EMIT startedAgain(token);
        };
        connect(other, &QLocalSocket::readyRead, this, read);
        read();
    }
}

} // namespace tarnwell::tutorial
