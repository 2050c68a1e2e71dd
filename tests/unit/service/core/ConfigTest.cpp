#include "core/Config.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>

namespace quorvane::service {

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

json sample() {
    return json::parse(R"({
        "listen": [{"address": "127.0.0.1", "port": 443}],
        "tls": {"certificate": "/c", "key": "/k"},
        "groups": [{"country_code": "DE", "country": "Germany", "city": "Berlin", "location_code": "BER",
                    "addresses": ["203.0.113.5"]},
                   {"country_code": "US", "country": "United States", "city": "Boston", "location_code": "BOS",
                    "label": "Boston", "full": true, "addresses": ["203.0.113.6", "203.0.113.7"]}],
        "home": [{"network": "198.51.100.0/24", "country_code": "AT"}],
        "request_log": "/log",
        "runtime_folder": "/run/x",
        "vpn": {"ca": "/ca", "certificate": "/vc", "key": "/vk",
                "udp": {"port": 1194, "network": "10.8.0.0/16"},
                "tcp": {"port": 443, "network": "10.9.0.0/16", "device": "tun-x"}},
        "gateway": {"command": ["ip", "netns", "exec", "gw"], "nft": {"wan_interface": "wan"}}
    })");
}

TEST(Config, ReadsTheKeysAndUsesDefaults) {
    const auto result = parseConfig(sample().dump());
    ASSERT_TRUE(result) << result.error();
    const Config &config = result.value();
    EXPECT_EQ(config.listen.at(0).port, 443);
    EXPECT_EQ(config.groups.at(0).label, "Germany Berlin");
    EXPECT_FALSE(config.groups.at(0).full);
    EXPECT_EQ(config.groups.at(1).label, "Boston");
    EXPECT_EQ(config.groups.at(1).addresses.at(1).text(), "203.0.113.7");
    EXPECT_EQ(config.credentialLifetime, std::chrono::seconds(86400));
    EXPECT_EQ(config.grantLifetime, std::chrono::seconds(60));
    EXPECT_EQ(config.vpn.udp->device, "qrv-udp");
    EXPECT_EQ(config.vpn.tcp->device, "tun-x");
    EXPECT_TRUE(config.vpn.blockIpv6);
    EXPECT_EQ(config.limits.connections, 4096U);
    EXPECT_EQ(config.controlKeyPath(), "/run/x/control.key");
    EXPECT_EQ(config.clientAuthorityPath(), "/run/x/client-authority.pem");
    EXPECT_EQ(config.stateFilePath(), "/run/x/operator.json");
    EXPECT_EQ(config.vpn.renegotiation, std::chrono::seconds(3600));
    EXPECT_FALSE(config.strict);
    ASSERT_TRUE(config.gateway);
    EXPECT_EQ(config.gateway->command.size(), 4U);
    EXPECT_EQ(config.gateway->wanInterface, "wan");
    EXPECT_TRUE(config.gateway->createTables);
    EXPECT_EQ(config.groupOf(*Ipv4Address::parse("203.0.113.7"))->city, "Boston");
    EXPECT_EQ(config.groupOf(*Ipv4Address::parse("203.0.113.8")), nullptr);
}

