#pragma once

#include "Config.h"

#include <string>
#include <string_view>

namespace quorvane::service {

/// The configuration a client gets for one lent address, lines ended by a line feed.
///
/// It holds the CA itself and ends by itself, with an error, when the far side does not answer or falls
/// silent: a client that only watches OpenVPN's log then sees an end in every case.
/// `caPem` is the CA file's content; only its certificates are taken.
std::string clientConfiguration(const Vpn &vpn, const VpnServer &server, Ipv4Address remote,
                                std::string_view caPem);

/// The configuration of the OpenVPN server itself, which asks the service through `managementSocket`.
std::string serverConfiguration(const Vpn &vpn, const VpnServer &server, const std::string &managementSocket);

/// The certificate blocks of a PEM text with plain line feeds and nothing between the blocks.
std::string pemCertificates(std::string_view pem);

} // namespace quorvane::service
