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

/// Runs a command on the gateway, once for each input text, one after the other in the order of the calls,
/// each with a time limit. Destroy it only when the io_context has stopped.
class GatewayRunner {
public:
    /// `error` is the output of a command that failed, or why it could not be started.
    using Done = std::function<void(bool succeeded, const std::string &error)>;

    GatewayRunner(boost::asio::io_context &context, std::vector<std::string> command);
    ~GatewayRunner();
    GatewayRunner(const GatewayRunner &) = delete;
    GatewayRunner &operator=(const GatewayRunner &) = delete;

    /// Runs the command with this text as standard input. `done` is called once, never from within run().
    void run(std::string input, Done done);

private:
    struct Job;

    void startNext();
    void finished(int status);
    void fail(const std::string &error);

    boost::asio::io_context &m_context;
    std::vector<std::string> m_command;
    std::deque<std::unique_ptr<Job>> m_jobs; ///< the first one runs
};

} // namespace quorvane::service
