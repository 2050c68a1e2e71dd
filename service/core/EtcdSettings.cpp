#include "EtcdSettings.h"

#include "JsonReader.h"
#include "NodeName.h"

#include <arpa/inet.h>
#include <array>
#include <charconv>
#include <unistd.h>

namespace quorvane::service {

namespace {

constexpr std::size_t maximumEndpoints = 16;
constexpr std::size_t maximumPrefix = 200;

std::string hostName() {
    std::array<char, 65> name{};
    return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : std::string();
}

/// "10.0.0.1:2379" or "[2001:db8::1]:2379".
std::optional<EtcdSettings::Endpoint> endpointIn(const std::string &text) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string::npos) {
        return std::nullopt;
    }
    std::string address = text.substr(0, colon);
    const bool version6 = address.size() > 2 && address.front() == '[' && address.back() == ']';
    if (version6) {
        address = address.substr(1, address.size() - 2);
    }
    in6_addr bytes{};
    const bool numeric = version6 ? inet_pton(AF_INET6, address.c_str(), &bytes) == 1
                                  : Ipv4Address::parse(address).has_value();
    std::uint16_t port = 0;
    const char *end = text.data() + text.size();
    const auto read = std::from_chars(text.data() + colon + 1, end, port);
    if (!numeric || read.ec != std::errc() || read.ptr != end || port == 0) {
        return std::nullopt;
    }
    return EtcdSettings::Endpoint{address, port};
}

std::string readPrefix(JsonReader &reader) {
    std::string prefix = reader.text("prefix", "/quorvane/");
    if (prefix.size() > maximumPrefix || prefix.front() != '/' || prefix.back() != '/') {
        reader.fail("prefix", "must begin and end with \"/\" and have at most " +
                                  std::to_string(maximumPrefix) + " bytes");
    }
    return prefix;
}

} // namespace

EtcdSettings readEtcdSettings(JsonReader &reader) {
    EtcdSettings settings;
    for (const std::string &text : reader.texts("endpoints")) {
        const auto endpoint = endpointIn(text);
        if (!endpoint) {
            reader.fail("endpoints[" + std::to_string(settings.endpoints.size()) + ']',
                        "must be a numeric address and a port, such as 10.0.0.1:2379");
        }
        settings.endpoints.push_back(*endpoint);
    }
    if (settings.endpoints.empty() || settings.endpoints.size() > maximumEndpoints) {
        reader.fail("endpoints", "must hold 1 to " + std::to_string(maximumEndpoints) + " addresses");
    }
    settings.ca = reader.text("ca");
    settings.certificate = reader.text("certificate");
    settings.key = reader.text("key");
    settings.prefix = readPrefix(reader);
    settings.name = reader.has("name") ? reader.text("name") : hostName();
    if (!isNodeName(settings.name)) {
        reader.fail("name", "must be 1 to 64 letters, digits, \".\", \"_\" or \"-\"");
    }
    settings.lease = std::chrono::seconds(reader.number("lease_seconds", 2, 60, 3));
    return settings;
}

} // namespace quorvane::service
