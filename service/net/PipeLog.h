#pragma once

#include "core/LogFile.h"

#include <memory>
#include <string>

namespace boost::asio {
class io_context;
}

namespace quorvane::service {

/// Writes what programs print to a log file. The programs write into pipes, which are always read: a program
/// that prints more than the log may receive is not slowed, and the rest is left out.
///
/// Make it with std::make_shared: a pipe is read until the program that writes into it has ended.
class PipeLog : public std::enable_shared_from_this<PipeLog> {
public:
    /// Neither argument is owned.
    PipeLog(boost::asio::io_context &context, const LogLimits &limits);

    Result<> open(const std::string &path);

    /// Opens the path again: another program has renamed the file.
    void reopen() { m_file.reopen(); }

    /// The end of a new pipe into which a program can write; not open when no pipe can be made.
    [[nodiscard]] FileDescriptor newPipe();

private:
    struct Pipe;

    void read(const std::shared_ptr<Pipe> &pipe);
    void writeLines(Pipe &pipe);
    void writeLine(std::string line);

    boost::asio::io_context &m_context;
    LogFile m_file;
};

} // namespace quorvane::service