TEST(Config, EveryKeyCanBeSet) {
    json document = sample();
    document["credential_seconds"] = 5;
    document["grant_seconds"] = 6;
    document["strict"] = true;
    document["announced"] =
        json::parse(R"([{"target": "/ip", "count": 2}, {"pattern": "/[?]cmd=.*", "count": 0}])");
    document["limits"] = {
        {"connections", 9}, {"handshake_seconds", 2}, {"request_seconds", 3}, {"header_bytes", 2048}};
    document["limits"]["vpn"] = {
        {"handshake_seconds", 5}, {"starts_per_second", 6}, {"starts_burst", 7}, {"unfinished", 8}};
    document["limits"]["per_caller"] = {{"requests_per_second", 11},
                                        {"configurations_per_second", 12},
                                        {"connections_per_second", 13},
                                        {"handshakes_per_second", 0},
                                        {"connections", 15},
                                        {"burst_seconds", 16}};
    document["vpn"]["control_key"] = "/control";
    document["vpn"]["client_authority"] = "/authority";
    document["state_file"] = "/state";
    document["vpn"]["renegotiation_seconds"] = 20;
    document["log"] = {{"file_bytes", 65536}, {"copies", 0}, {"bytes_per_second", 4096}};
    document["vpn"]["dns"] = {"8.8.8.8"};
    document["vpn"]["block_ipv6"] = false;
    document["vpn"]["ping_seconds"] = 1;
    document["vpn"]["ping_exit_seconds"] = 4;
    document["vpn"]["certificate_name"] = "vpn";
    document["gateway"]["openvpn"] = "/o";
    document["gateway"]["allow_private"] = {"192.168.5.0/24"};
    document["gateway"]["nft"] = {
        {"program", "/n"}, {"create", false}, {"table", "t"}, {"map", "m"}, {"set", "s"}};
    const auto result = parseConfig(document.dump());
    ASSERT_TRUE(result) << result.error();
    const Config &config = result.value();
    EXPECT_EQ(config.announced.at(1).pattern, "/[?]cmd=.*");
    EXPECT_EQ(config.announced.at(0).count, 2U);
    EXPECT_EQ(config.limits.request, std::chrono::seconds(3));
    EXPECT_EQ(config.limits.perCaller.requestsPerSecond, 11U);
    EXPECT_EQ(config.limits.perCaller.configurationsPerSecond, 12U);
    EXPECT_EQ(config.limits.perCaller.connectionsPerSecond, 13U);
    EXPECT_EQ(config.limits.perCaller.handshakesPerSecond, 0U);
    EXPECT_EQ(config.limits.perCaller.connections, 15U);
    EXPECT_EQ(config.limits.perCaller.burstSeconds, 16U);
    EXPECT_EQ(config.log.fileBytes, 65536U);
    EXPECT_EQ(config.log.copies, 0U);
    EXPECT_EQ(config.log.bytesPerSecond, 4096U);
    EXPECT_EQ(config.limits.vpn.handshake, std::chrono::seconds(5));
    EXPECT_EQ(config.limits.vpn.startsPerSecond, 6U);
    EXPECT_EQ(config.limits.vpn.startsBurst, 7U);
    EXPECT_EQ(config.limits.vpn.unfinished, 8U);
    EXPECT_EQ(config.controlKeyPath(), "/control");
    EXPECT_EQ(config.clientAuthorityPath(), "/authority");
    EXPECT_EQ(config.stateFilePath(), "/state");
    EXPECT_EQ(config.sharedFactsPath(), "/state.shared");
    EXPECT_EQ(config.clientCertificatesPath(), "/run/x/client-authority.crt");
    EXPECT_EQ(config.vpn.renegotiation, std::chrono::seconds(20));
    EXPECT_EQ(config.vpn.pingExit, std::chrono::seconds(4));
    EXPECT_EQ(config.gateway->map, "m");
    EXPECT_EQ(config.gateway->allowPrivate.at(0).text(), "192.168.5.0/24");
    EXPECT_FALSE(config.gateway->createTables);
}

TEST(Config, NullIsTheSameAsAbsent) {
    json document = sample();
    document["gateway"] = nullptr;
    document["vpn"]["tcp"] = nullptr;
    const auto result = parseConfig(document.dump());
    ASSERT_TRUE(result) << result.error();
    EXPECT_FALSE(result.value().gateway);
    EXPECT_FALSE(result.value().vpn.tcp);
}

json etcdSample() {
    return json::parse(R"({"endpoints":["10.0.0.1:2379","[2001:db8::1]:2380"],"ca":"/eca","certificate":"/ec",
                           "key":"/ek"})");
}

