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
/// It runs in a process group of its own with a bare environment and no descriptor but the three
/// standard ones. Its end is told once. Destroying the object neither ends the program nor waits for it.
class ChildProcess {
public:
    /// `status` is the exit status, or 128 plus the signal's number.
    using Ended = std::function<void(int status)>;

    /// Starts argv[0], looked up in the path, with `input` as standard input (closed: -1) and `output`
    /// as standard output and error. Both stay the caller's.
    static Result<std::unique_ptr<ChildProcess>> start(boost::asio::io_context &context,
                                                       const std::vector<std::string> &arguments, int input,
                                                       int output, Ended ended);
    ~ChildProcess();
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    /// Sends a signal to the program's process group, unless it has ended.
    void signal(int number);

private:
    struct Watch;

    explicit ChildProcess(std::shared_ptr<Watch> watch);

    std::shared_ptr<Watch> m_watch;
};

} // namespace quorvane::service
