#pragma once

#include "Configuration.h"
#include "common/Result.h"

#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace quorvane::guard {

/// One way to reach a server.
struct Endpoint {
    std::string address;  ///< numeric, IPv4
    std::string protocol; ///< "udp" or "tcp"
    unsigned port = 0;

    bool operator<(const Endpoint &other) const {
        return std::tie(address, protocol, port) < std::tie(other.address, other.protocol, other.port);
    }

    bool operator==(const Endpoint &) const = default;
};

/// Every way in which a configuration that is allowed may reach the servers that it has by their addresses.
/// Servers by name or over IPv6 are left out.
[[nodiscard]] std::set<Endpoint> endpointsOf(const std::vector<Directive> &directives);

/// What a session needs from the network lock while that is closed: its servers, for processes of root only,
/// and its own device. Resources/networklock makes the table with the sets for both. Without a closed lock
/// nothing is run.
class LockOpenings {
public:
    /// `note`: the file that is there while the lock is closed. `nft`: the program that changes the table.
    LockOpenings(std::string note, std::string nft) : m_note(std::move(note)), m_nft(std::move(nft)) {}

    /// Opens the lock for these servers, and takes back what any other session has left open.
    Result<> openForServers(const std::set<Endpoint> &servers) const;

    /// Opens the lock for the device of the session, in place of an earlier one. The kernel uses the index of
    /// a device once only, so a device that is gone leaves nothing open.
    Result<> openForDevice(unsigned device) const;

    /// Takes everything back.
    void close() const;

private:
    Result<> run(const std::string &commands) const;

    std::string m_note;
    std::string m_nft;
};

} // namespace quorvane::guard
