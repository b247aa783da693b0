#include "desktop/SessionBus.h"

#include "desktop/BusConnection.h"
#include "desktop/FileSystemIds.h"

#include <QFileInfo>
#include <QUrl>

#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

using namespace Qt::StringLiterals;

namespace tarnwell::desktop {

QString sessionBusAddress()
{
    const QString fromEnvironment = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!fromEnvironment.isEmpty())
        return fromEnvironment;
    // Not left to the library: where it finds nothing either it starts a bus of its own, on which
    // nobody else is.
    const OwnIds lookIntoTheOwnFolder;
    QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (folder.isEmpty())
        folder = u"/run/user/%1"_s.arg(::getuid());
    const QString socket = folder + u"/bus"_s;
    if (!QFileInfo::exists(socket))
        return {};
    return u"unix:path="_s + QString::fromLatin1(QUrl::toPercentEncoding(socket, "/", "~"));
}

QString systemBusAddress()
{
    const QString fromEnvironment = qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS");
    return fromEnvironment.isEmpty() ? u"unix:path=/run/dbus/system_bus_socket"_s : fromEnvironment;
}

bool isSilentBus(const QString &address, int milliseconds)
{
    struct Question
    {
        std::mutex mutex;
        std::condition_variable answered;
        bool isAnswered = false;
    };
    const auto question = std::make_shared<Question>();
    // Even connecting may wait for ever. Nobody waits for the thread: there is no way to end it.
    std::thread([question, address, milliseconds] {
        const OwnIds reachTheOwnBus;
        if (const auto connection = BusConnection::open(address)) {
            while (connection->isOpen() && !connection->isRegistered()) {
                std::vector<pollfd> awaited = connection->awaited();
                if (::poll(awaited.data(), awaited.size(), milliseconds) == 0)
                    return;
                connection->handle(awaited);
                connection->takeMessage();
            }
        }
        const std::scoped_lock lock(question->mutex);
        question->isAnswered = true;
        question->answered.notify_all();
    }).detach();
    std::unique_lock lock(question->mutex);
    return !question->answered.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                        [&] { return question->isAnswered; });
}

} // namespace tarnwell::desktop
