#pragma once

#include "core/Ipv4.h"

#include "common/Result.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

namespace quorvane::service {

/// Where the setup keeps its files.
struct Places {
    std::string folder = "/etc/quorvane-service";
    std::string sysctl = "/etc/sysctl.d/60-quorvane-service.conf";
    std::string runtime = "/run";
    std::string state = "/var/lib";
    std::string logs = "/var/log/quorvane-service";
    std::string countries = "/usr/share/iso-codes/json/iso_3166-1.json";

    [[nodiscard]] std::string file(const std::string &name) const { return folder + '/' + name; }

    /// A process's own folders have the name of its user.
    [[nodiscard]] std::string runtimeOf(const std::string &user) const { return runtime + '/' + user; }

    [[nodiscard]] std::string stateFileOf(const std::string &user) const {
        return state + '/' + user + "/operator.json";
    }
};

/// The users of the processes that answer requests and that lend addresses, and the group of both.
constexpr const char *apiUser = "quorvane-api";
constexpr const char *gatewayUser = "quorvane-gateway";
constexpr const char *serviceGroup = "quorvane-service";

/// What the arguments of the setup say about the configuration. What is absent stays as it is.
struct ServiceSettings {
    std::optional<Ipv4Address> listenAddress;
    std::optional<std::uint16_t> listenPort;
    std::vector<Ipv4Address> addresses;
    std::optional<std::string> countryCode;
    std::optional<std::string> country;
    std::optional<std::string> city;
    std::optional<std::string> locationCode;
    std::vector<Ipv4Address> dns;
    bool givenCertificate = false; ///< the listener's certificate is made by another program
};

/// service.json: the order and everything that the setup does not know are kept.
class ServiceFile {
public:
    using Json = nlohmann::ordered_json;

    /// A new configuration; listenAddress and addresses are needed. `used` are the networks of the machine,
    /// which the tunnels must not overlap.
    static ServiceFile make(const Places &places, const ServiceSettings &settings, const std::string &name,
                            const std::vector<Ipv4Network> &used);
    static Result<ServiceFile> parse(const std::string &text);

    /// Changes what the settings say. The settings of a location are those of the first group.
    Result<> apply(const Places &places, const ServiceSettings &settings);

    [[nodiscard]] std::string text() const { return m_json.dump(2) + '\n'; }

    [[nodiscard]] bool isSame(const ServiceFile &other) const { return m_json == other.m_json; }

    /// True when a running service takes the difference to the other configuration after SIGHUP.
    [[nodiscard]] bool differsForReloadOnly(const ServiceFile &other) const;

private:
    explicit ServiceFile(Json json) : m_json(std::move(json)) {}

    Json m_json;
};

/// Three upper-case letters of the city, or of the country's code when it has none.
[[nodiscard]] std::string defaultLocationCode(const std::string &city, const std::string &countryCode);

/// The country's usual name in the list of iso-codes, without what the configuration does not allow in a
/// name. Nothing when the list does not have the code.
[[nodiscard]] std::optional<std::string> countryName(const std::string &isoCodes, const std::string &code);

} // namespace quorvane::service
