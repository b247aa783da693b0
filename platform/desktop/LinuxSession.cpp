#include "desktop/LinuxSession.h"

#include "desktop/SessionBus.h"
#include "foundation/BoundedFile.h"
#include "ports/Clock.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>

#include <cerrno>
#include <cstring>
#include <pwd.h>
#include <unistd.h>
#include <utmpx.h>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 maximumRecordFile = 4LL * 1024 * 1024;
constexpr qint64 maximumKernelFile = 16LL * 1024 * 1024;
constexpr double microseconds = 1e-6;

QByteArray ownUserName()
{
    passwd entry{};
    passwd *found = nullptr;
    QByteArray buffer(16384, '\0');
    ::getpwuid_r(::getuid(), &entry, buffer.data(), size_t(buffer.size()), &found);
    return found ? QByteArray(found->pw_name) : QByteArray();
}

/// The content of one of the kernel's files; empty, with an errno, on failure.
QByteArray kernelFile(const QString &path, int *error)
{
    foundation::FileReadError reason;
    const auto bytes = foundation::readBoundedFile(path, maximumKernelFile, &reason);
    *error = bytes ? 0 : reason.systemCode != 0 ? reason.systemCode : EIO;
    return bytes.value_or(QByteArray());
}

} // namespace

LinuxSession::LinuxSession(const QString &rootPath, const QString &busAddress, int patience)
    : m_rootPath(rootPath)
    , m_busAddress(busAddress)
    , m_patience(patience)
{}

std::optional<double> LinuxSession::loginTime() const
{
    const auto fromService = loginTimeOfService();
    return fromService ? fromService : loginTimeOfRecords();
}

std::optional<double> LinuxSession::loginTimeOfService() const
{
    // The question is asked once in a process's life, so the connection is given back at once.
    const QString name = u"tarnwell-session"_s;
    const QString address = m_busAddress.isEmpty() ? systemBusAddress() : m_busAddress;
    // The toolkit would wait for ever.
    if (isSilentBus(address, m_patience))
        return std::nullopt;
    QDBusConnection bus = QDBusConnection::connectToBus(address, name);
    std::optional<double> result;
    if (bus.isConnected()) {
        // "auto" is the session of whoever asks, or else the one that the user looks at.
        QDBusMessage question = QDBusMessage::createMethodCall(
            u"org.freedesktop.login1"_s, u"/org/freedesktop/login1/session/auto"_s,
            u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
        question << u"org.freedesktop.login1.Session"_s << u"Timestamp"_s;
        const QDBusReply<QDBusVariant> reply = bus.call(question, QDBus::Block, m_patience);
        bool isNumber = false;
        const qulonglong since1970 =
            reply.isValid() ? reply.value().variant().toULongLong(&isNumber) : 0;
        if (isNumber && since1970 > 0) {
            result = double(since1970) * microseconds - ports::Clock::absoluteTimeIntervalSince1970;
        }
    }
    bus = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name);
    return result;
}

std::optional<double> LinuxSession::loginTimeOfRecords() const
{
    const QByteArray user = ownUserName();
    if (user.isEmpty())
        return std::nullopt;
    const QByteArray bytes =
        foundation::readBoundedFile(m_rootPath + "/run/utmp"_L1, maximumRecordFile)
            .value_or(QByteArray());
    std::optional<double> latest;
    for (qsizetype at = 0; at + qsizetype(sizeof(utmpx)) <= bytes.size(); at += sizeof(utmpx)) {
        utmpx record{};
        std::memcpy(&record, bytes.constData() + at, sizeof record);
        if (record.ut_type != USER_PROCESS ||
            qstrncmp(record.ut_user, user.constData(), sizeof record.ut_user) != 0)
            continue;
        const double time = double(record.ut_tv.tv_sec) +
                            double(record.ut_tv.tv_usec) * microseconds -
                            ports::Clock::absoluteTimeIntervalSince1970;
        if (!latest || time > *latest)
            latest = time;
    }
    return latest;
}

qint64 LinuxSession::processId() const
{
    return ::getpid();
}

std::optional<double> LinuxSession::processStartTime(int *error) const
{
    const QByteArray own = kernelFile(u"/proc/self/stat"_s, error);
    if (*error != 0)
        return std::nullopt;
    const QByteArray system = kernelFile(u"/proc/stat"_s, error);
    if (*error != 0)
        return std::nullopt;

    // The program's name stands in parentheses and may hold anything, parentheses included.
    const QList<QByteArray> fields = own.sliced(own.lastIndexOf(')') + 1).simplified().split(' ');
    constexpr qsizetype startTimeField = 19; // counted from the one after the name
    const qsizetype bootTime = system.indexOf("\nbtime ");
    const long ticks = ::sysconf(_SC_CLK_TCK);
    if (fields.size() <= startTimeField || bootTime < 0 || ticks <= 0)
        return std::nullopt;
    const QByteArray line = system.sliced(bootTime + 7);
    const QByteArray bootSeconds = line.first(line.indexOf('\n'));
    return bootSeconds.toDouble() + fields.at(startTimeField).toDouble() / double(ticks);
}

} // namespace tarnwell::desktop
