#pragma once

#include "AnnouncedRequests.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace quorvane::service {

/// The state of one OpenVPN server.
struct ServerStatus {
    std::string name;
    bool running = false;
    bool ready = false;
    std::size_t clients = 0;
    std::map<std::string, std::uint64_t> refusedLogins{}; ///< by reason, since the server was started
};

/// The state of the service.
struct ServiceStatus {
    std::vector<ServerStatus> servers;
    std::size_t credentials = 0; ///< number of grants of VPN users
};

/// Answers the lines of the control socket.
class ControlCommands {
public:
    using Status = std::function<ServiceStatus()>;

    /// `announced` is not owned.
    ControlCommands(AnnouncedRequests &announced, Status status);

    /// One JSON object in, one JSON object out, both without a line feed. A line that is not understood is
    /// answered with an error.
    [[nodiscard]] std::string answer(std::string_view line);

private:
    AnnouncedRequests &m_announced;
    Status m_status;
};

} // namespace quorvane::service
