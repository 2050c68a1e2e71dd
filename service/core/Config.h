#pragma once

#include "Announcement.h"
#include "EtcdSettings.h"
#include "Ipv4.h"
#include "common/Result.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::service {

/// An address of the HTTPS listener. With port 0 the system chooses one.
struct ListenAddress {
    std::string address;
    std::uint16_t port = 0;
};

/// A group of lent addresses, which the application shows as one location.
struct Group {
    std::string countryCode; ///< two upper-case letters
    std::string country;     ///< the country's name
    std::string locationCode;
    std::string city;
    std::string label; ///< title in the location list; "country city" by default
    bool full = false;
    std::vector<Ipv4Address> addresses;
};

/// The country that callers from one network are in.
struct HomeNetwork {
    Ipv4Network network;
    std::string countryCode;
};

/// Limits of each log: the request log and those of the OpenVPN servers.
struct LogLimits {
    std::uint32_t fileBytes = 16 << 20;   ///< then the file becomes a copy and a new one is begun
    unsigned copies = 4;                  ///< older ones are removed
    std::uint32_t bytesPerSecond = 65536; ///< on average; 0: no limit
};

/// Limits of the OpenVPN servers.
struct VpnLimits {
    std::chrono::seconds handshake{10}; ///< from the first packet of a client to its login
    unsigned startsPerSecond = 4;       ///< new sessions of one source
    unsigned startsBurst = 20;          ///< new sessions of one source at once
    unsigned unfinished = 4096;         ///< clients that have not logged in, beside those that have
};

/// Limits of each caller of the HTTPS listener. 0: no limit.
struct PerCallerLimits {
    unsigned requestsPerSecond = 20;
    unsigned configurationsPerSecond = 5;
    unsigned connectionsPerSecond = 20;
    unsigned handshakesPerSecond = 20;
    unsigned connections = 64; ///< at once
    unsigned burstSeconds = 5; ///< after a pause so many seconds' worth may come at once
};

struct Limits {
    unsigned connections = 4096;
    std::chrono::seconds handshake{10};
    std::chrono::seconds request{15}; ///< for one request, including the idle time before it
    unsigned headerBytes = 16384;
    PerCallerLimits perCaller;
    VpnLimits vpn;
};

enum class Protocol { Udp, Tcp };

/// "udp" or "tcp", as used in file names and log lines.
[[nodiscard]] std::string protocolName(Protocol protocol);

/// One OpenVPN server.
struct VpnServer {
    Protocol protocol = Protocol::Udp;
    std::uint16_t port = 0;
    Ipv4Network network; ///< the tunnel network
    std::string device;  ///< interface name on the gateway
};

struct Vpn {
    std::string ca;
    std::string certificate;
    std::string key;
    std::string certificateName; ///< checked by the client when not empty
    std::string controlKey;      ///< file of the key of tls-crypt-v2; empty: made in the runtime folder
    std::string clientAuthority; ///< file of the authority of clients' certificates; empty: made there, too
    std::optional<VpnServer> udp;
    std::optional<VpnServer> tcp;
    std::vector<Ipv4Address> dns;
    bool blockIpv6 = true;
    std::chrono::seconds ping{10};
    std::chrono::seconds pingExit{60};
    std::chrono::seconds renegotiation{3600}; ///< after that time a session's keys are renewed

    [[nodiscard]] const std::optional<VpnServer> &server(Protocol protocol) const {
        return protocol == Protocol::Udp ? udp : tcp;
    }
};

/// How the service reaches its gateway. Without a gateway no OpenVPN server is run.
struct Gateway {
    std::vector<std::string> command; ///< prefix of every command; may be empty
    std::string openvpn = "/usr/sbin/openvpn";
    std::string nft = "/usr/sbin/nft";
    bool createTables = true;
    std::string table = "quorvane";
    std::string map = "lent";
    std::string set = "allowed";
    std::string wanInterface; ///< empty: any interface
    /// Private networks, and networks of the gateway's own addresses, that VPN users may reach.
    std::vector<Ipv4Network> allowPrivate;
};

/// Where the page of metrics is: at a port of a loopback address, or at a socket in the file system.
struct MetricsListener {
    std::string address;
    std::uint16_t port = 0;
    std::string socket; ///< absolute path; empty: the port
};

/// What a process of the service does: it answers requests, it lends addresses, or both.
enum class Role { All, Api, Gateway };

/// "all", "api" or "gateway".
[[nodiscard]] std::optional<Role> roleNamed(std::string_view name);

struct Config {
    Role role = Role::All; ///< from the command line
    std::string file;      ///< the configuration's own; empty when it was not read from a file
    std::vector<ListenAddress> listen;
    std::string tlsCertificate;
    std::string tlsKey;
    std::vector<Group> groups;
    std::vector<HomeNetwork> homes;
    std::chrono::seconds credentialLifetime{86400};
    std::chrono::seconds grantLifetime{60};
    std::string userKeys;  ///< file of the keys of VPN users; empty: made in the runtime folder
    std::string stateFile; ///< of what the operator has ordered; empty: in the runtime folder
    std::string requestLog;
    std::string runtimeFolder;
    bool strict = false;
    std::vector<Announcement> announced;
    Limits limits;
    LogLimits log;
    std::optional<MetricsListener> metrics;
    Vpn vpn;
    std::optional<Gateway> gateway;
    std::optional<EtcdSettings> etcd; ///< nothing: the node knows no other ones

    [[nodiscard]] bool answersRequests() const { return role != Role::Gateway; }

    [[nodiscard]] bool lendsAddresses() const { return role != Role::Api && gateway.has_value(); }

    /// The file of the servers' key of tls-crypt-v2.
    [[nodiscard]] std::string controlKeyPath() const;
    /// The file of the authority of the clients' certificates.
    [[nodiscard]] std::string clientAuthorityPath() const;
    /// The file of its certificates alone, which the OpenVPN servers read.
    [[nodiscard]] std::string clientCertificatesPath() const;
    /// The file of what the operator has ordered.
    [[nodiscard]] std::string stateFilePath() const;
    /// The file of what was last known of other nodes.
    [[nodiscard]] std::string sharedFactsPath() const;
    /// The file of the keys of VPN users.
    [[nodiscard]] std::string userKeysPath() const;
    /// The group that lends the address, or null.
    [[nodiscard]] const Group *groupOf(Ipv4Address address) const;
    /// The country code of a caller: that of its home network or of the group that lends its address, else
    /// "XX".
    [[nodiscard]] std::string countryOf(std::string_view peer) const;
};

/// Reads the configuration text as it is for the role. The message of a failure names the key, as in
/// "groups[2].city: ...".
Result<Config> parseConfig(std::string_view json, Role role = Role::All);

/// Reads the configuration file, and checks that the files named in it that the role needs can be read.
Result<Config> loadConfig(const std::string &path, Role role = Role::All);

} // namespace quorvane::service
