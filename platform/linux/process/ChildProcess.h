#pragma once

#include "common/FileDescriptor.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <functional>
#include <optional>
#include <sys/types.h>

namespace platform {

using quorvane::FileDescriptor;

/// What to start.
struct ChildCommand {
    /// Full path of the program.
    QByteArray program;
    /// The whole argument vector, the program's own name first.
    QByteArrayList arguments;
    /// "NAME=value" entries; nothing else is in the child's environment.
    QByteArrayList environment;
    QByteArray folder = "/";
};

/// What came of it.
struct ChildOutcome {
    /// 0, or the errno value of a start that failed; the rest then means nothing.
    int startFailure = 0;
    /// The exit status, or 128 and the number of the signal that ended it.
    int status = 0;
    QByteArray output;
    QByteArray error;
};

/// The writing end of a child's standard input.
class ChildInput {
public:
    explicit ChildInput(FileDescriptor end) : descriptor(std::move(end)) {}

    /// Writes bytes that fit in a pipe (64 KiB). A child that has closed its end is no error.
    void send(const QByteArray &bytes);

    void close() { descriptor.reset(); }

private:
    FileDescriptor descriptor;
};

/// Sees the standard error of a child grow. Quiet means that nothing has come for a short while.
using ChildWatcher = std::function<void(ChildInput &input, const QByteArray &errorSoFar, bool quiet)>;

/// Runs the command in a session of its own and waits until that one process ends, however long it takes.
///
/// A process that it leaves behind may hold the outputs: what it writes later is read and thrown away, so
/// that it neither blocks nor dies of a closed pipe. Without a watcher the child has no input. Signals
/// and their mask are at their defaults in the child, and no descriptor but the three goes to it. Any thread.
[[nodiscard]] ChildOutcome runChild(const ChildCommand &command, const ChildWatcher &watcher = {});

/// Starts the command in a session of its own with no input and standard error shared, and returns at
/// once. The process number, or absent with errno set; output gets the reading end of its standard output.
[[nodiscard]] std::optional<pid_t> startChild(const ChildCommand &command, FileDescriptor &output);

/// Full path of a program of the system itself, looked for in the system's own folders only; empty when
/// there is none.
[[nodiscard]] QByteArray systemProgram(const QByteArray &name);

/// The system's own folders, as PATH has them.
inline constexpr char systemPath[] = "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin";

} // namespace platform
