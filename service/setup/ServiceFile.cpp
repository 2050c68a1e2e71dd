#include "ServiceFile.h"

#include <algorithm>
#include <array>

namespace quorvane::service {

namespace {

using Json = ServiceFile::Json;

/// Not 443, which the HTTPS listener has at one address of the same machine: an OpenVPN server binds its port
/// at all addresses.
constexpr int vpnPort = 1194;
/// The second number of tunnel networks 10.x.0.0/16, in pairs.
constexpr std::array<std::uint32_t, 8> tunnels = {8, 9, 88, 89, 168, 169, 232, 233};

Ipv4Network tunnel(std::uint32_t number) {
    return {Ipv4Address{(10U << 24) | (number << 16)}, 16};
}

/// The index in `tunnels` of the first pair that overlaps nothing; the first one when all do.
std::size_t freeTunnels(const std::vector<Ipv4Network> &used) {
    for (std::size_t i = 0; i + 1 < tunnels.size(); i += 2) {
        const bool taken = std::any_of(used.begin(), used.end(), [i](const Ipv4Network &network) {
            return network.overlaps(tunnel(tunnels[i])) || network.overlaps(tunnel(tunnels[i + 1]));
        });
        if (!taken) {
            return i;
        }
    }
    return 0;
}

Json texts(const std::vector<Ipv4Address> &addresses) {
    Json list = Json::array();
    for (const Ipv4Address address : addresses) {
        list.push_back(address.text());
    }
    return list;
}

Json tlsFiles(const Places &places, bool given) {
    return given ? Json{{"certificate", places.file("given.pem")}, {"key", places.file("given.pem")}}
                 : Json{{"certificate", places.file("api.crt")}, {"key", places.file("api.key")}};
}

Json vpnPart(const Places &places, const std::vector<Ipv4Network> &used) {
    const std::size_t first = freeTunnels(used);
    return {{"ca", places.file("vpn-ca.crt")},
            {"certificate", places.file("vpn.crt")},
            {"key", places.file("vpn.key")},
            {"certificate_name", "vpn"},
            {"control_key", places.file("control.key")},
            {"client_authority", places.file("client-authority.pem")},
            {"udp", {{"port", vpnPort}, {"network", tunnel(tunnels[first]).text()}}},
            {"tcp", {{"port", vpnPort}, {"network", tunnel(tunnels[first + 1]).text()}}},
            {"dns", {"8.8.8.8", "8.8.4.4"}}};
}

/// Two processes of two users share the file.
Json rolesPart(const Places &places) {
    const auto own = [&places](const char *user) {
        return Json{{"runtime_folder", places.runtimeOf(user)}, {"state_file", places.stateFileOf(user)}};
    };
    Json gateway = own(gatewayUser);
    gateway["vpn"] = {{"client_authority", places.file("client-authority.crt")}};
    return {{"api", own(apiUser)}, {"gateway", gateway}};
}

bool isUpper(char letter) {
    return letter >= 'A' && letter <= 'Z';
}

template <typename Value>
void set(Json &object, const char *key, const std::optional<Value> &value) {
    if (value) {
        object[key] = *value;
    }
}

} // namespace

std::string defaultLocationCode(const std::string &city, const std::string &countryCode) {
    std::string code;
    for (const char character : city) {
        const char letter =
            character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
        if (isUpper(letter) && code.size() < 3) {
            code += letter;
        }
    }
    return code.empty() ? countryCode : code;
}

std::optional<std::string> countryName(const std::string &isoCodes, const std::string &code) {
    const auto list = nlohmann::json::parse(isoCodes, nullptr, false);
    if (!list.is_object() || !list.contains("3166-1")) {
        return std::nullopt;
    }
    for (const auto &country : list.at("3166-1")) {
        if (country.value("alpha_2", "") == code) {
            // "Bolivia, Plurinational State of" has a usual name; of others the part before the comma is one.
            std::string name = country.value("common_name", country.value("name", ""));
            name.resize(std::min(name.find_first_of(",|;<>"), name.size()));
            return name.empty() ? std::nullopt : std::optional(name);
        }
    }
    return std::nullopt;
}

ServiceFile ServiceFile::make(const Places &places, const ServiceSettings &settings, const std::string &name,
                              const std::vector<Ipv4Network> &used) {
    const std::string country = settings.countryCode.value_or("XX");
    const std::string city = settings.city.value_or(name);
    const Json group = {{"country_code", country},
                        {"country", settings.country.value_or(country)},
                        {"city", city},
                        {"location_code", settings.locationCode.value_or(defaultLocationCode(city, country))},
                        {"addresses", texts(settings.addresses)}};
    const Json listener = {{"address", settings.listenAddress.value_or(Ipv4Address()).text()},
                           {"port", settings.listenPort.value_or(443)}};
    Json json = {{"listen", Json::array({listener})},
                 {"tls", tlsFiles(places, settings.givenCertificate)},
                 {"groups", Json::array({group})},
                 {"keys", places.file("user.keys")},
                 {"state_file", places.stateFileOf(serviceGroup)},
                 {"request_log", places.logs + "/requests.jsonl"},
                 {"runtime_folder", places.runtimeOf(serviceGroup)},
                 {"roles", rolesPart(places)},
                 {"vpn", vpnPart(places, used)},
                 {"gateway", {{"command", Json::array()}}}};
    if (!settings.dns.empty()) {
        json["vpn"]["dns"] = texts(settings.dns);
    }
    return ServiceFile(std::move(json));
}

Result<ServiceFile> ServiceFile::parse(const std::string &text) {
    Json json = Json::parse(text, nullptr, false);
    if (!json.is_object()) {
        return Failure{"is not valid JSON"};
    }
    return ServiceFile(std::move(json));
}

Result<> ServiceFile::apply(const Places &places, const ServiceSettings &settings) {
    try {
        Json &listener = m_json.at("listen").at(0);
        set(listener, "address",
            settings.listenAddress ? std::optional(settings.listenAddress->text()) : std::nullopt);
        set(listener, "port", settings.listenPort);
        Json &group = m_json.at("groups").at(0);
        if (!settings.addresses.empty()) {
            group["addresses"] = texts(settings.addresses);
        }
        set(group, "country_code", settings.countryCode);
        set(group, "country", settings.country);
        set(group, "city", settings.city);
        set(group, "location_code", settings.locationCode);
        if (!settings.dns.empty()) {
            m_json.at("vpn")["dns"] = texts(settings.dns);
        }
        if (settings.givenCertificate) {
            m_json["tls"] = tlsFiles(places, true);
        }
        return {};
    } catch (const Json::exception &error) {
        return Failure{std::string("has another form than expected: ") + error.what()};
    }
}

bool ServiceFile::differsForReloadOnly(const ServiceFile &other) const {
    std::array<Json, 2> rest = {m_json, other.m_json};
    for (Json &json : rest) {
        for (const char *key : {"groups", "home", "tls"}) {
            json.erase(key);
        }
    }
    return rest[0] == rest[1];
}

} // namespace quorvane::service
