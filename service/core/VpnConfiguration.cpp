#include "VpnConfiguration.h"

#include <algorithm>

namespace quorvane::service {

namespace {

constexpr std::string_view beginMark = "-----BEGIN CERTIFICATE-----";
constexpr std::string_view endMark = "-----END CERTIFICATE-----";

/// An address in the tunnel that only makes a route for IPv6: the client answers its IPv6 traffic with
/// "unreachable" instead of sending it past the tunnel.
constexpr std::string_view blockIpv6 = "redirect-gateway def1 ipv6\n"
                                       "ifconfig-ipv6 fd71:7276:6e00::2/64 fd71:7276:6e00::1\n"
                                       "block-ipv6\n";

constexpr std::string_view ciphers = "data-ciphers AES-256-GCM:CHACHA20-POLY1305\n"
                                     "tls-version-min 1.2\n";

/// First packets of clients that are responded to in a second.
constexpr std::uint64_t minimumResponses = 1000;
constexpr std::uint64_t maximumResponses = 20000;

} // namespace

std::string pemCertificates(std::string_view pem) {
    std::string blocks;
    for (auto begin = pem.find(beginMark); begin != std::string_view::npos;
         begin = pem.find(beginMark, begin)) {
        const auto end = pem.find(endMark, begin);
        if (end == std::string_view::npos) {
            break;
        }
        for (const char character : pem.substr(begin, end + endMark.size() - begin)) {
            if (character != '\r') {
                blocks += character;
            }
        }
        blocks += '\n';
        begin = end + endMark.size();
    }
    return blocks;
}

std::string clientConfiguration(const Vpn &vpn, const VpnServer &server, Ipv4Address remote,
                                std::string_view caPem) {
    const bool udp = server.protocol == Protocol::Udp;
    std::string text = "client\n"
                       "dev tun\n";
    text += udp ? "proto udp\n" : "proto tcp-client\n";
    text += "remote " + remote.text() + ' ' + std::to_string(server.port) + '\n';
    // A tunnel that reconnects keeps its device and routes meanwhile: nothing leaves past it.
    text += "nobind\n"
            "persist-tun\n"
            "auth-user-pass\n"
            "auth-nocache\n"
            "remote-cert-tls server\n";
    if (!vpn.certificateName.empty()) {
        text += "verify-x509-name \"" + vpn.certificateName + "\" name\n";
    }
    text += ciphers;
    text += "resolv-retry 0\n"
            "connect-retry-max 1\n"
            "connect-timeout 5\n"
            "hand-window 5\n";
    if (udp) {
        text += "explicit-exit-notify 1\n";
    }
    text += vpn.blockIpv6 ? blockIpv6 : std::string_view("redirect-gateway def1\n");
    text += "verb 3\n"
            "<ca>\n";
    return text + pemCertificates(caPem) + "</ca>\n";
}

std::string serverConfiguration(const Vpn &vpn, const VpnServer &server, const std::string &clientCa,
                                const std::string &managementSocket) {
    const bool udp = server.protocol == Protocol::Udp;
    // A server with many addresses must answer from the address that received the packet.
    std::string text =
        udp ? "proto udp\nmultihome\nexplicit-exit-notify 1\n" : "proto tcp-server\ntcp-nodelay\n";
    text += "port " + std::to_string(server.port) + '\n';
    text += "dev " + server.device + "\ndev-type tun\ntopology subnet\n";
    text += "server " + server.network.base.text() + ' ' + server.network.mask().text() + " nopool\n";
    text += "ca \"" + clientCa + "\"\ncert \"" + vpn.certificate + "\"\nkey \"" + vpn.key + "\"\ndh none\n";
    text += "verify-client-cert require\n"
            "username-as-common-name\n"
            "duplicate-cn\n"
            "persist-key\n";
    text += ciphers;
    text += "management \"" + managementSocket + "\" unix\n";
    text += "management-client\n"
            "management-client-auth\n"
            "management-hold\n";
    // Not "keepalive", with which clients would restart instead of ending. Clients receive these values only
    // when the tunnel is up; before, hand-window ends them.
    text += "reneg-sec " + std::to_string(vpn.renegotiation.count()) + '\n';
    text += "ping " + std::to_string(vpn.ping.count()) + '\n';
    text += "ping-restart " + std::to_string(2 * vpn.pingExit.count()) + '\n';
    text += "push \"ping " + std::to_string(vpn.ping.count()) + "\"\n";
    text += "push \"ping-exit " + std::to_string(vpn.pingExit.count()) + "\"\n";
    for (const Ipv4Address dns : vpn.dns) {
        text += "push \"dhcp-option DNS " + dns.text() + "\"\n";
    }
    return text + "verb 3\n";
}

std::string serverLimits(const VpnLimits &limits, const VpnServer &server, const std::string &controlKey) {
    // With the cookie the server stores nothing until a client has proved its address.
    std::string text = "tls-crypt-v2 \"" + controlKey + "\" force-cookie\n";
    text += "hand-window " + std::to_string(limits.handshake.count()) + '\n';
    // OpenVPN counts clients that have not logged in, too: they have places of their own.
    text += "max-clients " + std::to_string(server.network.size() + limits.unfinished) + '\n';
    if (server.protocol == Protocol::Udp) {
        // The response to a first packet is shorter than the packet, so strangers gain nothing from a high
        // limit, but with a low one a stranger who repeats first packets would use up the share of all
        // others.
        const auto responses = std::clamp(server.network.size(), minimumResponses, maximumResponses);
        text += "connect-freq-initial " + std::to_string(responses) + " 1\n";
    }
    return text;
}

} // namespace quorvane::service
