// Includes Beast and the TLS streams, which are slow to compile.
#include <utility>

#include <boost/asio/ssl.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/ssl.hpp>

#include "HttpsServer.h"

#include "ServerTls.h"

#include <array>
#include <ctime>
#include <list>
#include <optional>

namespace quorvane::service {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
namespace ssl = boost::asio::ssl;
using Tcp = boost::asio::ip::tcp;
using boost::system::error_code;

namespace {

/// How long the input of a closed connection is still read, so that the last answer reaches the client.
constexpr std::chrono::seconds lingerTime{2};
/// How long a request that has begun may still take when the service ends.
constexpr std::chrono::seconds stopTime{3};
constexpr std::size_t maximumLingerBytes = 1 << 20;
constexpr std::chrono::milliseconds acceptDelay{100};
constexpr std::chrono::seconds reportPause{10};
constexpr int tooManyRequests = 429;

std::string httpDate() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    gmtime_r(&now, &parts);
    std::array<char, 64> text{};
    const auto length = std::strftime(text.data(), text.size(), "%a, %d %b %Y %H:%M:%S GMT", &parts);
    return {text.data(), length};
}

std::string peerText(const Tcp::socket &socket) {
    error_code error;
    const auto endpoint = socket.remote_endpoint(error);
    if (error) {
        return {};
    }
    const auto address = endpoint.address();
    if (address.is_v6() && address.to_v6().is_v4_mapped()) {
        return asio::ip::make_address_v4(asio::ip::v4_mapped, address.to_v6()).to_string();
    }
    return address.to_string();
}

std::string toString(beast::string_view view) {
    return {view.data(), view.size()};
}

} // namespace

struct HttpsServer::Shared {
    Shared(asio::io_context &io, const Config &configuration, Handler handle,
           RequestRecorder &requestRecorder)
        : context(io), config(configuration), handler(std::move(handle)), recorder(requestRecorder),
          limits(
              std::make_shared<CallerLimits>(configuration.limits.perCaller, &std::chrono::steady_clock::now,
                                             [this](const Caller &caller, Limit limit, std::uint64_t count) {
                                                 reportRefused(caller, limit, count);
                                             })),
          reportTimer(io) {}

    void reportRefused(const Caller &caller, Limit limit, std::uint64_t count) {
        RequestLogEntry entry;
        entry.event = "refused";
        entry.peer = caller.text();
        entry.detail = "too many " + std::string(limitName(limit));
        entry.count = count;
        recorder.record(entry);
    }

    void reportOldRefusals() {
        reportTimer.expires_after(reportPause);
        reportTimer.async_wait([this](error_code cancelled) {
            if (!cancelled) {
                limits->reportOld();
                reportOldRefusals();
            }
        });
    }

    asio::io_context &context;
    const Config &config;
    Handler handler;
    RequestRecorder &recorder;
    std::shared_ptr<CallerLimits> limits;
    asio::steady_timer reportTimer;
    ssl::context tls{ssl::context::tls_server};
    std::list<std::weak_ptr<Connection>> connections;
};

/// One connection from its TLS handshake to its end. The pending operations own it.
class HttpsServer::Connection : public std::enable_shared_from_this<HttpsServer::Connection> {
public:
    /// The connection has been counted for the caller.
    Connection(Tcp::socket socket, Shared &shared, std::string peer, const Caller &caller)
        : m_stream(std::move(socket), shared.tls), m_limits(shared.config.limits), m_handler(shared.handler),
          m_recorder(shared.recorder), m_peer(std::move(peer)), m_caller(caller),
          m_callerLimits(shared.limits), m_timer(shared.context) {}

    ~Connection() { m_callerLimits->close(m_caller); }

    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    /// Waits for the first byte: a connection that sends nothing costs no handshake.
    void start() {
        m_timer.expires_after(m_limits.handshake);
        m_timer.async_wait([self = shared_from_this()](error_code cancelled) {
            if (!cancelled) {
                self->m_stalled = true;
                error_code ignored;
                beast::get_lowest_layer(self->m_stream).socket().cancel(ignored);
            }
        });
        beast::get_lowest_layer(m_stream).socket().async_wait(
            Tcp::socket::wait_read,
            [self = shared_from_this()](error_code error) { self->onFirstByte(error); });
    }

