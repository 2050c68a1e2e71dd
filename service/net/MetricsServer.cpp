#include <utility>

#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/local/stream_protocol.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/write.hpp>

#include "MetricsServer.h"

#include <filesystem>
#include <sys/stat.h>

namespace quorvane::service {

namespace asio = boost::asio;
using boost::system::error_code;

namespace {

constexpr std::size_t maximumRequest = 4096;
constexpr unsigned maximumConnections = 16;
constexpr std::chrono::seconds deadline{5};

std::string answer(const std::string &request, const std::function<std::string()> &page) {
    const bool found = request.rfind("GET /metrics ", 0) == 0 || request.rfind("GET /metrics?", 0) == 0;
    const std::string body = found ? page() : "The metrics are at /metrics.\n";
    return std::string("HTTP/1.1 ") + (found ? "200 OK" : "404 Not Found") +
           "\r\nContent-Type: text/plain; version=0.0.4; charset=utf-8\r\nConnection: close\r\n"
           "Content-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + body;
}

} // namespace

class MetricsServer::Listener {
public:
    virtual ~Listener() = default;
    virtual void stop() = 0;
};

/// One request; the pending operations own it, and the deadline ends them.
template <typename Protocol>
class MetricsServer::Connection : public std::enable_shared_from_this<Connection<Protocol>> {
public:
    Connection(typename Protocol::socket socket, std::shared_ptr<const Page> page,
               std::shared_ptr<unsigned> connections)
        : m_socket(std::move(socket)), m_deadline(m_socket.get_executor()), m_page(std::move(page)),
          m_connections(std::move(connections)) {
        ++*m_connections;
    }

    ~Connection() { --*m_connections; }

    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    void start() {
        m_deadline.expires_after(deadline);
        m_deadline.async_wait([weak = this->weak_from_this()](error_code cancelled) {
            const auto self = weak.lock();
            if (!cancelled && self) {
                error_code ignored;
                self->m_socket.close(ignored);
            }
        });
        asio::async_read_until(m_socket, asio::dynamic_buffer(m_request, maximumRequest), "\r\n\r\n",
                               [self = this->shared_from_this()](error_code error, std::size_t) {
                                   if (!error) {
                                       self->respond();
                                   }
                               });
    }

private:
    void respond() {
        m_answer = answer(m_request, *m_page);
        asio::async_write(m_socket, asio::buffer(m_answer),
                          [self = this->shared_from_this()](error_code, std::size_t) {
                              error_code ignored;
                              self->m_socket.shutdown(asio::socket_base::shutdown_both, ignored);
                          });
    }

    typename Protocol::socket m_socket;
    asio::steady_timer m_deadline;
    std::shared_ptr<const Page> m_page;
    std::shared_ptr<unsigned> m_connections;
    std::string m_request;
    std::string m_answer;
};

template <typename Protocol>
class MetricsServer::ListenerOf : public Listener, public std::enable_shared_from_this<ListenerOf<Protocol>> {
public:
    ListenerOf(asio::io_context &context, std::shared_ptr<const Page> page)
        : m_acceptor(context), m_pause(context), m_page(std::move(page)) {}

    error_code bind(const typename Protocol::endpoint &endpoint) {
        error_code error;
        m_acceptor.open(endpoint.protocol(), error);
        if (!error) {
            m_acceptor.set_option(asio::socket_base::reuse_address(true), error);
        }
        if (!error) {
            m_acceptor.bind(endpoint, error);
        }
        if (!error) {
            m_acceptor.listen(asio::socket_base::max_listen_connections, error);
        }
        return error;
    }

    void accept() {
        m_acceptor.async_accept([self = this->shared_from_this()](error_code error,
                                                                  typename Protocol::socket socket) {
            if (!self->m_acceptor.is_open()) {
                return;
            }
            if (error) {
                self->acceptLater();
                return;
            }
            if (*self->m_connections < maximumConnections) {
                std::make_shared<Connection<Protocol>>(std::move(socket), self->m_page, self->m_connections)
                    ->start();
            }
            self->accept();
        });
    }

    void stop() override {
        error_code ignored;
        m_acceptor.close(ignored);
        m_pause.cancel();
    }

private:
    /// Most likely no file descriptor is free: an immediate retry would only use the processor.
    void acceptLater() {
        m_pause.expires_after(std::chrono::milliseconds(100));
        m_pause.async_wait([self = this->shared_from_this()](error_code cancelled) {
            if (!cancelled && self->m_acceptor.is_open()) {
                self->accept();
            }
        });
    }

    typename Protocol::acceptor m_acceptor;
    asio::steady_timer m_pause;
    std::shared_ptr<const Page> m_page;
    std::shared_ptr<unsigned> m_connections = std::make_shared<unsigned>(0);
};

MetricsServer::MetricsServer(asio::io_context &context, Page page)
    : m_context(context), m_page(std::make_shared<const Page>(std::move(page))) {}

MetricsServer::~MetricsServer() = default;

Result<> MetricsServer::start(const MetricsListener &listener) {
    error_code error;
    if (listener.socket.empty()) {
        using Tcp = asio::ip::tcp;
        const auto tcp = std::make_shared<ListenerOf<Tcp>>(m_context, m_page);
        error = tcp->bind(Tcp::endpoint(asio::ip::make_address(listener.address), listener.port));
        if (error) {
            return Failure{"metrics: " + listener.address + " port " + std::to_string(listener.port) + ": " +
                           error.message()};
        }
        tcp->accept();
        m_listener = tcp;
        return {};
    }
    using Local = asio::local::stream_protocol;
    const auto local = std::make_shared<ListenerOf<Local>>(m_context, m_page);
    if (std::filesystem::is_socket(listener.socket)) {
        std::filesystem::remove(listener.socket);
    }
    error = local->bind(Local::endpoint(listener.socket));
    if (error || chmod(listener.socket.c_str(), 0660) != 0) {
        return Failure{"metrics: cannot bind " + listener.socket + ": " + error.message()};
    }
    m_path = listener.socket;
    local->accept();
    m_listener = local;
    return {};
}

void MetricsServer::stop() {
    if (m_listener) {
        m_listener->stop();
    }
    if (!m_path.empty()) {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }
}

} // namespace quorvane::service
