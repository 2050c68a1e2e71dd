#pragma once

#include "AnnouncedRequests.h"
#include "Ipv4.h"
#include "SharedStatus.h"
#include "common/Result.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quorvane::service {

/// The state of one OpenVPN server.
struct ServerStatus {
    std::string name;
    bool running = false;
    bool ready = false;
    std::size_t clients = 0;
    std::map<std::string, std::uint64_t> refusedLogins{}; ///< by reason, since the server was started
};

/// What has happened since the start, and what the service uses.
struct Facts {
    std::uint64_t lends = 0;        ///< since the start
    std::uint64_t failedLends = 0;  ///< logins that were refused because the gateway could not lend
    std::uint64_t currentLends = 0; ///< addresses of tunnels that are lent an address now
    std::vector<std::pair<std::string, std::uint64_t>> refused{};     ///< limit and number since the start
    std::vector<std::pair<std::string, std::int64_t>> certificates{}; ///< key in the configuration and expiry
};

/// The state of the service.
struct ServiceStatus {
    std::vector<ServerStatus> servers;
    std::size_t credentials = 0; ///< number of used grants that are remembered
    bool draining = false;
    std::size_t revocations = 0; ///< users and addresses that are revoked
    Facts facts{};
    bool confined = false;                ///< the process can open no file for reading and start no program
    std::optional<SharedStatus> shared{}; ///< nothing when there are no other nodes
};

/// True when all servers accept clients.
[[nodiscard]] bool allReady(const std::vector<ServerStatus> &servers);

/// What the operator may order. Each reports a failure to write the order down.
struct OperatorOrders {
    /// Takes changed files soon; it may end the process instead.
    std::function<void()> reload;
    std::function<Result<>(bool on)> drain;
    /// Both return the number of sessions that were ended.
    std::function<Result<std::size_t>(const std::string &user)> revokeUser;
    std::function<Result<std::size_t>(Ipv4Address address)> revokeAddress;

    using Released = std::function<void(const Result<std::size_t> &addresses)>;

    /// Removes the claims of a gateway that is gone for good. `released` is called once, now or later.
    std::function<void(const std::string &gateway, Released released)> release;
    /// True while an order counts here only, since other nodes cannot be reached.
    std::function<bool()> unshared = [] {
        return false;
    };
};

/// Answers the lines of the control socket.
class ControlCommands {
public:
    using Status = std::function<ServiceStatus()>;

    /// `announced` is not owned.
    ControlCommands(AnnouncedRequests &announced, Status status, OperatorOrders orders);

    using Reply = std::function<void(const std::string &answer)>;

    /// One JSON object in, one JSON object out, both without a line feed. A line that is not understood is
    /// answered with an error. `reply` is called once, now or later.
    void answer(std::string_view line, const Reply &reply);

private:
    AnnouncedRequests &m_announced;
    Status m_status;
    OperatorOrders m_orders;
};

} // namespace quorvane::service
