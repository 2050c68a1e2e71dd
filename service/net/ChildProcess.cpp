#include <utility>

#include <boost/asio/io_context.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>

#include "ChildProcess.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvane::service {

namespace asio = boost::asio;

struct ChildProcess::Watch : std::enable_shared_from_this<ChildProcess::Watch> {
    Watch(asio::io_context &context, pid_t process, int descriptor, Ended callback)
        : pid(process), handle(context, descriptor), ended(std::move(callback)) {}

    void waitForEnd();

    pid_t pid; ///< 0 after waiting for it: another process may then have the number
    asio::posix::stream_descriptor handle;
    Ended ended;
};

namespace {

/// The attributes of a spawn, freed at the end of the scope.
class SpawnSettings {
public:
    SpawnSettings(int input, int output) {
        posix_spawn_file_actions_init(&m_actions);
        if (input >= 0) {
            posix_spawn_file_actions_adddup2(&m_actions, input, STDIN_FILENO);
        } else {
            posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", 0, 0);
        }
        posix_spawn_file_actions_adddup2(&m_actions, output, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&m_actions, output, STDERR_FILENO);
        // An inherited listener would outlive a killed service and keep its port in use.
        posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1);
        posix_spawnattr_init(&m_attributes);
        sigset_t blocked;
        sigemptyset(&blocked);
        sigset_t reset;
        sigemptyset(&reset);
        sigaddset(&reset, SIGPIPE);
        posix_spawnattr_setsigmask(&m_attributes, &blocked);
        posix_spawnattr_setsigdefault(&m_attributes, &reset);
        posix_spawnattr_setpgroup(&m_attributes, 0);
        posix_spawnattr_setflags(&m_attributes,
                                 POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }

    ~SpawnSettings() {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }

    SpawnSettings(const SpawnSettings &) = delete;
    SpawnSettings &operator=(const SpawnSettings &) = delete;

    int spawn(const std::vector<std::string> &arguments, pid_t &pid) {
        std::vector<std::string> copies = arguments;
        std::vector<char *> argv;
        argv.reserve(copies.size() + 1);
        for (std::string &copy : copies) {
            argv.push_back(copy.data());
        }
        argv.push_back(nullptr);
        std::string path = "PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin";
        std::string locale = "LC_ALL=C";
        char *environment[] = {path.data(), locale.data(), nullptr};
        return posix_spawnp(&pid, argv[0], &m_actions, &m_attributes, argv.data(), environment);
    }

private:
    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

/// The status of a process that has ended, -1 when it cannot be read; nothing while the process runs.
std::optional<int> exitStatusOf(pid_t pid, int options) {
    int status = 0;
    const pid_t found = waitpid(pid, &status, options);
    if (found == 0) {
        return std::nullopt;
    }
    if (found != pid) {
        return -1;
    }
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace

void ChildProcess::Watch::waitForEnd() {
    handle.async_wait(asio::posix::stream_descriptor::wait_read,
                      [self = shared_from_this()](const boost::system::error_code &failed) {
                          if (failed) {
                              return;
                          }
                          // A new descriptor can have the number of one that was just closed and receive a
                          // pending event of that one: this event does not prove that the process has ended.
                          const auto status = exitStatusOf(self->pid, WNOHANG);
                          if (!status) {
                              self->waitForEnd();
                              return;
                          }
                          self->pid = 0;
                          self->handle.close();
                          self->ended(*status);
                      });
}

Result<std::unique_ptr<ChildProcess>> ChildProcess::start(asio::io_context &context,
                                                          const std::vector<std::string> &arguments,
                                                          int input, int output, Ended ended) {
    pid_t pid = 0;
    const int error = SpawnSettings(input, output).spawn(arguments, pid);
    if (error != 0) {
        return Failure{"cannot start " + arguments.front() + ": " + std::strerror(error)};
    }
    const int descriptor = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
    if (descriptor < 0) {
        const int reason = errno;
        kill(-pid, SIGKILL);
        exitStatusOf(pid, 0);
        return Failure{"cannot watch " + arguments.front() + ": " + std::strerror(reason)};
    }
    auto watch = std::make_shared<Watch>(context, pid, descriptor, std::move(ended));
    watch->waitForEnd();
    return std::unique_ptr<ChildProcess>(new ChildProcess(std::move(watch)));
}

ChildProcess::ChildProcess(std::shared_ptr<Watch> watch) : m_watch(std::move(watch)) {}

ChildProcess::~ChildProcess() = default;

void ChildProcess::signal(int number) {
    if (m_watch->pid > 0) {
        kill(-m_watch->pid, number);
    }
}

} // namespace quorvane::service
