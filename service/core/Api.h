#pragma once

#include "ClientAuthority.h"
#include "Config.h"
#include "ControlKey.h"
#include "Target.h"
#include "VpnUsers.h"

#include <functional>
#include <string>
#include <utility>

namespace quorvane::service {

/// The parts of a well-formed HTTP request that Api needs.
struct HttpRequest {
    std::string peer; ///< the caller's numeric address
    std::string method;
    std::string target; ///< as in the request line, not decoded
    std::string host;
    std::string accept;
};

struct HttpResponse {
    int status = 200;
    std::string contentType;
    std::string body;
    std::string allow; ///< the Allow header; not sent when empty
};

/// True for the target of a request for a configuration, which costs more than other requests.
[[nodiscard]] bool requestsConfiguration(std::string_view target);

/// Answers requests: the commands of the application, the web pages and everything else. Has no sockets. Use
/// it from one thread only.
class Api {
public:
    /// Neither `config` nor `users` is owned.
    Api(const Config &config, std::string caPem, VpnUsers &users);

    /// Every configuration contains a client key and a certificate made with these, which are not owned.
    void useKeys(const ControlKey &controlKey, const ClientAuthority &authority) {
        m_controlKey = &controlKey;
        m_authority = &authority;
    }

    /// While `draining` returns true, no address is offered.
    void setDraining(std::function<bool()> draining) { m_draining = std::move(draining); }

    /// Of the addresses in the groups only those for which `offered` returns true are available.
    void setOffered(std::function<bool(Ipv4Address)> offered) { m_offered = std::move(offered); }

    [[nodiscard]] HttpResponse answer(const HttpRequest &request);

private:
    [[nodiscard]] HttpResponse command(const Target &target, const std::string &name,
                                       const std::string &peer);
    [[nodiscard]] std::string serverList(const Target &target, const std::string &peer);
    [[nodiscard]] std::string vpnConfiguration(const Target &target);
    [[nodiscard]] std::vector<Group> offeredGroups() const;
    [[nodiscard]] HttpResponse addressPage(const HttpRequest &request) const;

    const Config &m_config;
    std::string m_caPem;
    VpnUsers &m_users;
    const ControlKey *m_controlKey = nullptr;
    const ClientAuthority *m_authority = nullptr;
    std::function<bool()> m_draining = [] {
        return false;
    };
    std::function<bool(Ipv4Address)> m_offered; ///< null: all are available
};

} // namespace quorvane::service
