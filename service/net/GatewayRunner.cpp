#include <utility>

#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>

#include "GatewayRunner.h"

#include "ChildProcess.h"
#include "common/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

namespace quorvane::service {

namespace asio = boost::asio;

namespace {

constexpr std::chrono::seconds timeLimit{5};

/// Files in memory instead of pipes: they cannot block a writer, and nothing is written to a disk.
FileDescriptor memoryFile(const char *name) {
    return FileDescriptor(memfd_create(name, MFD_CLOEXEC));
}

bool fill(const FileDescriptor &file, const std::string &text) {
    return file.isOpen() &&
           pwrite(file.get(), text.data(), text.size(), 0) == static_cast<ssize_t>(text.size());
}

std::string beginningOf(const FileDescriptor &file) {
    std::array<char, 1024> text{};
    const ssize_t length = pread(file.get(), text.data(), text.size(), 0);
    return {text.data(), length > 0 ? static_cast<std::size_t>(length) : 0};
}

} // namespace

struct GatewayRunner::Job {
    Job(asio::io_context &context, std::string text, Done callback)
        : input(std::move(text)), done(std::move(callback)), limit(context) {}

    std::string input;
    Done done;
    FileDescriptor inputFile = memoryFile("input");
    FileDescriptor outputFile = memoryFile("output");
    asio::steady_timer limit;
    std::shared_ptr<ChildProcess> process;
    std::string error; ///< why it could not be started
};

GatewayRunner::GatewayRunner(asio::io_context &context, std::vector<std::string> command)
    : m_context(context), m_command(std::move(command)) {}

GatewayRunner::~GatewayRunner() = default;

void GatewayRunner::run(std::string input, Done done) {
    m_jobs.push_back(std::make_unique<Job>(m_context, std::move(input), std::move(done)));
    if (m_jobs.size() == 1) {
        startNext();
    }
}

void GatewayRunner::startNext() {
    Job &job = *m_jobs.front();
    if (!fill(job.inputFile, job.input) || !job.outputFile.isOpen()) {
        fail(std::string("cannot make a file in memory: ") + std::strerror(errno));
        return;
    }
    auto process = ChildProcess::start(m_context, m_command, job.inputFile.get(), job.outputFile.get(),
                                       [this](int status) { finished(status); });
    if (!process) {
        fail(process.error());
        return;
    }
    job.process = std::move(process).value();
    job.limit.expires_after(timeLimit);
    job.limit.async_wait(
        [weak = std::weak_ptr<ChildProcess>(job.process)](const boost::system::error_code &cancelled) {
            const auto running = weak.lock();
            if (!cancelled && running) {
                running->signal(SIGKILL);
            }
        });
}

/// Reports the error like any other end, and not from within run().
void GatewayRunner::fail(const std::string &error) {
    m_jobs.front()->error = error;
    asio::post(m_context, [this] { finished(-1); });
}

void GatewayRunner::finished(int status) {
    const std::unique_ptr<Job> job = std::move(m_jobs.front());
    m_jobs.pop_front();
    if (!m_jobs.empty()) {
        startNext();
    }
    if (status == 0) {
        job->done(true, {});
    } else {
        job->done(false, job->error.empty() ? beginningOf(job->outputFile) : job->error);
    }
}

} // namespace quorvane::service
