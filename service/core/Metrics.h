#pragma once

#include "ControlCommands.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace quorvane::service {

/// What the page of metrics reports.
struct Metrics {
    std::chrono::seconds uptime{0};
    std::vector<ServerStatus> servers;
    Facts facts;
    std::optional<bool> etcdConnected{}; ///< nothing without etcd
};

/// The page in the text format of Prometheus.
[[nodiscard]] std::string metricsPage(const Metrics &metrics);

} // namespace quorvane::service
