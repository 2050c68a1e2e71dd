#include "setup/SetupArguments.h"

#include "FakeMachine.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>

namespace quorvane::service {

namespace {

Result<ServiceSettings> settings(const SetupArguments &arguments, const Places &places = {}) {
    test::FakeMachine machine;
    return readSettings(arguments, MachineNetwork::read(machine).value(), places);
}

TEST(SetupArguments, WithoutArgumentsNothingIsSet) {
    const ServiceSettings read = settings({}).value();
    EXPECT_TRUE(read.addresses.empty() && read.dns.empty());
    EXPECT_FALSE(read.listenAddress || read.listenPort || read.countryCode || read.country || read.city ||
                 read.locationCode || read.givenCertificate);
}

TEST(SetupArguments, Listen) {
    SetupArguments arguments;
    arguments.listen = "192.0.2.1";
    EXPECT_EQ(settings(arguments).value().listenPort, 443);
    arguments.listen = "192.0.2.1:8443";
    EXPECT_EQ(settings(arguments).value().listenPort, 8443);
    EXPECT_EQ(settings(arguments).value().listenAddress->text(), "192.0.2.1");
    for (const char *wrong : {"", "x", "192.0.2.1:", "192.0.2.1:0", "192.0.2.1:65536", "192.0.2.1:1x"}) {
        arguments.listen = wrong;
        EXPECT_FALSE(settings(arguments)) << wrong;
    }
}

TEST(SetupArguments, TheCountryHasItsNameFromTheListOrTheArgument) {
    const test::TemporaryFolder folder;
    Places places;
    places.countries = folder.file("countries");
    SetupArguments arguments;
    arguments.country = "de";
    EXPECT_EQ(settings(arguments, places).value().country, "DE");
    std::ofstream(places.countries) << R"({"3166-1":[{"alpha_2":"DE","name":"Germany"}]})";
    EXPECT_EQ(settings(arguments, places).value().country, "Germany");
    EXPECT_EQ(settings(arguments, places).value().countryCode, "DE");
    arguments.countryName = "Deutschland";
    EXPECT_EQ(settings(arguments, places).value().country, "Deutschland");
    for (const char *wrong : {"", "D", "DEU", "D1"}) {
        arguments.country = wrong;
        EXPECT_FALSE(settings(arguments, places)) << wrong;
    }
}

TEST(SetupArguments, TheCityGivesTheLocationCode) {
    SetupArguments arguments;
    arguments.city = "Berlin";
    EXPECT_EQ(settings(arguments).value().locationCode, "BER");
    arguments.locationCode = "TXL";
    EXPECT_EQ(settings(arguments).value().locationCode, "TXL");
}

TEST(SetupArguments, TheNameIsKept) {
    EXPECT_FALSE(readRecord({}, std::nullopt));
    SetupArguments arguments;
    arguments.name = "vpn.example.org";
    const SetupRecord record = readRecord(arguments, std::nullopt).value();
    EXPECT_EQ(readRecord({}, record).value().name, "vpn.example.org");
    for (const char *wrong : {"", "a b", "-a", ".a", "a/b", "a\"b"}) {
        arguments.name = wrong;
        EXPECT_FALSE(readRecord(arguments, record)) << wrong;
    }
    arguments = {};
    arguments.tlsCertificate = "c";
    arguments.tlsKey = "/k";
    EXPECT_EQ(readRecord(arguments, record).value().tlsCertificate.front(), '/');
    EXPECT_EQ(readRecord(arguments, record).value().tlsKey, "/k");
}

} // namespace

} // namespace quorvane::service
