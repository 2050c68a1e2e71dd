#pragma once

#include "Config.h"

#include <string>

namespace quorvane::service {

/// The sets and chains of the gateway's table that protect the ports of the OpenVPN servers: packets that no
/// client sends are dropped, and each source may begin a limited number of sessions a second. Packets at
/// these ports are not tracked by the kernel: otherwise strangers could fill its table of connections.
///
/// The sets have a fixed size, and an entry is removed when its source has been silent. While a set is full,
/// further sources are not limited: a stranger who fills it with invented sources blocks no client.
[[nodiscard]] std::string portRules(const Vpn &vpn, const VpnLimits &limits);

} // namespace quorvane::service