    /// Ends the connection, after the answer to a request that has begun.
    void finishSoon() {
        m_isLast = true;
        if (!m_isBusy) {
            close();
            return;
        }
        m_timer.expires_after(stopTime);
        m_timer.async_wait([weak = weak_from_this()](error_code cancelled) {
            if (const auto self = weak.lock(); self && !cancelled) {
                self->close();
            }
        });
    }

private:
    using Parser = http::request_parser<http::empty_body>;

    void close() {
        error_code ignored;
        beast::get_lowest_layer(m_stream).socket().close(ignored);
    }

    void expireAfter(std::chrono::seconds time) { beast::get_lowest_layer(m_stream).expires_after(time); }

    void report(const char *event, const error_code &error) {
        RequestLogEntry entry;
        entry.event = error == beast::error::timeout ? "timeout" : event;
        entry.peer = m_peer;
        entry.detail = error.message();
        m_recorder.record(entry);
    }

    void onFirstByte(error_code error) {
        const auto deadline = m_timer.expiry();
        m_timer.cancel();
        if (error) {
            report("handshake_failed", m_stalled ? error_code(beast::error::timeout) : error);
        } else if (m_callerLimits->admit(m_caller, Limit::Handshakes)) {
            m_isBusy = true;
            beast::get_lowest_layer(m_stream).expires_at(deadline);
            m_stream.async_handshake(
                ssl::stream_base::server,
                [self = shared_from_this()](error_code failed) { self->onHandshake(failed); });
        }
    }

    void onHandshake(error_code error) {
        if (error) {
            report("handshake_failed", error);
            return;
        }
        readRequest();
    }

    void readRequest() {
        m_parser.emplace();
        m_parser->header_limit(m_limits.headerBytes);
        expireAfter(m_limits.request);
        http::async_read_header(
            m_stream, m_buffer, *m_parser,
            [self = shared_from_this()](error_code error, std::size_t) { self->onHeader(error); });
    }

    void onHeader(error_code error) {
        if (!error) {
            m_isBusy = true;
            answerRequest();
            return;
        }
        const bool betweenRequests = m_parser->get().target().empty() && m_buffer.size() == 0;
        if (error == http::error::end_of_stream || error == ssl::error::stream_truncated ||
            error == asio::error::connection_reset || error == asio::error::operation_aborted) {
            finish();
        } else if (error == beast::error::timeout) {
            if (!betweenRequests || m_answered == 0) {
                report("timeout", error);
            }
        } else {
            refuse(error);
        }
    }

    /// Answers a malformed request, then ends the connection.
    void refuse(const error_code &error) {
        if (!m_callerLimits->admit(m_caller, Limit::Requests)) {
            send(tooMany(), false);
            return;
        }
        HttpResponse response{400, "text/plain; charset=utf-8", "Bad Request\n", {}};
        if (error == http::error::header_limit || error == http::error::buffer_overflow) {
            const bool targetRead = !m_parser->get().target().empty();
            response.status = targetRead ? 431 : 414;
            response.body = targetRead ? "Request Header Fields Too Large\n" : "URI Too Long\n";
        }
        RequestLogEntry entry = describe(response);
        entry.event = "bad_request";
        entry.detail = error.message();
        m_recorder.record(entry);
        send(response, false);
    }

    [[nodiscard]] RequestLogEntry describe(const HttpResponse &response) const {
        const auto &request = m_parser->get();
        RequestLogEntry entry;
        entry.peer = m_peer;
        entry.host = toString(request[http::field::host]);
        entry.method = toString(request.method_string());
        entry.target = toString(request.target());
        entry.status = response.status;
        entry.bytes = response.body.size();
        return entry;
    }

    static HttpResponse tooMany() {
        return {tooManyRequests, "text/plain; charset=utf-8", "Too Many Requests\n", {}};
    }

    /// Whether the caller's own limits allow an answer to this request.
    [[nodiscard]] bool admitRequest() {
        return m_callerLimits->admit(m_caller, Limit::Requests) &&
               (!requestsConfiguration(toString(m_parser->get().target())) ||
                m_callerLimits->admit(m_caller, Limit::Configurations));
    }

