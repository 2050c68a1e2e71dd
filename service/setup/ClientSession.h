#pragma once

#include "core/Config.h"

#include "common/FileDescriptor.h"

#include <functional>
#include <string>

#include <sys/types.h>

namespace quorvane::service {

/// How a client of the check reaches the service.
struct ServicePoint {
    std::string host; ///< in the address, checked against the certificate
    std::uint16_t port = 443;
    std::string address;     ///< that the host's name is taken to have
    std::string authorities; ///< file of the certificates that are trusted
};

/// Requests of a client. Only the certificates of the service point are trusted.
class HttpsClient {
public:
    explicit HttpsClient(ServicePoint point) : m_point(std::move(point)) {}

    /// The answer with status 200.
    [[nodiscard]] Result<std::string> get(const std::string &target) const;

private:
    ServicePoint m_point;
};

/// The VPN user and the addresses of a server list.
struct ServerList {
    std::string user;
    std::string password;
    std::string servers; ///< the lines that list addresses

    [[nodiscard]] bool lends(Ipv4Address address) const;
};

/// Nothing when the answer is no server list.
[[nodiscard]] std::optional<ServerList> readServerList(const std::string &answer);
/// The OpenVPN configuration in an answer; a failure has the service's error.
Result<std::string> readConfiguration(const std::string &answer);

/// A running OpenVPN client.
class VpnClient {
public:
    VpnClient() = default;
    ~VpnClient();
    VpnClient(const VpnClient &) = delete;
    VpnClient &operator=(const VpnClient &) = delete;

    /// Starts the program and waits until the tunnel is up.
    Result<> start(const std::string &program, const std::string &configuration,
                   const std::string &credentials);

private:
    Result<> awaitTunnel();

    pid_t m_process = 0;
    FileDescriptor m_output;
};

} // namespace quorvane::service
