#include <utility>

#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/local/stream_protocol.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/write.hpp>

#include "LineServer.h"

#include <array>
#include <filesystem>
#include <list>
#include <sys/stat.h>

namespace quorvane::service {

namespace asio = boost::asio;
using Stream = asio::local::stream_protocol;
using boost::system::error_code;

namespace {

/// A peer that sends requests but never reads is disconnected at this limit.
constexpr std::size_t maximumUnsentBytes = 1 << 20;
constexpr std::chrono::milliseconds acceptDelay{100};

} // namespace

struct LineServer::State : std::enable_shared_from_this<LineServer::State> {
    State(asio::io_context &context, MakeClient make)
        : acceptor(context), acceptTimer(context), makeClient(std::move(make)) {}

    void accept();
    void acceptLater();

    Stream::acceptor acceptor;
    asio::steady_timer acceptTimer;
    MakeClient makeClient;
    std::string path;
    std::list<std::weak_ptr<Connection>> connections;
};

class LineServer::Connection : public std::enable_shared_from_this<LineServer::Connection> {
public:
    explicit Connection(Stream::socket socket) : m_socket(std::move(socket)) {}

    void start(const MakeClient &makeClient) {
        m_client = makeClient([weak = weak_from_this()](const std::string &text) {
            if (const auto self = weak.lock()) {
                self->send(text);
            }
        });
        read();
    }

    void close() {
        if (!m_client) {
            return;
        }
        error_code ignored;
        m_socket.close(ignored);
        // The client itself may have caused this call: it must exist until its own function has returned.
        const std::shared_ptr<Client> client = std::move(m_client);
        client->closed();
        asio::post(m_socket.get_executor(), [client] {});
    }

private:
    void read() {
        m_socket.async_read_some(asio::buffer(m_input),
                                 [self = shared_from_this()](error_code error, std::size_t length) {
                                     if (!self->m_client) {
                                         return;
                                     }
                                     if (error || !self->m_client->received({self->m_input.data(), length})) {
                                         self->close();
                                     } else if (self->m_client) {
                                         self->read();
                                     }
                                 });
    }

    void send(const std::string &text) {
        if (!m_client) {
            return;
        }
        m_unsent += text;
        if (m_unsent.size() > maximumUnsentBytes) {
            close();
        } else if (m_sending.empty()) {
            write();
        }
    }

    void write() {
        m_sending.swap(m_unsent);
        asio::async_write(m_socket, asio::buffer(m_sending),
                          [self = shared_from_this()](error_code error, std::size_t) {
                              self->m_sending.clear();
                              if (error) {
                                  self->close();
                              } else if (!self->m_unsent.empty()) {
                                  self->write();
                              }
                          });
    }

    Stream::socket m_socket;
    std::shared_ptr<Client> m_client; ///< null once the connection has ended
    std::array<char, 4096> m_input{};
    std::string m_sending;
    std::string m_unsent;
};

void LineServer::State::accept() {
    acceptor.async_accept([self = shared_from_this()](error_code error, Stream::socket socket) {
        if (!self->acceptor.is_open()) {
            return;
        }
        if (error) {
            self->acceptLater();
            return;
        }
        self->connections.remove_if([](const auto &connection) { return connection.expired(); });
        const auto connection = std::make_shared<Connection>(std::move(socket));
        self->connections.push_back(connection);
        connection->start(self->makeClient);
        self->accept();
    });
}

/// Most likely no file descriptor is free: an immediate retry would only use the processor.
void LineServer::State::acceptLater() {
    acceptTimer.expires_after(acceptDelay);
    acceptTimer.async_wait([self = shared_from_this()](error_code cancelled) {
        if (!cancelled && self->acceptor.is_open()) {
            self->accept();
        }
    });
}

LineServer::LineServer(asio::io_context &context, MakeClient makeClient)
    : m_state(std::make_shared<State>(context, std::move(makeClient))) {}

LineServer::~LineServer() = default;

Result<> LineServer::start(const std::string &path) {
    std::error_code gone;
    std::filesystem::remove(path, gone);
    error_code error;
    auto &acceptor = m_state->acceptor;
    acceptor.open(Stream(), error);
    if (!error) {
        acceptor.bind(Stream::endpoint(path), error);
    }
    if (!error) {
        acceptor.listen(asio::socket_base::max_listen_connections, error);
    }
    if (error || chmod(path.c_str(), 0600) != 0) {
        return Failure{"runtime_folder: cannot bind " + path + ": " + error.message()};
    }
    m_state->path = path;
    m_state->accept();
    return {};
}

void LineServer::stop() {
    if (!m_state->acceptor.is_open()) {
        return;
    }
    error_code ignored;
    m_state->acceptor.close(ignored);
    m_state->acceptTimer.cancel();
    for (const auto &weak : m_state->connections) {
        if (const auto connection = weak.lock()) {
            connection->close();
        }
    }
    std::error_code gone;
    std::filesystem::remove(m_state->path, gone);
}

} // namespace quorvane::service