    void answerRequest() {
        if (!admitRequest()) {
            // Without a further request on this connection: a greedy caller needs a new one, and those are
            // limited, too.
            send(tooMany(), false);
            return;
        }
        const auto &request = m_parser->get();
        const bool hasBody = m_parser->chunked() || m_parser->content_length().value_or(0) > 0;
        const bool hostMissing = request.version() >= 11 && request.count(http::field::host) != 1;
        HttpResponse response;
        if (hostMissing || (hasBody && request.method() == http::verb::get)) {
            response = {400, "text/plain; charset=utf-8", "Bad Request\n", {}};
        } else {
            response =
                m_handler({m_peer, toString(request.method_string()), toString(request.target()),
                           toString(request[http::field::host]), toString(request[http::field::accept])});
        }
        m_recorder.record(describe(response));
        // Bodies are not read, so the bytes after the header cannot be distinguished from a next request.
        const bool keepAlive =
            request.version() >= 11 && request.keep_alive() && !hasBody && response.status != 400;
        send(response, keepAlive);
    }

    void send(const HttpResponse &answer, bool keepAlive) {
        m_response.emplace(static_cast<http::status>(answer.status), 11U);
        m_response->set(http::field::server, "quorvane-service");
        m_response->set(http::field::date, httpDate());
        m_response->set(http::field::content_type, answer.contentType);
        m_response->set(http::field::cache_control, "no-store");
        m_response->set("X-Content-Type-Options", "nosniff");
        if (!answer.allow.empty()) {
            m_response->set(http::field::allow, answer.allow);
        }
        if (answer.status == tooManyRequests) {
            m_response->set(http::field::retry_after, "1");
        }
        m_response->keep_alive(keepAlive);
        m_response->body() = answer.body;
        m_response->prepare_payload();
        if (m_parser->get().method() == http::verb::head) {
            m_response->body().clear(); // the header keeps the length, the body must not be sent
        }
        ++m_answered;
        expireAfter(m_limits.request);
        http::async_write(m_stream, *m_response,
                          [self = shared_from_this(), keepAlive](error_code error, std::size_t) {
                              if (error) {
                                  self->close();
                              } else if (keepAlive && !self->m_isLast) {
                                  self->m_isBusy = false;
                                  self->readRequest();
                              } else {
                                  self->finish();
                              }
                          });
    }

    /// Closes in TLS and TCP, then reads and discards the input that still arrives: closing a socket with
    /// unread bytes resets the connection, and the client could lose the answer.
    void finish() {
        expireAfter(lingerTime);
        m_stream.async_shutdown([self = shared_from_this()](error_code) {
            error_code ignored;
            auto &lowest = beast::get_lowest_layer(self->m_stream);
            lowest.socket().shutdown(Tcp::socket::shutdown_send, ignored);
            lowest.expires_after(lingerTime);
            self->discard();
        });
    }

    void discard() {
        m_isBusy = false;
        beast::get_lowest_layer(m_stream).async_read_some(
            asio::buffer(m_discardBuffer), [self = shared_from_this()](error_code error, std::size_t bytes) {
                self->m_discarded += bytes;
                if (error || self->m_discarded > maximumLingerBytes) {
                    self->close();
                } else {
                    self->discard();
                }
            });
    }

    beast::ssl_stream<beast::tcp_stream> m_stream;
    const Limits &m_limits;
    const Handler &m_handler;
    RequestRecorder &m_recorder;
    std::string m_peer;
    Caller m_caller;
    std::shared_ptr<CallerLimits> m_callerLimits;
    asio::steady_timer m_timer; ///< until the first byte, and at the end of the service
    bool m_stalled = false;
    beast::flat_buffer m_buffer;
    std::optional<Parser> m_parser;
    std::optional<http::response<http::string_body>> m_response;
    bool m_isBusy = false; ///< a request is read or answered
    bool m_isLast = false; ///< there will be no further request
    std::size_t m_answered = 0;
    std::size_t m_discarded = 0;
    std::array<char, 16384> m_discardBuffer{};
};

class HttpsServer::Listener : public std::enable_shared_from_this<HttpsServer::Listener> {
public:
    explicit Listener(Shared &shared)
        : m_shared(shared), m_acceptor(shared.context), m_acceptTimer(shared.context) {}

