// Starts a program and tells when its window was mapped, when something was painted in it, and when
// its picture last changed before it rested; then ends it and tells its peak memory.
//
//   window_ready [--rest MS] [--timeout S] -- COMMAND [ARGUMENT...]
//
// Prints "mapped S painted S settled S rss MIB colours N" on one line. The times are seconds since
// just before the program was started. It looks at the picture through the X server and knows
// nothing of the program, so it measures any of them alike.

#include <xcb/xcb.h>

#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int smallestSide = 100;   // smaller windows are helpers of the toolkit
constexpr int rowStep = 11;         // every eleventh row of pixels tells enough of the picture
constexpr int pollMilliseconds = 3; // what looking costs must not slow down what is looked at

template <typename T>
struct FreeDeleter
{
    void operator()(T *pointer) const { std::free(pointer); }
};
template <typename T>
using Reply = std::unique_ptr<T, FreeDeleter<T>>;

struct Options
{
    int restMilliseconds = 400;
    int timeoutSeconds = 60;
    char **command = nullptr;
};

struct Window
{
    xcb_window_t id = XCB_NONE;
    uint16_t width = 0;
    uint16_t height = 0;
};

/// The largest top-level window that is mapped.
class TopLevels
{
public:
    explicit TopLevels(xcb_connection_t *connection)
        : m_connection(connection)
        , m_root(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root)
    {
        const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(connection, m_root, XCB_CW_EVENT_MASK, &mask);
        xcb_flush(connection);
    }

    void takeEvents()
    {
        while (Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
            switch (event->response_type & 0x7F) {
            case XCB_MAP_NOTIFY:
                mapped(*reinterpret_cast<xcb_map_notify_event_t *>(event.get()));
                break;
            case XCB_CONFIGURE_NOTIFY:
                configured(*reinterpret_cast<xcb_configure_notify_event_t *>(event.get()));
                break;
            default:
                break;
            }
        }
    }

    const Window &largest() const { return m_largest; }

private:
    void mapped(const xcb_map_notify_event_t &event)
    {
        if (event.event != m_root || event.override_redirect)
            return;
        const auto cookie = xcb_get_geometry(m_connection, event.window);
        const Reply<xcb_get_geometry_reply_t> geometry{
            xcb_get_geometry_reply(m_connection, cookie, nullptr)};
        if (geometry)
            consider({event.window, geometry->width, geometry->height});
    }

    void configured(const xcb_configure_notify_event_t &event)
    {
        if (event.window == m_largest.id)
            m_largest = {event.window, event.width, event.height};
    }

    void consider(const Window &window)
    {
        if (window.width >= smallestSide && window.height >= smallestSide &&
            window.width * window.height > m_largest.width * m_largest.height)
            m_largest = window;
    }

    xcb_connection_t *m_connection;
    xcb_window_t m_root;
    Window m_largest;
};

/// Some rows of a window's pixels; empty while the server cannot give them.
std::vector<uint32_t> picture(xcb_connection_t *connection, const Window &window)
{
    std::vector<xcb_get_image_cookie_t> cookies;
    for (int y = rowStep / 2; y < window.height; y += rowStep) {
        cookies.push_back(xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window.id, 0,
                                        int16_t(y), window.width, 1, 0x00FFFFFF));
    }
    std::vector<uint32_t> pixels;
    bool complete = true;
    for (const auto &cookie : cookies) {
        xcb_generic_error_t *failure = nullptr;
        const Reply<xcb_get_image_reply_t> row{xcb_get_image_reply(connection, cookie, &failure)};
        std::free(failure);
        if (!row) {
            complete = false;
            continue;
        }
        const auto *data = reinterpret_cast<const uint32_t *>(xcb_get_image_data(row.get()));
        pixels.insert(pixels.end(), data, data + window.width);
    }
    if (!complete)
        pixels.clear();
    return pixels;
}

size_t colours(const std::vector<uint32_t> &pixels)
{
    return std::unordered_set<uint32_t>(pixels.begin(), pixels.end()).size();
}

[[noreturn]] void fail(const std::string &message)
{
    std::fprintf(stderr, "window_ready: %s\n", message.c_str());
    std::exit(1);
}

Options parse(int argc, char **argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--rest" && i + 1 < argc)
            options.restMilliseconds = std::atoi(argv[++i]);
        else if (argument == "--timeout" && i + 1 < argc)
            options.timeoutSeconds = std::atoi(argv[++i]);
        else if (argument == "--" && i + 1 < argc) {
            options.command = argv + i + 1;
            return options;
        } else
            break;
    }
    fail("usage: window_ready [--rest MS] [--timeout S] -- COMMAND [ARGUMENT...]");
}

pid_t start(char **command)
{
    const pid_t child = fork();
    if (child < 0)
        fail("cannot fork");
    if (child == 0) {
        execvp(command[0], command);
        std::perror(command[0]);
        _exit(127);
    }
    return child;
}

struct Times
{
    std::optional<double> mapped, painted, settled;
    size_t colours = 0;
};

/// Watches until the picture rested, the program ended or the time is up.
Times watch(xcb_connection_t *connection, TopLevels &windows, pid_t child, Clock::time_point begin,
            const Options &options)
{
    const auto since = [&](Clock::time_point then) {
        return std::chrono::duration<double>(then - begin).count();
    };
    Times times;
    std::vector<uint32_t> last;
    auto lastChange = begin;
    pollfd server{xcb_get_file_descriptor(connection), POLLIN, 0};
    for (;;) {
        const auto now = Clock::now();
        if (since(now) > options.timeoutSeconds || xcb_connection_has_error(connection))
            return times;
        siginfo_t ended{}; // left to the caller to reap
        if (waitid(P_PID, id_t(child), &ended, WEXITED | WNOHANG | WNOWAIT) != 0 || ended.si_pid)
            return times;
        windows.takeEvents();
        if (windows.largest().id == XCB_NONE) {
            ::poll(&server, 1, 50);
            continue;
        }
        if (!times.mapped)
            times.mapped = since(now);
        const std::vector<uint32_t> current = picture(connection, windows.largest());
        const auto seen = Clock::now();
        if (!current.empty() && current != last) {
            last = current;
            lastChange = seen;
            times.colours = colours(current);
            if (!times.painted && times.colours > 1)
                times.painted = since(seen);
        }
        if (times.painted &&
            seen - lastChange > std::chrono::milliseconds(options.restMilliseconds)) {
            times.settled = since(lastChange);
            return times;
        }
        ::poll(nullptr, 0, pollMilliseconds);
    }
}

} // namespace

int main(int argc, char **argv)
{
    const Options options = parse(argc, argv);
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection))
        fail("no X server");
    TopLevels windows(connection);

    const auto begin = Clock::now();
    const pid_t child = start(options.command);
    const Times times = watch(connection, windows, child, begin, options);

    kill(child, SIGTERM);
    rusage usage{};
    int status = 0;
    wait4(child, &status, 0, &usage);
    xcb_disconnect(connection);
    if (!times.settled)
        fail(!times.mapped ? "no window appeared" : "the window never came to rest, filled");
    std::printf("mapped %.4f painted %.4f settled %.4f rss %.1f colours %zu\n", *times.mapped,
                *times.painted, *times.settled, double(usage.ru_maxrss) / 1024, times.colours);
    return 0;
}
