#include "setup/ServiceFile.h"
#include "core/Config.h"

#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

ServiceSettings firstSettings() {
    ServiceSettings settings;
    settings.listenAddress = *Ipv4Address::parse("198.51.100.10");
    settings.addresses = {*Ipv4Address::parse("203.0.113.4"), *Ipv4Address::parse("203.0.113.5")};
    settings.countryCode = "DE";
    settings.country = "Germany";
    settings.city = "Berlin";
    settings.locationCode = "BER";
    return settings;
}

Config configOf(const ServiceFile &file) {
    auto config = parseConfig(file.text());
    EXPECT_TRUE(config) << config.error();
    return std::move(config).value();
}

TEST(ServiceFile, ANewOneIsAConfigurationForOneMachine) {
    const Config config = configOf(ServiceFile::make({}, firstSettings(), "vpn.example.org", {}));
    EXPECT_EQ(config.listen.at(0).address, "198.51.100.10");
    EXPECT_EQ(config.listen.at(0).port, 443);
    EXPECT_EQ(config.groups.at(0).label, "Germany Berlin");
    EXPECT_EQ(config.groups.at(0).addresses.size(), 2U);
    EXPECT_EQ(config.tlsKey, "/etc/quorvane-service/api.key");
    EXPECT_EQ(config.vpn.controlKey, "/etc/quorvane-service/control.key");
    EXPECT_EQ(config.userKeys, "/etc/quorvane-service/user.keys");
    EXPECT_EQ(config.vpn.clientAuthority, "/etc/quorvane-service/client-authority.pem");
    EXPECT_EQ(config.stateFile, "/var/lib/quorvane-service/operator.json");
    EXPECT_EQ(config.vpn.udp->port, 1194);
    EXPECT_NE(config.vpn.tcp->port, config.listen.at(0).port) << "an OpenVPN server binds all addresses";
    ASSERT_TRUE(config.gateway);
    EXPECT_TRUE(config.gateway->command.empty());
}

TEST(ServiceFile, ANewOneHasFoldersForEachRole) {
    const ServiceFile made = ServiceFile::make({}, firstSettings(), "vpn.example.org", {});
    const auto api = parseConfig(made.text(), Role::Api);
    const auto gateway = parseConfig(made.text(), Role::Gateway);
    ASSERT_TRUE(api && gateway);
    EXPECT_EQ(api.value().runtimeFolder, "/run/quorvane-api");
    EXPECT_EQ(api.value().stateFile, "/var/lib/quorvane-api/operator.json");
    EXPECT_EQ(api.value().vpn.clientAuthority, "/etc/quorvane-service/client-authority.pem");
    EXPECT_EQ(gateway.value().runtimeFolder, "/run/quorvane-gateway");
    EXPECT_EQ(gateway.value().stateFile, "/var/lib/quorvane-gateway/operator.json");
    EXPECT_EQ(gateway.value().vpn.clientAuthority, "/etc/quorvane-service/client-authority.crt");
}

TEST(ServiceFile, TunnelsAvoidTheNetworksOfTheMachine) {
    const auto made = ServiceFile::make({}, firstSettings(), "x", {*Ipv4Network::parse("10.9.1.0/24")});
    const Config config = configOf(made);
    EXPECT_EQ(config.vpn.udp->network.text(), "10.88.0.0/16");
    EXPECT_EQ(config.vpn.tcp->network.text(), "10.89.0.0/16");
}

TEST(ServiceFile, WithoutALocationTheNameIsOne) {
    ServiceSettings settings;
    settings.listenAddress = *Ipv4Address::parse("198.51.100.10");
    settings.addresses = firstSettings().addresses;
    const Config config = configOf(ServiceFile::make({}, settings, "vpn.example.org", {}));
    EXPECT_EQ(config.groups.at(0).label, "XX vpn.example.org");
    EXPECT_EQ(config.groups.at(0).locationCode, "VPN");
}

TEST(ServiceFile, OnlyWhatIsSetChanges) {
    const std::string text = R"({"strict":true,"listen":[{"port":8443,"address":"198.51.100.10"}],"tls":{},
        "groups":[{"city":"Bonn","full":true,"addresses":["203.0.113.9"]},{"city":"Other"}],"vpn":{}})";
    ServiceFile file = ServiceFile::parse(text).value();
    const ServiceFile before = file;
    ASSERT_TRUE(file.apply({}, {}));
    EXPECT_TRUE(file.isSame(before));
    ServiceSettings settings;
    settings.addresses = firstSettings().addresses;
    ASSERT_TRUE(file.apply({}, settings));
    EXPECT_FALSE(file.isSame(before));
    EXPECT_TRUE(file.differsForReloadOnly(before));
    const auto expected = ServiceFile::Json::parse(R"({"strict":true,
        "listen":[{"port":8443,"address":"198.51.100.10"}],"tls":{},
        "groups":[{"city":"Bonn","full":true,"addresses":["203.0.113.4","203.0.113.5"]},{"city":"Other"}],
        "vpn":{}})");
    EXPECT_EQ(file.text(), expected.dump(2) + '\n') << "in the order of the administrator";
    settings.listenPort = 443;
    settings.givenCertificate = true;
    ASSERT_TRUE(file.apply({}, settings));
    EXPECT_FALSE(file.differsForReloadOnly(before));
    EXPECT_NE(file.text().find("/etc/quorvane-service/given.pem"), std::string::npos);
}

TEST(ServiceFile, AnotherFormIsAFailure) {
    EXPECT_FALSE(ServiceFile::parse("[]"));
    EXPECT_FALSE(ServiceFile::parse("{"));
    EXPECT_FALSE(ServiceFile::parse("{}").value().apply({}, {}));
    EXPECT_FALSE(ServiceFile::parse(R"({"listen":[],"groups":[]})").value().apply({}, {}));
}

TEST(ServiceFile, LocationCodes) {
    EXPECT_EQ(defaultLocationCode("Berlin", "DE"), "BER");
    EXPECT_EQ(defaultLocationCode("St. Gallen", "CH"), "STG");
    EXPECT_EQ(defaultLocationCode("Ål", "NO"), "L");
    EXPECT_EQ(defaultLocationCode("東京", "JP"), "JP");
}

TEST(ServiceFile, CountryNames) {
    const std::string list = R"({"3166-1":[{"alpha_2":"DE","name":"Germany"},
        {"alpha_2":"BO","name":"Bolivia, Plurinational State of","common_name":"Bolivia"},
        {"alpha_2":"CD","name":"Congo, The Democratic Republic of the"},{"alpha_2":"QQ","name":",x"}]})";
    EXPECT_EQ(countryName(list, "DE"), "Germany");
    EXPECT_EQ(countryName(list, "BO"), "Bolivia");
    EXPECT_EQ(countryName(list, "CD"), "Congo");
    EXPECT_EQ(countryName(list, "QQ"), std::nullopt);
    EXPECT_EQ(countryName(list, "ZZ"), std::nullopt);
    EXPECT_EQ(countryName("x", "DE"), std::nullopt);
}

} // namespace

} // namespace quorvane::service
