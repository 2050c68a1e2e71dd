#pragma once

#include "core/Api.h"
#include "core/CallerLimits.h"
#include "core/Config.h"
#include "core/RequestLog.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace boost::asio {
class io_context;
}

namespace quorvane::service {

/// The HTTPS listener. Everything runs on the one thread of the io_context. Every step of a connection has a
/// deadline, so stalled clients only use memory, which the connection limit bounds. A caller who exceeds
/// their own limits receives status 429 or has the connection closed.
class HttpsServer {
public:
    using Handler = std::function<HttpResponse(const HttpRequest &)>;

    /// None of the references is owned; all must outlive the server.
    HttpsServer(boost::asio::io_context &context, const Config &config, Handler handler,
                RequestRecorder &recorder);
    ~HttpsServer();
    HttpsServer(const HttpsServer &) = delete;
    HttpsServer &operator=(const HttpsServer &) = delete;

    /// Loads the certificate and binds all addresses.
    Result<> start();
    /// Uses the certificate and the key as they are in their files now, for new connections. When they are
    /// unusable, those in use stay.
    Result<> reloadCertificate();
    /// Stops accepting and closes every connection, those with a request that has begun after its answer,
    /// for which they have a few seconds. An object that was not stopped may be destroyed
    /// only when the io_context has stopped.
    void stop();

    /// What the listener has refused so far.
    [[nodiscard]] const CallerLimits &limits() const;

    /// "address port" of every bound address, with the port that the system chose.
    [[nodiscard]] std::vector<std::string> bound() const;

private:
    class Connection;
    class Listener;
    struct Shared;

    std::unique_ptr<Shared> m_shared;
    std::vector<std::shared_ptr<Listener>> m_listeners;
};

} // namespace quorvane::service
