#pragma once

#include "core/Config.h"

#include <functional>
#include <memory>
#include <string>

namespace boost::asio {
class io_context;
}

namespace quorvane::service {

/// A small HTTP listener for the page of metrics, on a loopback port or a socket in the file system. It has
/// few connections, each with a deadline and one request.
class MetricsServer {
public:
    /// Makes the page anew for each request.
    using Page = std::function<std::string()>;

    MetricsServer(boost::asio::io_context &context, Page page);
    ~MetricsServer();
    MetricsServer(const MetricsServer &) = delete;
    MetricsServer &operator=(const MetricsServer &) = delete;

    /// Binds the port, or the socket with mode 660, replacing one that an earlier run left.
    Result<> start(const MetricsListener &listener);
    /// An object that was not stopped may be destroyed only when the io_context has stopped.
    void stop();

private:
    class Listener;
    template <typename Protocol>
    class ListenerOf;
    template <typename Protocol>
    class Connection;

    boost::asio::io_context &m_context;
    std::shared_ptr<const Page> m_page;
    std::shared_ptr<Listener> m_listener;
    std::string m_path; ///< of the socket
};

} // namespace quorvane::service
