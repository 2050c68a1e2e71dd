#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace boost::asio {
class io_context;
}

namespace quorvane::service {

/// Runs one command with an input text after the other on the gateway, in the order they were given, each
/// with a time limit. Destroy it only when the io_context runs no more.
class GatewayRunner {
public:
    /// `error` is what the command wrote when it failed.
    using Done = std::function<void(bool worked, const std::string &error)>;

    GatewayRunner(boost::asio::io_context &context, std::vector<std::string> command);
    ~GatewayRunner();
    GatewayRunner(const GatewayRunner &) = delete;
    GatewayRunner &operator=(const GatewayRunner &) = delete;

    /// Gives the command this text; `done` is called later, once.
    void run(std::string input, Done done);

private:
    struct Job;

    void startNext();
    void finished(int status);
    void fail(const std::string &error);

    boost::asio::io_context &m_context;
    std::vector<std::string> m_command;
    std::deque<std::unique_ptr<Job>> m_jobs; ///< the first one is running
};

} // namespace quorvane::service
