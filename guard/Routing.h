#pragma once

#include "common/Result.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <sys/types.h>
#include <tuple>
#include <vector>

namespace quorvane::guard {

/// An IPv4 or IPv6 address as its 4 or 16 bytes in network order.
using Address = std::string;

/// A block of addresses: the first `length` bits of `address` are the same in all of them.
struct Network {
    int family = 0; ///< AF_INET or AF_INET6
    Address address;
    unsigned length = 0; ///< in bits

    [[nodiscard]] bool contains(const Network &other) const;

    bool operator<(const Network &other) const {
        return std::tie(family, address, length) < std::tie(other.family, other.address, other.length);
    }

    bool operator==(const Network &) const = default;
};

/// One way on which a route sends packets.
struct Hop {
    unsigned device = 0; ///< the index of a network device, 0 for none
    bool hasGateway = false;

    bool operator==(const Hop &) const = default;
};

/// A route of one of the kernel's tables.
struct Route {
    Network destination;
    std::uint32_t table = 0;
    unsigned char type = 0;     ///< RTN_UNICAST, RTN_UNREACHABLE, ...
    unsigned char protocol = 0; ///< which kind of program made it: RTPROT_BOOT, RTPROT_DHCP, ...
    std::vector<Hop> hops;
    /// The kernel's message about the route without counters and states, by which it can be made again. Two
    /// routes are the same when their messages are.
    std::string message;

    [[nodiscard]] bool leadsThroughGateway() const;
    [[nodiscard]] bool usesOnly(unsigned device) const;

    bool operator<(const Route &other) const { return message < other.message; }

    bool operator==(const Route &other) const { return message == other.message; }
};

/// A rule that selects the table for a packet.
struct Rule {
    int family = 0;
    std::uint32_t table = 0;
    std::uint32_t priority = 0;
    std::string message; ///< see Route::message

    bool operator<(const Rule &other) const { return message < other.message; }

    bool operator==(const Rule &other) const { return message == other.message; }
};

/// An address of a network device.
struct DeviceAddress {
    unsigned device = 0;
    Network address;

    bool operator<(const DeviceAddress &other) const {
        return std::tie(device, address) < std::tie(other.device, other.address);
    }
};

/// Everything that decides on which way packets leave the computer. The table "local", which the kernel keeps
/// for the computer's own addresses, is left out.
struct NetworkState {
    std::set<Route> routes;
    std::set<Rule> rules;
    std::set<DeviceAddress> addresses;
    std::map<unsigned, std::string> devices; ///< names by index
};

/// What has happened to the routes since the last look.
struct RouteChanges {
    std::vector<Route> added;
    std::vector<Route> removed;
    bool isIncomplete = false; ///< rules have changed, or notifications were lost
};

/// The kernel's routing. The program uses KernelRouting, tests a fake.
class Routing {
public:
    virtual ~Routing() = default;

    [[nodiscard]] virtual Result<NetworkState> state() = 0;

    /// A descriptor that is readable when there are changes; -1 for none.
    [[nodiscard]] virtual int changesDescriptor() const = 0;

    /// The changes since the last call. Does not wait.
    [[nodiscard]] virtual RouteChanges changes() = 0;

    /// Makes or removes one route. False when the kernel refuses.
    virtual bool add(const Route &route) = 0;
    virtual bool remove(const Route &route) = 0;

    /// The index of the tunnel device that a process has open.
    [[nodiscard]] virtual std::optional<unsigned> tunnelDeviceOf(pid_t process) = 0;
};

/// The address in a text; absent when it is none.
[[nodiscard]] std::optional<Network> hostOf(const std::string &text);

/// Address and length, for the log.
[[nodiscard]] std::string textOf(const Network &network);

} // namespace quorvane::guard
