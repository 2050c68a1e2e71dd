#include <utility>

#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>

#include "GatewayRunner.h"

#include "ChildProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

namespace quorvane::service {

namespace asio = boost::asio;

namespace {

constexpr std::chrono::seconds TimeLimit{5};

/// A file in memory: no pipe that could fill up, nothing on disk.
class MemoryFile {
public:
    explicit MemoryFile(const char *name) : m_descriptor(memfd_create(name, MFD_CLOEXEC)) {}

    ~MemoryFile() {
        if (m_descriptor >= 0) {
            close(m_descriptor);
        }
    }

    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;

    [[nodiscard]] bool fill(const std::string &text) const {
        return m_descriptor >= 0 &&
               pwrite(m_descriptor, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size());
    }

    [[nodiscard]] std::string beginning() const {
        std::array<char, 1024> text{};
        const ssize_t length = pread(m_descriptor, text.data(), text.size(), 0);
        return {text.data(), length > 0 ? static_cast<std::size_t>(length) : 0};
    }

    [[nodiscard]] int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

} // namespace

struct GatewayRunner::Job {
    Job(asio::io_context &context, std::string text, Done callback)
        : input(std::move(text)), done(std::move(callback)), limit(context) {}

    std::string input;
    Done done;
    MemoryFile inputFile{"input"};
    MemoryFile outputFile{"output"};
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
    if (!job.inputFile.fill(job.input) || job.outputFile.descriptor() < 0) {
        fail(std::string("no memory file: ") + std::strerror(errno));
        return;
    }
    auto process = ChildProcess::start(m_context, m_command, job.inputFile.descriptor(),
                                       job.outputFile.descriptor(), [this](int status) { finished(status); });
    if (!process) {
        fail(process.error());
        return;
    }
    job.process = std::move(process).value();
    job.limit.expires_after(TimeLimit);
    job.limit.async_wait(
        [weak = std::weak_ptr<ChildProcess>(job.process)](const boost::system::error_code &cancelled) {
            const auto running = weak.lock();
            if (!cancelled && running) {
                running->signal(SIGKILL);
            }
        });
}

/// Told like any other end, and never from within run().
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
        job->done(false, job->error.empty() ? job->outputFile.beginning() : job->error);
    }
}

} // namespace quorvane::service
