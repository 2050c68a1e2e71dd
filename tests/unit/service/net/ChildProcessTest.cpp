#include <utility>

#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/local/connect_pair.hpp>
#include <boost/asio/local/stream_protocol.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/write.hpp>

#include "net/ChildProcess.h"

#include <gtest/gtest.h>

#include <csignal>
#include <optional>
#include <unistd.h>

namespace quorvane::service {

namespace {

namespace asio = boost::asio;
using Socket = asio::local::stream_protocol::socket;

class ChildProcesses : public testing::Test {
protected:
    std::unique_ptr<ChildProcess> start(const std::vector<std::string> &arguments) {
        auto started = ChildProcess::start(m_context, arguments, -1, STDERR_FILENO,
                                           [this](int status) { m_status = status; });
        return started ? std::move(started).value() : nullptr;
    }

    asio::io_context m_context;
    std::optional<int> m_status;
};

TEST_F(ChildProcesses, TheExitStatusIsReported) {
    ASSERT_TRUE(start({"sh", "-c", "exit 7"}));
    m_context.run();
    EXPECT_EQ(m_status, 7);
}

TEST_F(ChildProcesses, TheSignalThatEndedItIsReported) {
    const auto process = start({"sleep", "60"});
    ASSERT_TRUE(process);
    process->signal(SIGTERM);
    m_context.run();
    EXPECT_EQ(m_status, 128 + SIGTERM);
}

TEST_F(ChildProcesses, AMissingProgramIsNotStarted) {
    EXPECT_FALSE(start({"/no/such/program"}));
    m_context.run();
    EXPECT_EQ(m_status, std::nullopt);
}

// Two descriptors become ready at once. The handler of the first closes the second and starts a program,
// whose process descriptor receives the number of the second and its pending event in the reactor.
TEST_F(ChildProcesses, APendingEventOfAnotherDescriptorIsNoEnd) {
    Socket first(m_context);
    Socket firstPeer(m_context);
    Socket second(m_context);
    Socket secondPeer(m_context);
    asio::local::connect_pair(first, firstPeer);
    asio::local::connect_pair(second, secondPeer);
    std::unique_ptr<ChildProcess> process;
    asio::steady_timer timer(m_context);
    first.async_wait(Socket::wait_read, [&](const boost::system::error_code &) {
        second.close();
        process = start({"sleep", "5"});
        timer.expires_after(std::chrono::milliseconds(50));
        timer.async_wait([&](const boost::system::error_code &) { process->signal(SIGKILL); });
    });
    asio::write(firstPeer, asio::buffer("x", 1));
    asio::write(secondPeer, asio::buffer("x", 1));
    m_context.run();
    EXPECT_EQ(m_status, 128 + SIGKILL) << "the loop was blocked until the program ended by itself";
}

} // namespace

} // namespace quorvane::service
