#include "foundation/StandardErrorLog.h"

#include "foundation/ForeignText.h"

#include <QLoggingCategory>

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace tarnwell::foundation {

using namespace Qt::StringLiterals;

namespace {

/// How long the end of the log waits for its reader, in milliseconds.
constexpr int lastPatience = 200;

/// False when nobody will ever read what follows.
bool writeAll(int descriptor, const QByteArray &bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t count =
            ::write(descriptor, bytes.constData() + done, size_t(bytes.size() - done));
        if (count > 0)
            done += count;
        else if (count < 0 && errno != EINTR && errno != EAGAIN)
            return errno == ENOSPC; // a full disk may have room for a later line
        else if (count < 0 && errno == EAGAIN)
            std::this_thread::sleep_for(std::chrono::milliseconds(20)); // somebody else's setting
    }
    return true;
}

} // namespace

void secureStandardStreams()
{
    std::signal(SIGPIPE, SIG_IGN);
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF)
            ::open("/dev/null", O_RDWR); // takes the lowest number, which is this one
    }
}

struct LineWriter::Shared
{
    const int descriptor;
    std::mutex mutex;
    std::condition_variable changed;
    QByteArray waiting;
    quint64 dropped = 0;
    bool isWriting = false;
    bool isStarted = false;
    bool isEnding = false;
};

LineWriter::LineWriter(int descriptor)
    : m_shared(new Shared{descriptor, {}, {}, {}})
{}

LineWriter::~LineWriter()
{
    const std::scoped_lock lock(m_shared->mutex);
    m_shared->isEnding = true;
    m_shared->changed.notify_all();
}

void LineWriter::write(const QString &line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    const std::scoped_lock lock(m_shared->mutex);
    if (m_shared->waiting.size() + bytes.size() > capacity) {
        ++m_shared->dropped;
        return;
    }
    m_shared->waiting += bytes;
    m_shared->changed.notify_all();
    if (m_shared->isStarted)
        return;
    try {
        std::thread(run, m_shared).detach(); // a stalled reader must not hold up the end either
        m_shared->isStarted = true;
    } catch (const std::system_error &) {
        // No thread is to be had now; the next line tries again.
    }
}

bool LineWriter::flush(int milliseconds)
{
    std::unique_lock lock(m_shared->mutex);
    return m_shared->changed.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] {
        return m_shared->waiting.isEmpty() && !m_shared->isWriting;
    });
}

void LineWriter::run(const std::shared_ptr<Shared> &shared)
{
    std::unique_lock lock(shared->mutex);
    bool isRead = true;
    while (true) {
        shared->changed.wait(lock, [&] { return !shared->waiting.isEmpty() || shared->isEnding; });
        if (shared->isEnding)
            return;
        QByteArray bytes = std::exchange(shared->waiting, {});
        if (const quint64 dropped = std::exchange(shared->dropped, 0)) {
            bytes += "Lines of the log that were dropped, because it was not read: " +
                     QByteArray::number(dropped) + '\n';
        }
        shared->isWriting = true;
        lock.unlock();
        isRead = isRead && writeAll(shared->descriptor, bytes);
        lock.lock();
        shared->isWriting = false;
        shared->changed.notify_all();
    }
}

namespace {

// The toolkit's hook is a plain function, called from every thread.
std::atomic<std::shared_ptr<LineWriter>> currentWriter;

void writeMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const std::shared_ptr<LineWriter> writer = currentWriter;
    if (!writer)
        return;
    writer->write(qFormatLogMessage(type, context, loggedText(text)));
    // The process ends when this returns.
    if (type == QtFatalMsg)
        writer->flush(lastPatience);
}

} // namespace

StandardErrorLog::StandardErrorLog()
{
    currentWriter = std::make_shared<LineWriter>(STDERR_FILENO);
    qInstallMessageHandler(writeMessage);
}

StandardErrorLog::~StandardErrorLog()
{
    const std::shared_ptr<LineWriter> writer = currentWriter.exchange(nullptr);
    // What is logged from here on would wait for a stalled reader, so it is dropped.
    if (writer->flush(lastPatience))
        qInstallMessageHandler(nullptr);
}

} // namespace tarnwell::foundation
