#pragma once

#include <QByteArray>
#include <QLocalServer>
#include <QObject>
#include <QString>

namespace tarnwell::tutorial {

/// Where the tutorial of some folders on this display can be told to come to the front: a socket
/// in the user's own run-time folder. Empty where there is no such folder.
QString instanceSocket(const QString &home, const QString &root);

/// Sees to it that the tutorial runs once: another start of it tells the first one, and ends.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    /// The socket is that of instanceSocket(); without one, every start is the first.
    explicit SingleInstance(QString socket, QObject *parent = nullptr);

    /// Whether another one runs already and has been told. It gets the token with which the
    /// desktop lets it take the focus, which may be empty. If none runs, this is the one from now
    /// on; one that does not answer within three seconds is left alone.
    bool handOver(const QByteArray &activationToken);

Q_SIGNALS:
    /// The user started the tutorial once more.
    void startedAgain(const QByteArray &activationToken);

private:
    void receive();

    QString m_socket;
    QLocalServer m_server;
};

} // namespace tarnwell::tutorial
