#pragma once

#include "common/Result.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

namespace boost::asio {
class io_context;
}

namespace quorvane::service {

/// One program that was started, watched through its process descriptor.
///
/// It runs in a process group of its own with a minimal environment and only the three standard descriptors.
/// Its end is reported once. Destroying the object neither ends the program nor waits for it.
class ChildProcess {
public:
    /// `status` is the exit status, or 128 plus the signal's number.
    using Ended = std::function<void(int status)>;

    /// Starts the program arguments[0], which is searched for in the path. `input` is its standard input (-1:
    /// /dev/null), `output` its standard output and error. Both descriptors still belong to the caller.
    static Result<std::unique_ptr<ChildProcess>> start(boost::asio::io_context &context,
                                                       const std::vector<std::string> &arguments, int input,
                                                       int output, Ended ended);
    ~ChildProcess();
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    /// Sends a signal to the program's process group, unless the program has ended.
    void signal(int number);

private:
    struct Watch;

    explicit ChildProcess(std::shared_ptr<Watch> watch);

    std::shared_ptr<Watch> m_watch;
};

} // namespace quorvane::service
