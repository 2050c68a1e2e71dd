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

/// A socket in the file system whose connections exchange text. The owner makes one Client object per
/// connection, which handles the text.
class LineServer {
public:
    /// Handles the text of one connection.
    class Client {
    public:
        virtual ~Client() = default;
        /// Handles the next bytes. The connection is closed when it returns false.
        [[nodiscard]] virtual bool received(std::string_view bytes) = 0;

        /// The connection has ended, for any reason. No other function is called after this.
        virtual void closed() {}
    };

    /// Writes to the connection. Does nothing once it has ended.
    using Send = std::function<void(const std::string &text)>;
    using MakeClient = std::function<std::unique_ptr<Client>(Send)>;

    LineServer(boost::asio::io_context &context, MakeClient makeClient);
    ~LineServer();
    LineServer(const LineServer &) = delete;
    LineServer &operator=(const LineServer &) = delete;

    /// Binds the path. Replaces a socket that an earlier run left there.
    Result<> start(const std::string &path);
    /// Ends all connections and removes the socket. An object that was not stopped may be destroyed
    /// only when the io_context has stopped.
    void stop();

private:
    struct State;
    class Connection;

    std::shared_ptr<State> m_state;
};

} // namespace quorvane::service