TEST(Config, EtcdHasNumericEndpoints) {
    json document = sample();
    EXPECT_FALSE(parseConfig(document.dump()).value().etcd);
    document["etcd"] = etcdSample();
    auto etcd = *parseConfig(document.dump()).value().etcd;
    ASSERT_EQ(etcd.endpoints.size(), 2U);
    EXPECT_EQ(etcd.endpoints[0].address, "10.0.0.1");
    EXPECT_EQ(etcd.endpoints[1].address, "2001:db8::1");
    EXPECT_EQ(etcd.endpoints[1].port, 2380);
    EXPECT_EQ(etcd.prefix, "/quorvane/");
    EXPECT_EQ(etcd.lease, std::chrono::seconds(3));
    EXPECT_FALSE(etcd.name.empty()) << "the host's name";
    document["etcd"]["prefix"] = "/x/";
    document["etcd"]["name"] = "gw1";
    document["etcd"]["lease_seconds"] = 10;
    etcd = *parseConfig(document.dump()).value().etcd;
    EXPECT_EQ(etcd.prefix, "/x/");
    EXPECT_EQ(etcd.name, "gw1");
    EXPECT_EQ(etcd.lease, std::chrono::seconds(10));
}

TEST(Config, WrongValuesOfEtcdAreNamed) {
    const std::pair<const char *, json> wrong[] = {{"etcd.endpoints", json::array()},
                                                   {"etcd.endpoints[0]", {"host:2379"}},
                                                   {"etcd.endpoints[0]", {"10.0.0.1"}},
                                                   {"etcd.endpoints[0]", {"10.0.0.1:0"}},
                                                   {"etcd.endpoints[0]", {"10.0.0.1:x"}},
                                                   {"etcd.endpoints[0]", {"10.0.0.1:65536"}},
                                                   {"etcd.endpoints[0]", {"2001:db8::1:2379"}},
                                                   {"etcd.endpoints[0]", {"[10.0.0.1]:2379"}},
                                                   {"etcd.prefix", "quorvane/"},
                                                   {"etcd.prefix", "/quorvane"},
                                                   {"etcd.name", "a b"},
                                                   {"etcd.lease_seconds", 1},
                                                   {"etcd.other", 1},
                                                   {"etcd.key", nullptr}};
    for (const auto &[key, value] : wrong) {
        json document = sample();
        document["etcd"] = etcdSample();
        const std::string name = std::string(key).substr(5);
        document["etcd"][name.substr(0, name.find('['))] = value;
        const auto read = parseConfig(document.dump());
        ASSERT_FALSE(read.ok()) << key << value;
        EXPECT_THAT(read.error(), StartsWith(std::string(key) + ": "));
    }
}

TEST(Config, MetricsAreAtALoopbackPortOrASocket) {
    json document = sample();
    EXPECT_FALSE(parseConfig(document.dump()).value().metrics);
    document["metrics"] = {{"port", 9101}};
    EXPECT_EQ(parseConfig(document.dump()).value().metrics->address, "127.0.0.1");
    document["metrics"] = {{"address", "::1"}, {"port", 9101}};
    EXPECT_EQ(parseConfig(document.dump()).value().metrics->port, 9101);
    document["metrics"] = {{"socket", "/run/metrics.sock"}};
    EXPECT_EQ(parseConfig(document.dump()).value().metrics->socket, "/run/metrics.sock");
    for (const json &wrong : {json{{"address", "192.0.2.1"}, {"port", 9101}}, json{{"address", "127.0.0.1"}},
                              json{{"socket", "relative"}}, json{{"socket", "/x"}, {"port", 1}}}) {
        document["metrics"] = wrong;
        EXPECT_FALSE(parseConfig(document.dump())) << wrong;
    }
}

struct Missing {
    const char *pointer;
    const char *message;
};

class MissingKey : public testing::TestWithParam<Missing> {};

