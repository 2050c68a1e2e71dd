#include <utility>

#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>

#include "PipeLog.h"

#include <array>
#include <fcntl.h>
#include <unistd.h>

namespace quorvane::service {

namespace asio = boost::asio;

struct PipeLog::Pipe {
    Pipe(asio::io_context &context, int descriptor) : input(context, descriptor) {}

    asio::posix::stream_descriptor input;
    std::array<char, 16384> bytes{};
    std::string incompleteLine;
};

PipeLog::PipeLog(asio::io_context &context, const LogLimits &limits)
    : m_context(context), m_file(limits, &std::chrono::steady_clock::now) {}

Result<> PipeLog::open(const std::string &path) {
    return m_file.open(path);
}

FileDescriptor PipeLog::newPipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return {};
    }
    read(std::make_shared<Pipe>(m_context, ends[0]));
    return FileDescriptor(ends[1]);
}

void PipeLog::read(const std::shared_ptr<Pipe> &pipe) {
    pipe->input.async_read_some(
        asio::buffer(pipe->bytes),
        [self = shared_from_this(), pipe](const boost::system::error_code &ended, std::size_t length) {
            pipe->incompleteLine.append(pipe->bytes.data(), length);
            self->writeLines(*pipe);
            if (!ended) {
                self->read(pipe);
            } else if (!pipe->incompleteLine.empty()) {
                self->writeLine(std::move(pipe->incompleteLine));
            }
        });
}

void PipeLog::writeLines(Pipe &pipe) {
    std::size_t begin = 0;
    for (auto end = pipe.incompleteLine.find('\n'); end != std::string::npos;
         end = pipe.incompleteLine.find('\n', begin)) {
        writeLine(pipe.incompleteLine.substr(begin, end - begin));
        begin = end + 1;
    }
    pipe.incompleteLine.erase(0, begin);
    // Of a line that is too long the beginning is written. What arrives later appears as further lines.
    if (pipe.incompleteLine.size() >= LogFile::maximumLine) {
        writeLine(std::exchange(pipe.incompleteLine, {}));
    }
}

void PipeLog::writeLine(std::string line) {
    line.resize(std::min(line.size(), LogFile::maximumLine - 1));
    m_file.write(line + '\n', [](std::uint64_t count) {
        return std::to_string(count) + " lines were left out: they were beyond log.bytes_per_second\n";
    });
}

} // namespace quorvane::service