    error_code bind(const ListenAddress &address) {
        error_code error;
        const auto numeric = asio::ip::make_address(address.address, error);
        const Tcp::endpoint endpoint(numeric, address.port);
        if (!error) {
            m_acceptor.open(endpoint.protocol(), error);
        }
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
        m_acceptor.async_accept([self = shared_from_this()](error_code error, Tcp::socket socket) {
            self->onAccept(error, std::move(socket));
        });
    }

    void stop() {
        error_code ignored;
        m_acceptor.close(ignored);
        m_acceptTimer.cancel();
    }

    [[nodiscard]] std::string bound() const {
        error_code error;
        const auto endpoint = m_acceptor.local_endpoint(error);
        return error ? std::string() : endpoint.address().to_string() + ' ' + std::to_string(endpoint.port());
    }

private:
    void onAccept(error_code error, Tcp::socket socket) {
        if (!m_acceptor.is_open()) {
            return;
        }
        if (error) {
            // Most likely no file descriptor is free: an immediate retry would only use the processor.
            m_acceptTimer.expires_after(acceptDelay);
            m_acceptTimer.async_wait([self = shared_from_this()](error_code cancelled) {
                if (!cancelled && self->m_acceptor.is_open()) {
                    self->accept();
                }
            });
            return;
        }
        serve(std::move(socket));
        accept();
    }

    void serve(Tcp::socket socket) {
        std::string peer = peerText(socket);
        const Caller caller = Caller::of(peer);
        if (!m_shared.limits->admit(caller, Limit::Connections) || !hasPlace(caller) ||
            !m_shared.limits->open(caller)) {
            return;
        }
        error_code ignored;
        socket.set_option(Tcp::no_delay(true), ignored);
        const auto connection =
            std::make_shared<Connection>(std::move(socket), m_shared, std::move(peer), caller);
        m_shared.connections.push_back(connection);
        connection->start();
    }

    [[nodiscard]] bool hasPlace(const Caller &caller) {
        auto &connections = m_shared.connections;
        connections.remove_if([](const auto &connection) { return connection.expired(); });
        if (connections.size() >= m_shared.config.limits.connections) {
            m_shared.limits->refuse(caller, Limit::AllConnections);
            return false;
        }
        return true;
    }

    Shared &m_shared;
    Tcp::acceptor m_acceptor;
    asio::steady_timer m_acceptTimer;
};

HttpsServer::HttpsServer(asio::io_context &context, const Config &config, Handler handler,
                         RequestRecorder &recorder)
    : m_shared(std::make_unique<Shared>(context, config, std::move(handler), recorder)) {}

HttpsServer::~HttpsServer() = default;

Result<> HttpsServer::start() {
    const Config &config = m_shared->config;
    if (auto loaded = reloadCertificate(); !loaded) {
        return loaded;
    }
    for (const ListenAddress &address : config.listen) {
        const auto listener = std::make_shared<Listener>(*m_shared);
        const error_code error = listener->bind(address);
        if (error) {
            return Failure{"listen: " + address.address + " port " + std::to_string(address.port) + ": " +
                           error.message()};
        }
        m_listeners.push_back(listener);
        listener->accept();
    }
    m_shared->reportOldRefusals();
    return {};
}

Result<> HttpsServer::reloadCertificate() {
    ssl::context tls{ssl::context::tls_server};
    auto prepared = prepareServerTls(tls.native_handle(), m_shared->config);
    if (prepared) {
        m_shared->tls = std::move(tls); // connections that exist hold the former one
    }
    return prepared;
}

const CallerLimits &HttpsServer::limits() const {
    return *m_shared->limits;
}

void HttpsServer::stop() {
    m_shared->reportTimer.cancel();
    for (const auto &listener : m_listeners) {
        listener->stop();
    }
    for (const auto &weak : m_shared->connections) {
        if (const auto connection = weak.lock()) {
            connection->finishSoon();
        }
    }
}

std::vector<std::string> HttpsServer::bound() const {
    std::vector<std::string> addresses;
    for (const auto &listener : m_listeners) {
        addresses.push_back(listener->bound());
    }
    return addresses;
}

} // namespace quorvane::service
