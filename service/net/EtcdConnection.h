#pragma once

#include "common/Result.h"
#include "core/EtcdSettings.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace boost::asio {
class io_context;

namespace ssl {
class context;
}
} // namespace boost::asio

namespace quorvane::service {

/// One HTTPS connection to a member of etcd. A failure of anything ends it; it is not opened again.
class EtcdConnection {
public:
    /// The text of an answer or the reason why there is none.
    using Answered = std::function<void(const Result<std::string> &answer)>;
    using Opened = std::function<void(const Result<> &opened)>;
    using Line = std::function<void(const std::string &line)>;
    using Ended = std::function<void(const std::string &reason)>;

    /// `deadline`: for opening it and for each request.
    EtcdConnection(boost::asio::io_context &context, std::shared_ptr<boost::asio::ssl::context> tls,
                   const EtcdSettings::Endpoint &endpoint, std::chrono::milliseconds deadline);
    /// Ends it. No function is called after this.
    ~EtcdConnection();
    EtcdConnection(const EtcdConnection &) = delete;
    EtcdConnection &operator=(const EtcdConnection &) = delete;

    /// Connects; the server's certificate must be for the endpoint's address.
    void open(Opened opened);
    /// Sends a request, after those before it have been answered. When a request fails, all that wait fail.
    void post(const std::string &path, const std::string &body, Answered answered);
    /// Sends a request whose answer has no end. Each line of it is passed on; `ended` is called once.
    void stream(const std::string &path, const std::string &body, Line line, Ended ended);

private:
    class Impl;
    std::shared_ptr<Impl> m_impl;
};

} // namespace quorvane::service
