#include "host/EndSignals.h"

#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>

namespace tarnwell::host {

namespace {

constexpr int endSignals[] = {SIGTERM, SIGINT, SIGHUP};

/// Where the handler writes to: a signal handler sees nothing but what is static.
std::atomic<int> writeEnd = -1;

extern "C" void passOn(int signal)
{
    const int error = errno;
    const auto number = static_cast<unsigned char>(signal);
    [[maybe_unused]] const ssize_t written = ::write(writeEnd, &number, 1);
    errno = error;
}

} // namespace

EndSignals::EndSignals(QObject *parent)
    : QObject(parent)
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    writeEnd = ends[1];
    m_notifier = new QSocketNotifier(ends[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this,
            [this, descriptor = ends[0]] { readSignal(descriptor); });
    struct sigaction action = {};
    action.sa_handler = passOn;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (const int signal : endSignals) {
        struct sigaction before = {};
        if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
            ::sigaction(signal, &action, nullptr);
    }
}

EndSignals::~EndSignals()
{
    if (!m_notifier)
        return;
    for (const int signal : endSignals) {
        struct sigaction present = {};
        if (::sigaction(signal, nullptr, &present) == 0 && present.sa_handler == passOn)
            ::signal(signal, SIG_DFL);
    }
    ::close(writeEnd.exchange(-1));
    ::close(static_cast<int>(m_notifier->socket()));
}

void EndSignals::readSignal(int descriptor)
{
    unsigned char number = 0;
    if (::read(descriptor, &number, 1) == 1)
        Q_EMIT received(number);
}

} // namespace tarnwell::host
