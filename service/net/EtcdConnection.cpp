// Includes Beast and the TLS streams, which are slow to compile.
#include <utility>

#include <boost/asio/ssl.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/ssl.hpp>

#include "EtcdConnection.h"

#include "core/EtcdMessages.h"

#include <deque>
#include <openssl/x509_vfy.h>
#include <optional>

namespace quorvane::service {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
namespace ssl = boost::asio::ssl;
using Tcp = boost::asio::ip::tcp;
using boost::system::error_code;

namespace {

constexpr std::uint32_t maximumHeader = 16 << 10;

std::string hostOf(const EtcdSettings::Endpoint &endpoint) {
    const bool version6 = endpoint.address.find(':') != std::string::npos;
    return (version6 ? '[' + endpoint.address + ']' : endpoint.address) + ':' + std::to_string(endpoint.port);
}

} // namespace

/// The pending operations own it.
class EtcdConnection::Impl : public std::enable_shared_from_this<EtcdConnection::Impl> {
public:
    Impl(asio::io_context &context, std::shared_ptr<ssl::context> tls, EtcdSettings::Endpoint endpoint,
         std::chrono::milliseconds deadline)
        : m_tls(std::move(tls)), m_stream(context, *m_tls), m_endpoint(std::move(endpoint)),
          m_deadline(deadline) {}

    void open(Opened opened) {
        m_opened = std::move(opened);
        error_code error;
        const auto address = asio::ip::make_address(m_endpoint.address, error);
        X509_VERIFY_PARAM *parameters = SSL_get0_param(m_stream.native_handle());
        if (error || X509_VERIFY_PARAM_set1_ip_asc(parameters, m_endpoint.address.c_str()) != 1) {
            fail("the address is not numeric");
            return;
        }
        expire();
        beast::get_lowest_layer(m_stream).async_connect(
            Tcp::endpoint(address, m_endpoint.port),
            [self = shared_from_this()](error_code failed) { self->connected(failed); });
    }

    void post(const std::string &path, const std::string &body, Answered answered) {
        m_waiting.push_back({path, body, std::move(answered)});
        if (m_waiting.size() == 1) {
            sendNext();
        }
    }

    void stream(const std::string &path, const std::string &body, Line line, Ended ended) {
        m_line = std::move(line);
        m_ended = std::move(ended);
        prepare(path, body);
        expire();
        http::async_write(m_stream, m_request, [self = shared_from_this()](error_code error, std::size_t) {
            self->awaitHeader(error);
        });
    }

    /// Ends it, and calls no function any more.
    void abandon() {
        m_abandoned = true;
        close();
    }

private:
    struct Waiting {
        std::string path;
        std::string body;
        Answered answered;
    };

    void close() {
        m_closed = true;
        m_waiting.clear();
        m_opened = {};
        m_line = {};
        m_ended = {};
        error_code ignored;
        beast::get_lowest_layer(m_stream).socket().close(ignored);
    }

    void expire() { beast::get_lowest_layer(m_stream).expires_after(m_deadline); }

    void connected(error_code error) {
        if (failed(error)) {
            return;
        }
        m_stream.async_handshake(ssl::stream_base::client, [self = shared_from_this()](error_code refused) {
            if (!self->failed(refused)) {
                std::exchange(self->m_opened, {})(Result<>());
            }
        });
    }

    void prepare(const std::string &path, const std::string &body) {
        m_request = {http::verb::post, path, 11};
        m_request.set(http::field::host, hostOf(m_endpoint));
        m_request.set(http::field::content_type, "application/json");
        m_request.body() = body;
        m_request.prepare_payload();
        m_answer.emplace();
        m_answer->header_limit(maximumHeader);
        m_answer->body_limit(etcd::maximumAnswer);
    }

    void sendNext() {
        prepare(m_waiting.front().path, m_waiting.front().body);
        expire();
        http::async_write(m_stream, m_request, [self = shared_from_this()](error_code error, std::size_t) {
            if (self->failed(error)) {
                return;
            }
            http::async_read(self->m_stream, self->m_buffer, *self->m_answer,
                             [self](error_code broken, std::size_t) { self->answered(broken); });
        });
    }

