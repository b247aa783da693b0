#include "compositions/tool/Supervision.h"

#include "compositions/preview/Messages.h"
#include "foundation/BoundedFile.h"
#include "foundation/ForeignText.h"

#include <QElapsedTimer>
#include <QList>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <new>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarnwell::compositions {

using namespace Qt::StringLiterals;

namespace {

double processorSeconds(pid_t process)
{
    clockid_t clock = 0;
    timespec time{};
    if (::clock_getcpuclockid(process, &clock) != 0 || ::clock_gettime(clock, &time) != 0) {
        return 0.0;
    }
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

/// Waits for the end of a process, which closes its end of the pipe. False when a frame of it took
/// too long: on a busy machine the processor's time counts, on one with many processors the wall's.
bool waitForEnd(pid_t process, int progress, double secondsOfAFrame)
{
    constexpr int pause = 50; // milliseconds
    double processorStart = processorSeconds(process);
    QElapsedTimer wall;
    wall.start();
    while (true) {
        pollfd waiting{.fd = progress, .events = POLLIN, .revents = 0};
        if (::poll(&waiting, 1, pause) > 0) {
            char marks[256];
            if (::read(progress, marks, sizeof marks) <= 0) {
                return true;
            }
            processorStart = processorSeconds(process);
            wall.restart();
        }
        const double wallSeconds = double(wall.elapsed()) / 1e3;
        const double worked = processorSeconds(process) - processorStart;
        if (wallSeconds > 2.0 * secondsOfAFrame ||
            (wallSeconds > secondsOfAFrame && worked > secondsOfAFrame)) {
            return false;
        }
    }
}

/// What became of a process, to be said of its composition; nothing when it ended well.
QString fate(int status, bool isInTime, const Allowance &allowance)
{
    if (!isInTime) {
        return u"was ended because one frame took more than %1 s"_s.arg(allowance.secondsOfAFrame);
    }
    if (WIFSIGNALED(status)) {
        return u"brought the player down: %1"_s.arg(
            QString::fromLocal8Bit(::strsignal(WTERMSIG(status))));
    }
    if (WEXITSTATUS(status) == preview::exitOutOfMemory) {
        return u"was ended because it wanted more than %1 MiB of memory"_s.arg(allowance.bytes /
                                                                               (1024 * 1024));
    }
    return {};
}

int watch(pid_t process, int progress, const QString &composition, const Allowance &allowance,
          int died)
{
    const bool isInTime = waitForEnd(process, progress, allowance.secondsOfAFrame);
    if (!isInTime) {
        ::kill(process, SIGKILL);
    }
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    const QString what = fate(status, isInTime, allowance);
    if (what.isEmpty()) {
        return WEXITSTATUS(status);
    }
    std::fprintf(stderr, "tarnwell-composition: %s %s\n",
                 qPrintable(foundation::loggedText(composition)), qPrintable(what));
    return died;
}

[[noreturn]] void endForWantOfMemory()
{
    ::_exit(preview::exitOutOfMemory);
}

[[noreturn]] void terminate()
{
    try {
        if (const std::exception_ptr thrown = std::current_exception()) {
            std::rethrow_exception(thrown);
        }
    } catch (const std::bad_alloc &) {
        endForWantOfMemory();
    } catch (...) {
    }
    std::abort();
}

} // namespace

void Progress::frameIsDone() const
{
    const char mark = 0;
    while (::write(m_descriptor, &mark, 1) < 0 && errno == EINTR) {
    }
}

int runSupervised(const QString &composition, const Allowance &allowance, int died,
                  const std::function<int(const Progress &)> &work)
{
    int ends[2] = {-1, -1};
    const pid_t watcher = ::getpid();
    const pid_t process = ::pipe2(ends, O_CLOEXEC) == 0 ? ::fork() : -1;
    if (process < 0) {
        std::perror("tarnwell-composition");
        return died;
    }
    if (process > 0) {
        ::close(ends[1]);
        return watch(process, ends[0], composition, allowance, died);
    }
    ::close(ends[0]);
    // Whoever ends the player ends the work.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != watcher) {
        ::_exit(died);
    }
    const rlimit none{.rlim_cur = 0, .rlim_max = 0};
    ::setrlimit(RLIMIT_CORE, &none);
    std::exit(work(Progress(ends[1])));
}

void limitMemory(qint64 bytes)
{
    std::set_new_handler(endForWantOfMemory);
    std::set_terminate(terminate);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    constexpr qsizetype dataField = 5;
    constexpr qint64 longest = 4096;
    const auto pages = foundation::readBoundedFile(u"/proc/self/statm"_s, longest);
    const rlim_t data = pages ? pages->split(' ').value(dataField).toULongLong() : 0;
    if (data == 0) {
        return;
    }
    const rlim_t most = data * rlim_t(::sysconf(_SC_PAGESIZE)) + rlim_t(bytes);
    const rlimit limit{.rlim_cur = most, .rlim_max = most};
    ::setrlimit(RLIMIT_DATA, &limit);
#else
    Q_UNUSED(bytes)
#endif
}

} // namespace tarnwell::compositions
