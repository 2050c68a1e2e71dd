#pragma once

#include "common/Result.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace boost::asio {
class io_context;
}

namespace quorvane::service {

/// A socket in the file system whose connections exchange text. What the text means is up to the client
/// objects that the owner makes, one per connection.
class LineServer {
public:
    /// One connection's owner-side half.
    class Client {
    public:
        virtual ~Client() = default;
        /// The next bytes; false ends the connection.
        virtual bool received(std::string_view bytes) = 0;

        /// The connection has ended, for whatever reason; nothing is called after this.
        virtual void closed() {}
    };

    /// Writes to the connection; harmless once it has ended.
    using Send = std::function<void(const std::string &text)>;
    using MakeClient = std::function<std::unique_ptr<Client>(Send)>;

    LineServer(boost::asio::io_context &context, MakeClient makeClient);
    ~LineServer();
    LineServer(const LineServer &) = delete;
    LineServer &operator=(const LineServer &) = delete;

    /// Binds the path, taking the place of a socket that a predecessor left there.
    Result<> start(const std::string &path);
    /// Ends all connections and removes the socket. Destroying the object without it is for
    /// a context that runs no more.
    void stop();

private:
    struct State;
    class Connection;

    std::shared_ptr<State> m_state;
};

} // namespace quorvane::service
