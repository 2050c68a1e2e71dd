#include "Config.h"

#include "AnnouncementJson.h"
#include "JsonReader.h"

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>

namespace quorvane::service {

namespace {

/// Characters of the answers' own syntax: a text that contains one would break its record.
constexpr std::string_view recordSeparators = ",|;<>";
/// Leaves space for "/management-udp.sock" within the system's limit for socket paths.
constexpr std::size_t maximumRuntimeFolderLength = 80;
/// The system's limit for socket paths is 107 bytes.
constexpr std::size_t maximumSocketLength = 107;
/// Two of the longest lines.
constexpr std::uint32_t minimumLogRate = 4096;

bool isUpper(char character) {
    return character >= 'A' && character <= 'Z';
}

bool isNameCharacter(char character) {
    return isUpper(character) || (character >= 'a' && character <= 'z') ||
           (character >= '0' && character <= '9') || character == '_' || character == '-';
}

std::string readCountryCode(JsonReader &reader) {
    const std::string code = reader.text("country_code");
    if (code.size() != 2 || !isUpper(code[0]) || !isUpper(code[1])) {
        reader.fail("country_code", "must be two upper-case letters");
    }
    return code;
}

std::string readField(JsonReader &reader, const std::string &key, const std::string &text) {
    if (text.find_first_of(recordSeparators) != std::string::npos) {
        reader.fail(key, "must not hold any of " + std::string(recordSeparators));
    }
    if (text.front() == ' ' || text.back() == ' ') {
        reader.fail(key, "must not begin or end with a blank");
    }
    return text;
}

/// A name that is safe as the name of an interface or a table.
std::string readName(JsonReader &reader, const std::string &key, const std::string &fallback,
                     std::size_t maximumLength) {
    const std::string name = fallback.empty() ? reader.text(key) : reader.text(key, fallback);
    if (name.size() > maximumLength || !std::all_of(name.begin(), name.end(), isNameCharacter) ||
        name.front() == '-' || (name.front() >= '0' && name.front() <= '9')) {
        reader.fail(key, "must be a name of at most " + std::to_string(maximumLength) +
                             " letters, digits, \"_\" or \"-\" that begins with a letter");
    }
    return name;
}

std::string readPath(JsonReader &reader, const std::string &key, const std::string &fallback = {}) {
    const std::string path = fallback.empty() ? reader.text(key) : reader.text(key, fallback);
    if (path.find('"') != std::string::npos || path.find('\\') != std::string::npos) {
        reader.fail(key, "must not hold quotation marks or backslashes");
    }
    return path;
}

Group readGroup(JsonReader &reader) {
    Group group;
    group.countryCode = readCountryCode(reader);
    group.country = readField(reader, "country", reader.text("country"));
    group.city = readField(reader, "city", reader.text("city"));
    group.locationCode = readName(reader, "location_code", {}, 32);
    group.label = readField(reader, "label", reader.text("label", group.country + ' ' + group.city));
    group.full = reader.boolean("full", false);
    group.addresses = reader.addresses("addresses");
    if (group.addresses.empty()) {
        reader.fail("addresses", "must hold at least one address");
    }
    return group;
}

void readGroups(JsonReader &reader, Config &config) {
    std::set<Ipv4Address> seen;
    reader.objects("groups", [&](JsonReader &entry) {
        Group group = readGroup(entry);
        for (const Ipv4Address address : group.addresses) {
            if (!seen.insert(address).second) {
                entry.fail("addresses", address.text() + " is listed twice");
            }
        }
        config.groups.push_back(std::move(group));
    });
    if (config.groups.empty()) {
        reader.fail("groups", "must hold at least one group");
    }
}

VpnServer readServer(JsonReader &reader, Protocol protocol) {
    VpnServer server;
    server.protocol = protocol;
    server.port = static_cast<std::uint16_t>(reader.number("port", 1, 65535));
    server.network = reader.network("network");
    if (server.network.prefix < 8 || server.network.prefix > 29) {
        reader.fail("network", "must have a prefix from 8 to 29");
    }
    server.device = readName(reader, "device", "qrv-" + protocolName(protocol), 15);
    return server;
}

void readVpnServers(JsonReader &reader, Vpn &vpn) {
    if (reader.has("udp")) {
        reader.object("udp", [&](JsonReader &part) { vpn.udp = readServer(part, Protocol::Udp); });
    }
    if (reader.has("tcp")) {
        reader.object("tcp", [&](JsonReader &part) { vpn.tcp = readServer(part, Protocol::Tcp); });
    }
    if (!vpn.udp && !vpn.tcp) {
        reader.fail("udp", "is missing, and so is tcp: at least one is needed");
    }
    if (vpn.udp && vpn.tcp && vpn.udp->network.overlaps(vpn.tcp->network)) {
        reader.fail("tcp.network", "overlaps udp.network");
    }
    if (vpn.udp && vpn.tcp && vpn.udp->device == vpn.tcp->device) {
        reader.fail("tcp.device", "is the same as udp.device");
    }
}

void readVpn(JsonReader &reader, Vpn &vpn) {
    vpn.ca = readPath(reader, "ca");
    vpn.certificate = readPath(reader, "certificate");
    vpn.key = readPath(reader, "key");
    if (reader.has("certificate_name")) {
        vpn.certificateName = readPath(reader, "certificate_name");
    }
    if (reader.has("control_key")) {
        vpn.controlKey = readPath(reader, "control_key");
    }
    if (reader.has("client_authority")) {
        vpn.clientAuthority = readPath(reader, "client_authority");
    }
    readVpnServers(reader, vpn);
    vpn.dns = reader.addresses("dns");
    vpn.blockIpv6 = reader.boolean("block_ipv6", true);
    vpn.ping = std::chrono::seconds(reader.number("ping_seconds", 1, 3600, 10));
    vpn.pingExit = std::chrono::seconds(reader.number("ping_exit_seconds", 2, 86400, 60));
    vpn.renegotiation = std::chrono::seconds(reader.number("renegotiation_seconds", 10, 86400, 3600));
    if (vpn.pingExit <= vpn.ping) {
        reader.fail("ping_exit_seconds", "must be more than ping_seconds");
    }
}

Gateway readGateway(JsonReader &reader) {
    Gateway gateway;
    gateway.command = reader.texts("command");
    gateway.openvpn = readPath(reader, "openvpn", gateway.openvpn);
    if (gateway.openvpn.front() != '/') {
        reader.fail("openvpn", "must be an absolute path");
    }
    gateway.allowPrivate = reader.networks("allow_private");
    if (!reader.has("nft")) {
        return gateway;
    }
    reader.object("nft", [&gateway](JsonReader &part) {
        gateway.nft = part.text("program", gateway.nft);
        gateway.createTables = part.boolean("create", true);
        gateway.table = readName(part, "table", gateway.table, 31);
        gateway.map = readName(part, "map", gateway.map, 31);
        gateway.set = readName(part, "set", gateway.set, 31);
        if (part.has("wan_interface")) {
            gateway.wanInterface = readName(part, "wan_interface", {}, 15);
        }
        if (gateway.map == gateway.set) {
            part.fail("set", "must differ from map");
        }
    });
    return gateway;
}

void readListener(JsonReader &reader, Config &config) {
    reader.objects("listen", [&config](JsonReader &entry) {
        ListenAddress listen;
        listen.address = entry.text("address");
        if (!Ipv4Address::parse(listen.address) && listen.address.find(':') == std::string::npos) {
            entry.fail("address", "must be a numeric address");
        }
        listen.port = static_cast<std::uint16_t>(entry.number("port", 0, 65535));
        config.listen.push_back(listen);
    });
    if (config.listen.empty()) {
        reader.fail("listen", "must hold at least one address");
    }
    reader.object("tls", [&config](JsonReader &part) {
        config.tlsCertificate = part.text("certificate");
        config.tlsKey = part.text("key");
    });
}

void readVpnLimits(JsonReader &reader, VpnLimits &limits) {
    limits.handshake = std::chrono::seconds(reader.number("handshake_seconds", 1, 60, 10));
    limits.startsPerSecond = reader.number("starts_per_second", 1, 10000, limits.startsPerSecond);
    limits.startsBurst = reader.number("starts_burst", 1, 10000, limits.startsBurst);
    limits.unfinished = reader.number("unfinished", 1, 65536, limits.unfinished);
}

void readPerCallerLimits(JsonReader &reader, PerCallerLimits &limits) {
    const std::vector<std::pair<std::string, unsigned &>> rates = {
        {"requests_per_second", limits.requestsPerSecond},
        {"configurations_per_second", limits.configurationsPerSecond},
        {"connections_per_second", limits.connectionsPerSecond},
        {"handshakes_per_second", limits.handshakesPerSecond},
        {"connections", limits.connections}};
    for (const auto &[key, rate] : rates) {
        rate = reader.number(key, 0, 1000000, rate);
    }
    limits.burstSeconds = reader.number("burst_seconds", 1, 3600, limits.burstSeconds);
}

void readLimits(JsonReader &reader, Limits &limits) {
    limits.connections = reader.number("connections", 1, 100000, limits.connections);
    limits.handshake = std::chrono::seconds(reader.number("handshake_seconds", 1, 600, 10));
    limits.request = std::chrono::seconds(reader.number("request_seconds", 1, 3600, 15));
    limits.headerBytes = reader.number("header_bytes", 1024, 1048576, limits.headerBytes);
    if (reader.has("per_caller")) {
        reader.object("per_caller",
                      [&limits](JsonReader &part) { readPerCallerLimits(part, limits.perCaller); });
    }
    if (reader.has("vpn")) {
        reader.object("vpn", [&limits](JsonReader &part) { readVpnLimits(part, limits.vpn); });
    }
}

void readLog(JsonReader &reader, LogLimits &limits) {
    limits.fileBytes = reader.number("file_bytes", 65536, 1 << 30, limits.fileBytes);
    limits.copies = reader.number("copies", 0, 100, limits.copies);
    limits.bytesPerSecond = reader.number("bytes_per_second", 0, 1 << 30, limits.bytesPerSecond);
    if (limits.bytesPerSecond > 0 && limits.bytesPerSecond < minimumLogRate) {
        reader.fail("bytes_per_second", "must be 0 or at least " + std::to_string(minimumLogRate));
    }
}

MetricsListener readMetrics(JsonReader &reader) {
    MetricsListener metrics;
    if (reader.has("socket")) {
        metrics.socket = readPath(reader, "socket");
        if (metrics.socket.front() != '/' || metrics.socket.size() > maximumSocketLength) {
            reader.fail("socket", "must be an absolute path of at most " +
                                      std::to_string(maximumSocketLength) + " bytes");
        }
        return metrics;
    }
    const auto loopback = Ipv4Network::parse("127.0.0.0/8");
    metrics.address = reader.text("address", "127.0.0.1");
    const auto address = Ipv4Address::parse(metrics.address);
    if (metrics.address != "::1" && !(address && loopback->contains(*address))) {
        reader.fail("address", "must be a loopback address");
    }
    metrics.port = static_cast<std::uint16_t>(reader.number("port", 1, 65535));
    return metrics;
}

void readFolders(JsonReader &reader, Config &config) {
    config.requestLog = reader.text("request_log");
    config.runtimeFolder = readPath(reader, "runtime_folder");
    if (config.runtimeFolder.front() != '/' || config.runtimeFolder.size() > maximumRuntimeFolderLength) {
        reader.fail("runtime_folder", "must be an absolute path of at most " +
                                          std::to_string(maximumRuntimeFolderLength) + " bytes");
    }
}

/// No tunnel address may also be an address that is lent.
void checkNetworks(JsonReader &reader, const Config &config) {
    for (const auto &server : {config.vpn.udp, config.vpn.tcp}) {
        for (const Group &group : config.groups) {
            for (const Ipv4Address address : group.addresses) {
                if (server && server->network.contains(address)) {
                    reader.fail("groups",
                                address.text() + " is in the tunnel network " + server->network.text());
                }
            }
        }
    }
}

Config readConfig(JsonReader &reader) {
    Config config;
    readListener(reader, config);
    readGroups(reader, config);
    reader.objects("home", [&config](JsonReader &entry) {
        config.homes.push_back({entry.network("network"), readCountryCode(entry)});
    });
    config.credentialLifetime = std::chrono::seconds(reader.number("credential_seconds", 1, 31536000, 86400));
    config.grantLifetime = std::chrono::seconds(reader.number("grant_seconds", 1, 86400, 60));
    if (reader.has("keys")) {
        config.userKeys = readPath(reader, "keys");
    }
    if (reader.has("state_file")) {
        config.stateFile = readPath(reader, "state_file");
    }
    readFolders(reader, config);
    config.strict = reader.boolean("strict", false);
    reader.objects("announced",
                   [&config](JsonReader &entry) { config.announced.push_back(readAnnouncement(entry)); });
    if (reader.has("limits")) {
        reader.object("limits", [&config](JsonReader &part) { readLimits(part, config.limits); });
    }
    if (reader.has("metrics")) {
        reader.object("metrics", [&config](JsonReader &part) { config.metrics = readMetrics(part); });
    }
    if (reader.has("log")) {
        reader.object("log", [&config](JsonReader &part) { readLog(part, config.log); });
    }
    reader.object("vpn", [&config](JsonReader &part) { readVpn(part, config.vpn); });
    if (reader.has("gateway")) {
        reader.object("gateway", [&config](JsonReader &part) { config.gateway = readGateway(part); });
    }
    if (reader.has("etcd")) {
        reader.object("etcd", [&config](JsonReader &part) { config.etcd = readEtcdSettings(part); });
    }
    checkNetworks(reader, config);
    reader.finish();
    return config;
}

/// The document as it is for a role: what "roles" contains for it is merged into the whole. So one file can
/// be that of several processes.
nlohmann::json documentFor(nlohmann::json document, Role role) {
    const auto found = document.is_object() ? document.find("roles") : document.end();
    if (found == document.end()) {
        return document;
    }
    const nlohmann::json roles = *found;
    document.erase(found);
    if (!roles.is_object()) {
        throw ConfigError("roles", "must be an object");
    }
    for (const auto &[name, changes] : roles.items()) {
        const auto named = roleNamed(name);
        if (!named || named == Role::All) {
            throw ConfigError("roles." + name, "is not known; \"api\" and \"gateway\" are");
        }
        if (!changes.is_object()) {
            throw ConfigError("roles." + name, "must be an object");
        }
        if (named == role) {
            document.merge_patch(changes);
        }
    }
    return document;
}

/// Processes with different roles share keys, so none of them can make its own.
std::optional<std::string> firstMissing(const Config &config) {
    if (config.role == Role::All) {
        return std::nullopt;
    }
    for (const auto &[key, path] : {std::pair("keys", &config.userKeys),
                                    {"vpn.control_key", &config.vpn.controlKey},
                                    {"vpn.client_authority", &config.vpn.clientAuthority}}) {
        if (path->empty()) {
            return std::string(key) + ": is missing; the other roles need the same file";
        }
    }
    if (config.role == Role::Gateway && !config.gateway) {
        return "gateway: is missing";
    }
    return std::nullopt;
}

std::optional<std::string> firstUnreadable(const Config &config) {
    std::vector<std::pair<std::string, std::string>> files;
    if (config.answersRequests()) {
        files = {{"tls.certificate", config.tlsCertificate},
                 {"tls.key", config.tlsKey},
                 {"vpn.ca", config.vpn.ca}};
    }
    if (config.role != Role::Api) {
        files.emplace_back("vpn.certificate", config.vpn.certificate);
        files.emplace_back("vpn.key", config.vpn.key);
    }
    if (!config.vpn.controlKey.empty()) {
        files.emplace_back("vpn.control_key", config.vpn.controlKey);
    }
    if (!config.vpn.clientAuthority.empty()) {
        files.emplace_back("vpn.client_authority", config.vpn.clientAuthority);
    }
    if (config.etcd) {
        files.emplace_back("etcd.ca", config.etcd->ca);
        files.emplace_back("etcd.certificate", config.etcd->certificate);
        files.emplace_back("etcd.key", config.etcd->key);
    }
    for (const auto &[key, path] : files) {
        std::ifstream file(path);
        if (!file || file.peek() == std::ifstream::traits_type::eof()) {
            return key + ": cannot read " + path;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<Role> roleNamed(std::string_view name) {
    if (name == "all") {
        return Role::All;
    }
    if (name == "api") {
        return Role::Api;
    }
    return name == "gateway" ? std::optional(Role::Gateway) : std::nullopt;
}

std::string protocolName(Protocol protocol) {
    return protocol == Protocol::Udp ? "udp" : "tcp";
}

std::string Config::controlKeyPath() const {
    return vpn.controlKey.empty() ? runtimeFolder + "/control.key" : vpn.controlKey;
}

std::string Config::clientAuthorityPath() const {
    return vpn.clientAuthority.empty() ? runtimeFolder + "/client-authority.pem" : vpn.clientAuthority;
}

std::string Config::clientCertificatesPath() const {
    return runtimeFolder + "/client-authority.crt";
}

std::string Config::stateFilePath() const {
    return stateFile.empty() ? runtimeFolder + "/operator.json" : stateFile;
}

std::string Config::sharedFactsPath() const {
    return stateFilePath() + ".shared";
}

std::string Config::userKeysPath() const {
    return userKeys.empty() ? runtimeFolder + "/user.keys" : userKeys;
}

const Group *Config::groupOf(Ipv4Address address) const {
    const auto found = std::find_if(groups.begin(), groups.end(), [address](const Group &group) {
        return std::find(group.addresses.begin(), group.addresses.end(), address) != group.addresses.end();
    });
    return found == groups.end() ? nullptr : &*found;
}

std::string Config::countryOf(std::string_view peer) const {
    const auto address = Ipv4Address::parse(peer);
    if (!address) {
        return "XX";
    }
    for (const HomeNetwork &home : homes) {
        if (home.network.contains(*address)) {
            return home.countryCode;
        }
    }
    const Group *group = groupOf(*address);
    return group == nullptr ? "XX" : group->countryCode;
}

Result<Config> parseConfig(std::string_view json, Role role) {
    try {
        const nlohmann::json document = documentFor(nlohmann::json::parse(json), role);
        JsonReader reader(document, {});
        Config config = readConfig(reader);
        config.role = role;
        return config;
    } catch (const ConfigError &error) {
        return Failure{error.what()};
    } catch (const nlohmann::json::exception &error) {
        return Failure{std::string("not valid JSON: ") + error.what()};
    }
}

Result<Config> loadConfig(const std::string &path, Role role) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    if (!file) {
        return Failure{"cannot read " + path};
    }
    auto config = parseConfig(text.str(), role);
    if (!config) {
        return Failure{path + ": " + config.error()};
    }
    Config loaded = std::move(config).value();
    loaded.file = path;
    if (const auto missing = firstMissing(loaded)) {
        return Failure{path + ": " + *missing};
    }
    if (const auto unreadable = firstUnreadable(loaded)) {
        return Failure{path + ": " + *unreadable};
    }
    return loaded;
}

} // namespace quorvane::service
