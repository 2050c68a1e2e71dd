#pragma once

#include "Config.h"
#include "CredentialStore.h"
#include "Target.h"

#include <string>

namespace quorvane::service {

/// What the listener hands over of one well-formed HTTP request.
struct HttpRequest {
    std::string peer; ///< the caller's numeric address
    std::string method;
    std::string target; ///< as it stood in the request line
    std::string host;
    std::string accept;
};

struct HttpResponse {
    int status = 200;
    std::string contentType;
    std::string body;
    std::string allow; ///< the Allow header; left out when empty
};

/// Answers requests: the commands of the application, the web pages and everything else.
/// Knows nothing of sockets; used from one thread. Neither argument is owned.
class Api {
public:
    Api(const Config &config, std::string caPem, CredentialStore &credentials);

    HttpResponse answer(const HttpRequest &request);

private:
    HttpResponse command(const Target &target, const std::string &name, const std::string &peer);
    std::string serverList(const Target &target, const std::string &peer);
    std::string vpnConfiguration(const Target &target);
    HttpResponse addressPage(const HttpRequest &request) const;

    const Config &m_config;
    std::string m_caPem;
    CredentialStore &m_credentials;
};

} // namespace quorvane::service
