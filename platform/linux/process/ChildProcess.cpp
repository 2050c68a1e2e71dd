#include "ChildProcess.h"

#include <QElapsedTimer>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <vector>

namespace quorvane::platform {

namespace {

constexpr int shortSilence = 200;

struct Pipe {
    FileDescriptor reading;
    FileDescriptor writing;
};

bool makePipe(Pipe &pipe) {
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        return false;
    }
    pipe.reading.reset(ends[0]);
    pipe.writing.reset(ends[1]);
    return true;
}

/// A descriptor that is readable after the process has ended. The C library's own header for it does not link
/// from C++ in all its versions.
int openProcess(pid_t pid) {
    return static_cast<int>(::syscall(SYS_pidfd_open, pid, 0U));
}

std::vector<char *> pointers(QByteArrayList &texts) {
    std::vector<char *> result;
    result.reserve(static_cast<std::size_t>(texts.size()) + 1);
    for (QByteArray &text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

/// The settings of one posix_spawn call.
class SpawnSettings {
public:
    SpawnSettings() {
        ::posix_spawn_file_actions_init(&m_actions);
        ::posix_spawnattr_init(&m_attributes);
        sigset_t all;
        sigset_t none;
        ::sigfillset(&all);
        ::sigemptyset(&none);
        ::posix_spawnattr_setsigdefault(&m_attributes, &all);
        ::posix_spawnattr_setsigmask(&m_attributes, &none);
        ::posix_spawnattr_setflags(&m_attributes,
                                   POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }

    ~SpawnSettings() {
        ::posix_spawn_file_actions_destroy(&m_actions);
        ::posix_spawnattr_destroy(&m_attributes);
    }

    SpawnSettings(const SpawnSettings &) = delete;
    SpawnSettings &operator=(const SpawnSettings &) = delete;

    void useInput(const FileDescriptor &end) {
        if (end.isOpen()) {
            ::posix_spawn_file_actions_adddup2(&m_actions, end.get(), STDIN_FILENO);
        } else {
            ::posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        }
    }

    /// The numbers of the child must be given in ascending order: a source must not be overwritten.
    void use(const FileDescriptor &end, int number) {
        ::posix_spawn_file_actions_adddup2(&m_actions, end.get(), number);
        m_highest = std::max(m_highest, number);
    }

    /// The child's process number, or absent with errno set.
    [[nodiscard]] std::optional<pid_t> start(const ChildCommand &command) {
        ::posix_spawn_file_actions_addclosefrom_np(&m_actions, m_highest + 1);
        ::posix_spawn_file_actions_addchdir_np(&m_actions, command.folder.constData());
        QByteArrayList arguments = command.arguments;
        QByteArrayList environment = command.environment;
        pid_t pid = -1;
        const int failure = ::posix_spawn(&pid, command.program.constData(), &m_actions, &m_attributes,
                                          pointers(arguments).data(), pointers(environment).data());
        errno = failure;
        return failure == 0 ? std::optional(pid) : std::nullopt;
    }

private:
    int m_highest = STDERR_FILENO;
    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

/// Reads the bytes that are available. False at the end of the stream.
bool readAvailable(const FileDescriptor &end, QByteArray &into) {
    std::array<char, 16384> part{};
    for (;;) {
        const ssize_t got = ::read(end.get(), part.data(), part.size());
        if (got > 0) {
            into.append(part.data(), got);
        } else if (got == 0) {
            return false;
        } else if (errno != EINTR) {
            return errno == EAGAIN;
        }
    }
}

/// Reads a stream that outlives its process to its end and discards it. Holds the token until then.
void discardInBackground(FileDescriptor end, const std::shared_ptr<void> &token) {
    const int flags = ::fcntl(end.get(), F_GETFL);
    ::fcntl(end.get(), F_SETFL, flags & ~O_NONBLOCK);
    try {
        std::thread([stream = std::move(end), token] {
            std::array<char, 4096> part{};
            ssize_t got = 1;
            while (got > 0 || (got < 0 && errno == EINTR)) {
                got = ::read(stream.get(), part.data(), part.size());
            }
        }).detach();
    } catch (const std::system_error &) {
        // No thread could be created, so the stream is only closed.
    }
}

/// A running child and its output streams.
class RunningChild {
public:
    RunningChild(pid_t child, int longSilence, FileDescriptor output, FileDescriptor error,
                 FileDescriptor input)
        : m_process(openProcess(child)), m_child(child), m_longSilence(longSilence),
          m_output(std::move(output)), m_error(std::move(error)), m_input(std::move(input)) {
        m_sinceGrowth.start();
        for (const FileDescriptor *end : {&m_output, &m_error}) {
            ::fcntl(end->get(), F_SETFL, ::fcntl(end->get(), F_GETFL) | O_NONBLOCK);
        }
    }

    [[nodiscard]] ChildOutcome run(const ChildWatcher &watcher) {
        while (!hasEnded(watcher)) {
        }
        readOutputs();
        siginfo_t information{};
        while (::waitid(P_PID, static_cast<id_t>(m_child), &information, WEXITED) != 0 && errno == EINTR) {
        }
        const int number = information.si_status;
        m_outcome.status = information.si_code == CLD_EXITED ? number : 128 + number;
        const auto token = std::make_shared<char>();
        m_outcome.openOutput = token;
        for (FileDescriptor *end : {&m_output, &m_error}) {
            if (end->isOpen()) {
                discardInBackground(std::move(*end), token);
            }
        }
        return std::move(m_outcome);
    }

private:
    /// Waits for something to happen. True once the process has ended.
    [[nodiscard]] bool hasEnded(const ChildWatcher &watcher) {
        std::array<pollfd, 3> watched{
            {{m_process.get(), POLLIN, 0}, {m_output.get(), POLLIN, 0}, {m_error.get(), POLLIN, 0}}};
        const int ready = ::poll(watched.data(), watched.size(), waitLimit(watcher != nullptr));
        if (ready < 0) {
            return errno != EINTR;
        }
        const qsizetype before = m_outcome.error.size();
        readOutputs();
        if (m_outcome.error.size() != before) {
            m_sinceGrowth.start();
            m_silence = Silence::None;
            report(watcher);
        } else if (const Silence silence = silenceNow(); silence != m_silence) {
            m_silence = silence;
            report(watcher);
        }
        return m_process.isOpen() ? watched[0].revents != 0 : isWaitable();
    }

    void report(const ChildWatcher &watcher) {
        if (watcher) {
            watcher(m_input, m_outcome.error, m_silence);
        }
    }

    [[nodiscard]] Silence silenceNow() const {
        const qint64 elapsed = m_sinceGrowth.elapsed();
        if (elapsed >= m_longSilence) {
            return Silence::Long;
        }
        return elapsed >= shortSilence ? Silence::Short : Silence::None;
    }

    /// Milliseconds until the next silence is due, or until the process must be looked at; -1 for no limit.
    [[nodiscard]] int waitLimit(bool isWatched) const {
        int limit = -1;
        if (isWatched && m_silence != Silence::Long) {
            const int due = m_silence == Silence::None ? shortSilence : m_longSilence;
            limit = static_cast<int>(std::max<qint64>(0, due - m_sinceGrowth.elapsed()));
        }
        return m_process.isOpen() || (limit >= 0 && limit < shortSilence) ? limit : shortSilence;
    }

    /// Used where there is no descriptor for the process.
    [[nodiscard]] bool isWaitable() const {
        siginfo_t information{};
        const int outcomeOfWait =
            ::waitid(P_PID, static_cast<id_t>(m_child), &information, WEXITED | WNOHANG | WNOWAIT);
        return outcomeOfWait != 0 || information.si_pid == m_child;
    }

    void readOutputs() {
        if (m_output.isOpen() && !readAvailable(m_output, m_outcome.output)) {
            m_output.reset();
        }
        if (m_error.isOpen() && !readAvailable(m_error, m_outcome.error)) {
            m_error.reset();
        }
    }

    FileDescriptor m_process;
    pid_t m_child;
    int m_longSilence;
    FileDescriptor m_output;
    FileDescriptor m_error;
    ChildInput m_input;
    ChildOutcome m_outcome;
    QElapsedTimer m_sinceGrowth;
    Silence m_silence = Silence::None;
};

} // namespace

void ChildInput::send(const QByteArray &bytes) {
    if (!m_descriptor.isOpen()) {
        return;
    }
    // The signal for a closed pipe would end the whole program.
    sigset_t pipeSignal;
    sigset_t before;
    ::sigemptyset(&pipeSignal);
    ::sigaddset(&pipeSignal, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &pipeSignal, &before);
    ssize_t written = -1;
    do {
        written = ::write(m_descriptor.get(), bytes.constData(), static_cast<std::size_t>(bytes.size()));
    } while (written < 0 && errno == EINTR);
    if (written < 0 && errno == EPIPE) {
        const timespec atOnce{};
        ::sigtimedwait(&pipeSignal, nullptr, &atOnce);
        close();
    }
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

ChildOutcome runChild(const ChildCommand &command, const ChildWatcher &watcher) {
    ChildOutcome failed;
    Pipe output;
    Pipe error;
    Pipe input;
    if (!makePipe(output) || !makePipe(error) || (watcher && !makePipe(input))) {
        failed.startFailure = errno;
        return failed;
    }
    SpawnSettings settings;
    settings.useInput(input.reading);
    settings.use(output.writing, STDOUT_FILENO);
    settings.use(error.writing, STDERR_FILENO);
    const auto pid = settings.start(command);
    if (!pid) {
        failed.startFailure = errno;
        return failed;
    }
    input.reading.reset();
    output.writing.reset();
    error.writing.reset();
    return RunningChild(*pid, command.longSilence, std::move(output.reading), std::move(error.reading),
                        std::move(input.writing))
        .run(watcher);
}

std::optional<pid_t> startChild(const ChildCommand &command, FileDescriptor &output, FileDescriptor &held) {
    Pipe outputPipe;
    Pipe heldPipe;
    if (!makePipe(outputPipe) || !makePipe(heldPipe)) {
        return std::nullopt;
    }
    SpawnSettings settings;
    settings.useInput({});
    settings.use(outputPipe.writing, STDOUT_FILENO);
    settings.use(heldPipe.writing, STDERR_FILENO + 1);
    const auto pid = settings.start(command);
    if (pid) {
        output = std::move(outputPipe.reading);
        held = std::move(heldPipe.reading);
    }
    return pid;
}

QByteArray systemProgram(const QByteArray &name) {
    for (const QByteArray &folder : QByteArray(systemPath).split(':')) {
        const QByteArray path = folder + '/' + name;
        if (::access(path.constData(), X_OK) == 0) {
            return path;
        }
    }
    return {};
}

} // namespace quorvane::platform