TEST_P(MissingKey, IsNamed) {
    json document = sample();
    const json::json_pointer pointer(GetParam().pointer);
    document[pointer.parent_pointer()].erase(pointer.back());
    const auto result = parseConfig(document.dump());
    ASSERT_FALSE(result);
    EXPECT_THAT(result.error(), StartsWith(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(Config, MissingKey,
                         testing::Values(Missing{"/listen", "listen: must hold at least one"},
                                         Missing{"/tls", "tls: is missing"},
                                         Missing{"/tls/certificate", "tls.certificate: is missing"},
                                         Missing{"/tls/key", "tls.key: is missing"},
                                         Missing{"/groups", "groups: must hold at least one"},
                                         Missing{"/request_log", "request_log: is missing"},
                                         Missing{"/runtime_folder", "runtime_folder: is missing"},
                                         Missing{"/vpn", "vpn: is missing"},
                                         Missing{"/vpn/ca", "vpn.ca: is missing"},
                                         Missing{"/vpn/key", "vpn.key: is missing"},
                                         Missing{"/vpn/certificate", "vpn.certificate: is missing"},
                                         Missing{"/vpn/udp/port", "vpn.udp.port: is missing"},
                                         Missing{"/vpn/tcp/network", "vpn.tcp.network: is missing"}));

TEST(Config, KeysOfListElementsAreNamedWithTheirNumber) {
    for (const std::string key : {"country_code", "country", "city", "location_code"}) {
        json document = sample();
        document["groups"][1].erase(key);
        EXPECT_EQ(parseConfig(document.dump()).error(), "groups[1]." + key + ": is missing");
    }
    json document = sample();
    document["groups"][0].erase("addresses");
    EXPECT_EQ(parseConfig(document.dump()).error(), "groups[0].addresses: must hold at least one address");
    document = sample();
    document["listen"][0].erase("port");
    EXPECT_EQ(parseConfig(document.dump()).error(), "listen[0].port: is missing");
    document = sample();
    document["home"][0].erase("network");
    EXPECT_EQ(parseConfig(document.dump()).error(), "home[0].network: is missing");
}

struct Wrong {
    const char *pointer;
    const char *value;
    const char *message;
};

class WrongValue : public testing::TestWithParam<Wrong> {};

TEST_P(WrongValue, IsNamed) {
    json document = sample();
    document[json::json_pointer(GetParam().pointer)] = json::parse(GetParam().value);
    const auto result = parseConfig(document.dump());
    ASSERT_FALSE(result);
    EXPECT_THAT(result.error(), StartsWith(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(
    Config, WrongValue,
    testing::Values(
        Wrong{"/lisen", "1", "lisen: is not a known key"},
        Wrong{"/vpn/udp/Port", "1", "vpn.udp.Port: is not a known"},
        Wrong{"/groups/0/flag", "1", "groups[0].flag: is not a known key"},
        Wrong{"/gateway/nft/x", "1", "gateway.nft.x: is not a known key"},
        Wrong{"/listen", "{}", "listen: must be a list"},
        Wrong{"/listen/0", "7", "listen[0]: must be an object"},
        Wrong{"/listen/0/address", "\"localhost\"", "listen[0].address: must be a numeric address"},
        Wrong{"/listen/0/port", "65536", "listen[0].port: must be a whole number from 0 to 65535"},
        Wrong{"/listen/0/port", "-1", "listen[0].port"}, Wrong{"/listen/0/port", "1.5", "listen[0].port"},
        Wrong{"/listen/0/port", "\"443\"", "listen[0].port"}, Wrong{"/tls", "[]", "tls: must be an object"},
        Wrong{"/tls/key", "\"\"", "tls.key: must not be empty"},
        Wrong{"/tls/key", "1", "tls.key: must be a text"},
        Wrong{"/tls/key", "\"a\\nb\"", "tls.key: must not hold control"},
        Wrong{"/groups/0/country_code", "\"de\"", "groups[0].country_code: must be two upper-case"},
        Wrong{"/groups/0/country_code", "\"DEU\"", "groups[0].country_code: must be two upper-case"},
        Wrong{"/groups/0/city", "\"Ber,lin\"", "groups[0].city: must not hold"},
        Wrong{"/groups/0/city", "\"Ber|lin\"", "groups[0].city: must not hold"},
        Wrong{"/groups/0/country", "\"a<br />b\"", "groups[0].country: must not hold"},
        Wrong{"/groups/0/country", "\" Germany\"", "groups[0].country: must not begin or end"},
        Wrong{"/groups/0/label", "\"a;b\"", "groups[0].label: must not hold"},
        Wrong{"/groups/0/location_code", "\"B R\"", "groups[0].location_code: must be a name"},
        Wrong{"/groups/0/full", "1", "groups[0].full: must be true or false"},
        Wrong{"/groups/0/addresses", "[\"1.2.3\"]", "groups[0].addresses[0]: must be an IPv4 address"},
        Wrong{"/groups/0/addresses", "[1]", "groups[0].addresses[0]: must be a text"},
        Wrong{"/groups/0/addresses", "[\"203.0.113.6\"]", "groups[1].addresses: 203.0.113.6 is listed twice"},
        Wrong{"/groups/0/addresses", "[\"10.8.0.9\"]",
              "groups: 10.8.0.9 is in the tunnel network 10.8.0.0/16"},
        Wrong{"/home/0/network", "\"1.2.3.4\"", "home[0].network: must be a network"},
        Wrong{"/credential_seconds", "0", "credential_seconds: must be a whole number"},
        Wrong{"/runtime_folder", "\"run\"", "runtime_folder: must be an absolute path"},
        Wrong{"/runtime_folder", "\"/a\\\"b\"", "runtime_folder: must not hold quotation"},
        Wrong{"/announced", "[{}]", "announced[0].target: exactly one"},
        Wrong{"/announced", R"([{"target":"/","pattern":"/"}])", "announced[0].target: exactly one"},
        Wrong{"/announced", R"([{"pattern":"("}])", "announced[0].pattern: is not a POSIX"},
        Wrong{"/announced", R"([{"target":"/\u0100"}])", "announced[0].target: must hold characters"},
        Wrong{"/limits", R"({"connections":0})", "limits.connections: must be a whole number"},
        Wrong{"/vpn/udp/port", "0", "vpn.udp.port: must be a whole number"},
        Wrong{"/vpn/udp/network", "\"10.8.0.0/30\"", "vpn.udp.network: must have a prefix"},
        Wrong{"/vpn/udp/network", "\"10.9.4.0/24\"", "vpn.tcp.network: overlaps"},
        Wrong{"/vpn/udp/device", "\"tun-x\"", "vpn.tcp.device: is the same"},
        Wrong{"/vpn/udp/device", "\"a b\"", "vpn.udp.device: must be a name"},
        Wrong{"/vpn/udp/device", "\"abcdefghijklmnop\"", "vpn.udp.device: must be a name"},
        Wrong{"/vpn/ping_exit_seconds", "10", "vpn.ping_exit_seconds: must be more"},
        Wrong{"/vpn/certificate_name", "\"a\\\"b\"", "vpn.certificate_name: must not hold"},
        Wrong{"/gateway/command", "\"ip\"", "gateway.command: must be a list"},
        Wrong{"/gateway/command", "[\"\"]", "gateway.command[0]: must be a text"},
        Wrong{"/gateway/allow_private", "[\"10.0.0.1/8\"]", "gateway.allow_private[0]: must be a network"},
        Wrong{"/gateway/openvpn", "\"openvpn\"", "gateway.openvpn: must be an absolute"},
        Wrong{"/gateway/nft/set", "\"lent\"", "gateway.nft.set: must differ"},
        Wrong{"/gateway/nft/table", "\"a; b\"", "gateway.nft.table: must be a name"}));

TEST(Config, OneProtocolIsNeeded) {
    json document = sample();
    document["vpn"].erase("udp");
    document["vpn"].erase("tcp");
    EXPECT_THAT(parseConfig(document.dump()).error(), StartsWith("vpn.udp: is missing, and so is tcp"));
}

TEST(Config, TextThatIsNotJson) {
    for (const std::string text : {"", "{", "[1", "\xff", "{\"a\":}"}) {
        EXPECT_THAT(parseConfig(text).error(), StartsWith("not valid JSON")) << text;
    }
    EXPECT_EQ(parseConfig("[]").error(), "configuration: must be an object");
}

TEST(Config, NamesOfRoles) {
    EXPECT_EQ(roleNamed("all"), Role::All);
    EXPECT_EQ(roleNamed("api"), Role::Api);
    EXPECT_EQ(roleNamed("gateway"), Role::Gateway);
    for (const char *other : {"", "API", "both"}) {
        EXPECT_EQ(roleNamed(other), std::nullopt);
    }
}

TEST(Config, ARoleSaysWhatIsDone) {
    Config config;
    EXPECT_TRUE(config.answersRequests());
    EXPECT_FALSE(config.lendsAddresses()) << "without a gateway";
    config.gateway = Gateway();
    EXPECT_TRUE(config.lendsAddresses());
    config.role = Role::Api;
    EXPECT_TRUE(config.answersRequests());
    EXPECT_FALSE(config.lendsAddresses());
    config.role = Role::Gateway;
    EXPECT_FALSE(config.answersRequests());
    EXPECT_TRUE(config.lendsAddresses());
}

TEST(Config, ARoleHasSettingsOfItsOwn) {
    json document = sample();
    document["roles"] = json::parse(R"({
        "api": {"runtime_folder": "/run/api", "metrics": {"port": 9101}},
        "gateway": {"runtime_folder": "/run/gateway", "vpn": {"client_authority": "/authority.crt"}}})");
    const auto all = parseConfig(document.dump());
    ASSERT_TRUE(all) << all.error();
    EXPECT_EQ(all.value().runtimeFolder, "/run/x");
    const auto api = parseConfig(document.dump(), Role::Api);
    ASSERT_TRUE(api) << api.error();
    EXPECT_EQ(api.value().runtimeFolder, "/run/api");
    EXPECT_TRUE(api.value().metrics);
    EXPECT_EQ(api.value().vpn.clientAuthority, "");
    const auto gateway = parseConfig(document.dump(), Role::Gateway);
    ASSERT_TRUE(gateway) << gateway.error();
    EXPECT_EQ(gateway.value().runtimeFolder, "/run/gateway");
    EXPECT_EQ(gateway.value().vpn.clientAuthority, "/authority.crt");
    EXPECT_EQ(gateway.value().vpn.key, "/vk") << "what it does not name stays";
    EXPECT_FALSE(gateway.value().metrics);
}

TEST(Config, WrongSettingsOfARoleAreNamed) {
    for (const auto &[text, message] : {std::pair(R"([])", "roles: must be an object"),
                                        {R"({"all": {}})", "roles.all: is not known"},
                                        {R"({"other": {}})", "roles.other: is not known"},
                                        {R"({"api": 1})", "roles.api: must be an object"},
                                        {R"({"api": {"misspelt": 1}})", "misspelt"},
                                        {R"({"api": {"roles": {}}})", "roles"}}) {
        json document = sample();
        document["roles"] = json::parse(text);
        const auto config = parseConfig(document.dump(), Role::Api);
        ASSERT_FALSE(config) << text;
        EXPECT_THAT(config.error(), HasSubstr(message));
    }
}

TEST(Config, TheFilesItNamesMustBeReadable) {
    const std::string path = testing::TempDir() + "service-config.json";
    std::ofstream(path) << sample().dump();
    EXPECT_EQ(loadConfig(path).error(), path + ": tls.certificate: cannot read /c");
    std::ofstream(path) << "{}";
    EXPECT_THAT(loadConfig(path).error(), HasSubstr(path + ": listen: "));
    std::remove(path.c_str());
    EXPECT_EQ(loadConfig(path).error(), "cannot read " + path);
}

} // namespace

} // namespace quorvane::service
