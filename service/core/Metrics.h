#pragma once

#include "ControlCommands.h"

#include <chrono>
#include <string>
#include <vector>

namespace quorvane::service {

/// What the page of metrics reports.
struct Metrics {
    std::chrono::seconds uptime{0};
    std::vector<ServerStatus> servers;
    Facts facts;
};

/// The page in the text format of Prometheus.
[[nodiscard]] std::string metricsPage(const Metrics &metrics);

} // namespace quorvane::service
