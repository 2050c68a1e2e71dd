#pragma once

#include "core/Config.h"

namespace quorvane::service::test {

/// Two groups, one home network, both protocols; no file of it is read.
inline Config sampleConfig() {
    Config config;
    config.groups = {{"DE",
                      "Germany",
                      "BER",
                      "Berlin",
                      "Germany Berlin",
                      true,
                      {*Ipv4Address::parse("203.0.113.5"), *Ipv4Address::parse("203.0.113.6")}},
                     {"US",
                      "United States",
                      "BOS",
                      "Boston",
                      "United States Boston",
                      false,
                      {*Ipv4Address::parse("203.0.113.42")}}};
    config.homes = {{*Ipv4Network::parse("198.51.100.0/24"), "AT"}};
    config.vpn.udp = VpnServer{Protocol::Udp, 1194, *Ipv4Network::parse("10.8.0.0/16"), "qrv-udp"};
    config.vpn.tcp = VpnServer{Protocol::Tcp, 443, *Ipv4Network::parse("10.9.0.0/16"), "qrv-tcp"};
    config.vpn.ca = "/pki/ca.crt";
    config.vpn.certificate = "/pki/vpn.crt";
    config.vpn.key = "/pki/vpn.key";
    config.vpn.certificateName = "vpn";
    return config;
}

/// Has the form of a certificate block; its content is no certificate.
inline constexpr const char *samplePem =
    "-----BEGIN CERTIFICATE-----\nAAAA\nBBBB\n-----END CERTIFICATE-----\n";

} // namespace quorvane::service::test
