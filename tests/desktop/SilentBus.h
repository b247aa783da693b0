#pragma once

#include <QFile>
#include <QTemporaryDir>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tarnwell::tests {

/// A bus that lets its callers queue and never looks at them, as a stopped one does.
class SilentBus
{
public:
    SilentBus()
    {
        sockaddr_un name{AF_UNIX, {}};
        qstrncpy(name.sun_path, QFile::encodeName(path()).constData(), sizeof name.sun_path);
        m_listens = ::bind(m_socket, reinterpret_cast<sockaddr *>(&name), sizeof name) == 0 &&
                    ::listen(m_socket, 8) == 0;
    }
    ~SilentBus() { ::close(m_socket); }
    Q_DISABLE_COPY_MOVE(SilentBus)

    bool listens() const { return m_listens; }
    QString address() const { return QStringLiteral("unix:path=") + path(); }

private:
    QString path() const { return m_folder.filePath(QStringLiteral("bus")); }

    QTemporaryDir m_folder;
    int m_socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    bool m_listens = false;
};

} // namespace tarnwell::tests
