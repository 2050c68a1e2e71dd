#pragma once

#include "CurlLibrary.h"
#include "UrlRequest.h"
#include "platform/UrlLoader.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <array>
#include <map>

namespace quorvane::platform {

/// One request and its answer over a connection of its own, driven by the event loop of the thread that made
/// it. Sends the request once and follows no redirect. Destroying it ends the exchange at once, also during a
/// name look-up.
class CurlExchange final : public QObject {
    Q_OBJECT

public:
    enum class State {
        Running,
        Complete, ///< the answer has come as a whole
        Redirect, ///< the head points elsewhere; the body is not received
        Failed
    };

    /// The family is one of CURL_IPRESOLVE_V4 and CURL_IPRESOLVE_V6. Nothing is sent before the event loop
    /// runs.
    CurlExchange(const CurlLibrary &curl, const UrlRequest &request, long family, qint64 largestBody,
                 QObject *parent);
    ~CurlExchange() override;
    CurlExchange(const CurlExchange &) = delete;
    CurlExchange &operator=(const CurlExchange &) = delete;

    [[nodiscard]] State state() const { return m_state; }

    /// The part of the body that has come since the last call.
    [[nodiscard]] QByteArray nextPiece();

    /// The bytes of body that have come so far.
    [[nodiscard]] qint64 received() const { return m_received; }

    /// The target of a redirect as the head contains it.
    [[nodiscard]] QByteArray location() const { return m_location; }

    /// How libcurl ended.
    [[nodiscard]] CURLcode code() const { return m_code; }

    /// The reason of a failure.
    [[nodiscard]] UrlError error() const;

Q_SIGNALS:
    /// Something may have changed. A socket that moved means that the peer or the resolver is alive. A
    /// receiver may destroy the exchange.
    void advanced(bool socketMoved);

private:
    /// A socket of libcurl's.
    struct Watch {
        QSocketNotifier reading{QSocketNotifier::Read};
        QSocketNotifier writing{QSocketNotifier::Write};
    };

    void configure(const UrlRequest &request, long family);
    void configureTls(const UrlRequest &request);
    void configureCallbacks();
    template <typename Value>
    void set(CURLoption option, Value value);
    void act(curl_socket_t socket, int events);
    void end(CURLcode code);
    void watch(curl_socket_t socket, int events);
    [[nodiscard]] bool acceptHeadLine(const QByteArray &line);
    [[nodiscard]] bool acceptHead();
    [[nodiscard]] bool acceptLength();
    [[nodiscard]] QByteArrayList fields(const char *name) const;
    [[nodiscard]] long status() const;
    [[nodiscard]] bool refuse(UrlError::Kind kind);

    static size_t headCallback(char *bytes, size_t size, size_t count, void *self);
    static size_t bodyCallback(char *bytes, size_t size, size_t count, void *self);
    static int socketCallback(CURL *easy, curl_socket_t socket, int events, void *self, void *socketData);
    static int timerCallback(CURLM *multi, long milliseconds, void *self);

    const CurlLibrary &m_curl;
    const qint64 m_largestBody;
    CURLM *m_multi = nullptr;
    CURL *m_easy = nullptr;
    curl_slist *m_fields = nullptr;
    curl_slist *m_resolved = nullptr;
    std::array<char, CURL_ERROR_SIZE> m_errorText{};
    std::map<curl_socket_t, Watch> m_sockets;
    QTimer m_timer;
    State m_state = State::Running;
    CURLcode m_code = CURLE_OK;
    /// Why the answer was refused here and not by libcurl.
    std::optional<UrlError::Kind> m_refusal;
    qint64 m_headSize = 0;
    bool m_headIsWhole = false;
    QByteArray m_location;
    QByteArray m_body;
    qint64 m_received = 0;
};

} // namespace quorvane::platform
