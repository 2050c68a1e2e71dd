#pragma once

#include "Config.h"

#include <string>
#include <string_view>

namespace quorvane::service {

/// The configuration that a client receives for one lent address. Every line has a line feed.
///
/// It contains the CA. With it OpenVPN ends with an error when the server does not answer or becomes silent:
/// a client that only watches OpenVPN's log sees the end in every case. `caPem` is the content of the CA
/// file, of which only the certificates are used.
[[nodiscard]] std::string clientConfiguration(const Vpn &vpn, const VpnServer &server, Ipv4Address remote,
                                              std::string_view caPem);

/// The configuration of the OpenVPN server, which connects to the service at `managementSocket`. `clientCa`
/// is the file of the authorities of its clients' certificates.
[[nodiscard]] std::string serverConfiguration(const Vpn &vpn, const VpnServer &server,
                                              const std::string &clientCa,
                                              const std::string &managementSocket);

/// Further lines for serverConfiguration(): what limits the work for callers that have not logged in.
/// `controlKey` is the file of the key of tls-crypt-v2.
[[nodiscard]] std::string serverLimits(const VpnLimits &limits, const VpnServer &server,
                                       const std::string &controlKey);

/// The certificate blocks of a PEM text, without carriage returns and without text between the blocks.
[[nodiscard]] std::string pemCertificates(std::string_view pem);

} // namespace quorvane::service
