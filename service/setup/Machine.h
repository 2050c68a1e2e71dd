#pragma once

#include "core/Ipv4.h"

#include "common/Result.h"

#include <optional>
#include <string>
#include <vector>

namespace quorvane::service {

/// The commands of the machine on which the service is set up.
class Machine {
public:
    virtual ~Machine() = default;

    /// Runs a program to its end with this standard input and returns its standard output. An exit status
    /// other than 0 is a failure with what the program printed.
    virtual Result<std::string> run(const std::vector<std::string> &command,
                                    const std::string &input = {}) = 0;
};

/// The real machine. Programs get a minimal environment.
class LocalMachine : public Machine {
public:
    Result<std::string> run(const std::vector<std::string> &command, const std::string &input = {}) override;
};

/// An address of a network interface.
struct OwnAddress {
    Ipv4Address address;
    unsigned prefix = 32; ///< of the network that is reached by the interface
    std::string device;

    [[nodiscard]] Ipv4Network network() const;
};

/// The machine's IPv4 addresses and default route.
struct MachineNetwork {
    std::vector<OwnAddress> addresses;
    std::string device;                 ///< of the default route; empty without one
    std::optional<Ipv4Address> nextHop; ///< of the default route

    [[nodiscard]] bool owns(Ipv4Address address) const;
    /// The first address of the default route's interface.
    [[nodiscard]] std::optional<Ipv4Address> publicAddress() const;

    static Result<MachineNetwork> read(Machine &machine);
};

} // namespace quorvane::service
