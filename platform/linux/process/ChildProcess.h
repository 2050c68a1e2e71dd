#pragma once

#include "common/FileDescriptor.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <sys/types.h>

namespace quorvane::platform {

/// A program to start.
struct ChildCommand {
    /// Full path of the program.
    QByteArray program;
    /// The whole argument vector, the program's own name first.
    QByteArrayList arguments;
    /// "NAME=value" entries; nothing else is in the child's environment.
    QByteArrayList environment;
    QByteArray folder = "/";
    /// How long a silence of its standard error is long, in milliseconds.
    int longSilence = 120000;
};

/// How it ended.
struct ChildOutcome {
    /// 0, or the errno value of a failed start; the other fields are then meaningless.
    int startFailure = 0;
    /// The exit status, or 128 plus the number of the signal that ended it.
    int status = 0;
    QByteArray output;
    QByteArray error;
    /// Expires when the outputs that a process left behind has open are closed.
    std::weak_ptr<void> openOutput = {};
};

/// The writing end of a child's standard input.
class ChildInput {
public:
    explicit ChildInput(FileDescriptor end) : m_descriptor(std::move(end)) {}

    /// Writes bytes that fit in a pipe (64 KiB). A closed reading end is not an error.
    void send(const QByteArray &bytes);

    void close() { m_descriptor.reset(); }

private:
    FileDescriptor m_descriptor;
};

/// How long nothing has arrived on a child's standard error: a fifth of a second, or
/// ChildCommand::longSilence.
enum class Silence { None, Short, Long };

/// Called as the standard error of a child grows, and once for each length of silence after that.
using ChildWatcher = std::function<void(ChildInput &input, const QByteArray &errorSoFar, Silence silence)>;

/// Runs the command in a new session and waits until that one process ends, without a time limit.
///
/// A process that it leaves behind may keep the outputs open: what it writes later is read and discarded, so
/// that it neither blocks nor ends because of a closed pipe. Without a watcher the child has no input. Signal
/// handlers and the signal mask have their defaults in the child, and it inherits only the three standard
/// descriptors. Any thread.
[[nodiscard]] ChildOutcome runChild(const ChildCommand &command, const ChildWatcher &watcher = {});

/// Starts the command in a new session without input and with shared standard error, and returns at once.
/// Returns the process number, or nothing with errno set; `output` is set to the reading end of its standard
/// output. The child inherits one more descriptor, number 3: `held` is set to the reading end of its pipe,
/// which ends when the child has closed it, has ended, or has replaced itself by a program that it does not
/// hand the descriptor to.
[[nodiscard]] std::optional<pid_t> startChild(const ChildCommand &command, FileDescriptor &output,
                                              FileDescriptor &held);

/// Full path of a program of the system itself, searched in the system's own folders only; empty when there
/// is none.
[[nodiscard]] QByteArray systemProgram(const QByteArray &name);

/// The system's own folders in the form of PATH.
inline constexpr char systemPath[] = "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin";

} // namespace quorvane::platform
