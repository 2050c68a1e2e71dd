// first_window PROGRAM [ARGUMENT...]: starts the program and prints "<milliseconds> <KiB> <title>": the time
// from just before exec until the window manager has put its first window on the screen, the most memory that
// it has used within three seconds after that exec, and the window's title. Then asks the program to end.
//
// Nothing is polled: the X server reports each window that is shown and each change of the window manager's
// list, and the list is read after each report.
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds timeLimit(30);
constexpr std::chrono::seconds memoryReadAfter(3);

template <typename T>
struct Freed {
    void operator()(T *memory) const { std::free(memory); }
};

template <typename T>
using Reply = std::unique_ptr<T, Freed<T>>;

[[noreturn]] void fail(const char *what) {
    std::fprintf(stderr, "first_window: %s\n", what);
    std::exit(1);
}

/// The part of the screen's state that this program needs.
class Screen {
public:
    Screen() : m_connection(xcb_connect(nullptr, nullptr)) {
        if (xcb_connection_has_error(m_connection) != 0) {
            fail("no X server");
        }
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
        m_listOfWindows = atom("_NET_CLIENT_LIST");
        m_ownerOfWindow = atom("_NET_WM_PID");
        m_titleOfWindow = atom("_NET_WM_NAME");
        const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_connection, m_root, XCB_CW_EVENT_MASK, &events);
        xcb_flush(m_connection);
    }

    ~Screen() { xcb_disconnect(m_connection); }

    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;

    /// Waits until the X server reports a change.
    void waitForChange(Clock::time_point end) {
        pollfd waiting{xcb_get_file_descriptor(m_connection), POLLIN, 0};
        for (;;) {
            bool changed = false;
            while (const auto event = Reply<xcb_generic_event_t>(xcb_poll_for_event(m_connection))) {
                changed = true;
            }
            if (changed) {
                return;
            }
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
            if (left.count() <= 0 || poll(&waiting, 1, static_cast<int>(left.count())) < 0) {
                fail("no window came");
            }
        }
    }

    /// The first visible managed window of the process; 0 when there is none.
    [[nodiscard]] xcb_window_t visibleWindowOf(pid_t process) {
        for (const std::uint32_t window : numbers(m_root, m_listOfWindows, XCB_ATOM_WINDOW)) {
            const auto owner = numbers(window, m_ownerOfWindow, XCB_ATOM_CARDINAL);
            if (owner.size() != 1 || owner.front() != static_cast<std::uint32_t>(process)) {
                continue;
            }
            const Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
                m_connection, xcb_get_window_attributes(m_connection, window), nullptr));
            if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE) {
                return window;
            }
        }
        return 0;
    }

    [[nodiscard]] std::string title(xcb_window_t window) {
        const auto reply = property(window, m_titleOfWindow, XCB_ATOM_ANY);
        return reply ? std::string(static_cast<const char *>(xcb_get_property_value(reply.get())),
                                   static_cast<std::size_t>(xcb_get_property_value_length(reply.get())))
                     : std::string();
    }

private:
    [[nodiscard]] xcb_atom_t atom(const char *name) {
        const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
            m_connection,
            xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name), nullptr));
        if (!reply) {
            fail("no answer of the X server");
        }
        return reply->atom;
    }

    [[nodiscard]] Reply<xcb_get_property_reply_t> property(xcb_window_t window, xcb_atom_t name,
                                                           xcb_atom_t type) {
        return Reply<xcb_get_property_reply_t>(xcb_get_property_reply(
            m_connection, xcb_get_property(m_connection, 0, window, name, type, 0, 1024), nullptr));
    }

    [[nodiscard]] std::vector<std::uint32_t> numbers(xcb_window_t window, xcb_atom_t name, xcb_atom_t type) {
        const auto reply = property(window, name, type);
        if (!reply || reply->format != 32) {
            return {};
        }
        std::vector<std::uint32_t> values(
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get())) / 4);
        std::memcpy(values.data(), xcb_get_property_value(reply.get()), values.size() * 4);
        return values;
    }

    xcb_connection_t *m_connection;
    xcb_window_t m_root = 0;
    xcb_atom_t m_listOfWindows = 0;
    xcb_atom_t m_ownerOfWindow = 0;
    xcb_atom_t m_titleOfWindow = 0;
};

/// Starts the measured program without input; its output goes to standard error.
pid_t start(char *arguments[]) {
    posix_spawn_file_actions_t streams;
    posix_spawn_file_actions_init(&streams);
    posix_spawn_file_actions_addopen(&streams, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&streams, STDERR_FILENO, STDOUT_FILENO);
    pid_t process = 0;
    if (posix_spawn(&process, arguments[0], &streams, nullptr, arguments, environ) != 0) {
        fail("the program cannot be started");
    }
    posix_spawn_file_actions_destroy(&streams);
    return process;
}

/// The largest resident memory of the process so far, in KiB.
long peakMemory(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.compare(0, 6, "VmHWM:") == 0) {
            return std::strtol(line.c_str() + 6, nullptr, 10);
        }
    }
    fail("the program is gone");
}

} // namespace

int main(int argc, char *argv[]) {
    if (argc < 2) {
        fail("which program?");
    }
    Screen screen;
    const auto begun = Clock::now();
    const pid_t process = start(argv + 1);
    xcb_window_t window = 0;
    while ((window = screen.visibleWindowOf(process)) == 0) {
        screen.waitForChange(begun + timeLimit);
    }
    const std::chrono::duration<double, std::milli> shown = Clock::now() - begun;
    const std::string title = screen.title(window);
    std::this_thread::sleep_until(begun + memoryReadAfter);
    std::printf("%.1f %ld %s\n", shown.count(), peakMemory(process), title.c_str());
    kill(process, SIGTERM);
    waitpid(process, nullptr, 0);
    return 0;
}
