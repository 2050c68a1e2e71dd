#pragma once

/// Numbers that are set for OpenVPN, so that the options beside them can be found in its
/// memory.
namespace recorder {

constexpr int renegotiateBytes = 1122334455;   ///< "reneg-bytes"
constexpr int renegotiatePackets = 1222334455; ///< "reneg-pkts"
constexpr int connectTimeout = 987654321;      ///< "connect-timeout", set in the configuration
constexpr int routeDelay = 305419896;          ///< "route-delay", the first value
constexpr int routeDelayWindow = 305419897;    ///< "route-delay", the second value

} // namespace recorder
