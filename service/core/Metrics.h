#pragma once

#include "ControlCommands.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace quorvane::service {

/// What the page of metrics reports.
struct Metrics {
    std::chrono::seconds uptime{0};
    std::vector<ServerStatus> servers;
    std::uint64_t lends = 0;        ///< since the start
    std::uint64_t failedLends = 0;  ///< logins that were refused because the gateway could not lend
    std::uint64_t currentLends = 0; ///< addresses of tunnels that are lent an address now
    std::vector<std::pair<std::string, std::uint64_t>> refused;     ///< limit and number since the start
    std::vector<std::pair<std::string, std::int64_t>> certificates; ///< key in the configuration and expiry
};

/// The page in the text format of Prometheus.
[[nodiscard]] std::string metricsPage(const Metrics &metrics);

} // namespace quorvane::service