    void answered(error_code error) {
        if (failed(error)) {
            return;
        }
        const std::string text = std::move(m_answer->get().body());
        const bool stays = m_answer->get().keep_alive();
        const Answered done = std::move(m_waiting.front().answered);
        m_waiting.pop_front();
        beast::get_lowest_layer(m_stream).expires_never();
        if (!stays) {
            m_waiting.push_front({{}, {}, done});
            fail("the server ended the connection");
            return;
        }
        const auto self = shared_from_this(); // `done` may end the connection
        if (!m_waiting.empty()) {
            sendNext();
        }
        done(text);
    }

    void awaitHeader(error_code error) {
        if (failed(error)) {
            return;
        }
        m_answer->body_limit(boost::none);
        m_answer->eager(true);
        http::async_read_header(m_stream, m_buffer, *m_answer,
                                [self = shared_from_this()](error_code broken, std::size_t) {
                                    beast::get_lowest_layer(self->m_stream).expires_never();
                                    self->received(broken);
                                });
    }

    /// A part of an answer that has no end.
    void received(error_code error) {
        if (failed(error)) {
            return;
        }
        const Line report = m_line; // which it may remove
        m_incomplete += std::exchange(m_answer->get().body(), {});
        for (auto end = m_incomplete.find('\n'); end != std::string::npos; end = m_incomplete.find('\n')) {
            const std::string line = m_incomplete.substr(0, end);
            m_incomplete.erase(0, end + 1);
            report(line);
            if (m_closed) {
                return;
            }
        }
        if (m_incomplete.size() > etcd::maximumAnswer || m_answer->is_done()) {
            fail(m_answer->is_done() ? "the server ended the watch" : "a message is too long");
            return;
        }
        http::async_read_some(
            m_stream, m_buffer, *m_answer,
            [self = shared_from_this()](error_code broken, std::size_t) { self->received(broken); });
    }

    /// Ends the connection after an error. True when there was one, or when it has ended before.
    bool failed(error_code error) {
        if (error && !m_closed) {
            fail(error == beast::error::timeout ? "no answer in time" : error.message());
        }
        return m_closed || error;
    }

    void fail(const std::string &reason) {
        const auto self = shared_from_this();
        const auto opened = std::exchange(m_opened, {});
        const auto ended = std::exchange(m_ended, {});
        const auto waiting = std::exchange(m_waiting, {});
        close();
        if (opened) {
            opened(Failure{reason});
        }
        for (const Waiting &request : waiting) {
            if (!m_abandoned) {
                request.answered(Failure{reason});
            }
        }
        if (ended && !m_abandoned) {
            ended(reason);
        }
    }

    std::shared_ptr<ssl::context> m_tls;
    beast::ssl_stream<beast::tcp_stream> m_stream;
    EtcdSettings::Endpoint m_endpoint;
    std::chrono::milliseconds m_deadline;
    Opened m_opened;
    Line m_line;
    Ended m_ended;
    std::deque<Waiting> m_waiting;
    http::request<http::string_body> m_request;
    std::optional<http::response_parser<http::string_body>> m_answer;
    beast::flat_buffer m_buffer{1 << 20};
    std::string m_incomplete; ///< the beginning of a line
    bool m_closed = false;
    bool m_abandoned = false; ///< its owner has closed it
};

EtcdConnection::EtcdConnection(asio::io_context &context, std::shared_ptr<ssl::context> tls,
                               const EtcdSettings::Endpoint &endpoint, std::chrono::milliseconds deadline)
    : m_impl(std::make_shared<Impl>(context, std::move(tls), endpoint, deadline)) {}

EtcdConnection::~EtcdConnection() {
    m_impl->abandon();
}

void EtcdConnection::open(Opened opened) {
    m_impl->open(std::move(opened));
}

void EtcdConnection::post(const std::string &path, const std::string &body, Answered answered) {
    m_impl->post(path, body, std::move(answered));
}

void EtcdConnection::stream(const std::string &path, const std::string &body, Line line, Ended ended) {
    m_impl->stream(path, body, std::move(line), std::move(ended));
}

} // namespace quorvane::service
