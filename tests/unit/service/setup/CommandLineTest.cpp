#include "setup/CommandLine.h"

#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

CommandLine parsed(const std::vector<std::string> &arguments) {
    auto line = parseCommandLine(arguments);
    EXPECT_TRUE(line) << line.error();
    return line ? std::move(line).value() : CommandLine();
}

TEST(CommandLine, RunsTheServiceWithoutACommand) {
    EXPECT_EQ(parsed({"--config", "/c"}).action, Action::Run);
    EXPECT_EQ(parsed({"--config=/c"}).config, "/c");
    EXPECT_EQ(parsed({"--check", "--config", "/c"}).action, Action::CheckConfiguration);
    EXPECT_EQ(parsed({"--config", "/c"}).role, Role::All);
    EXPECT_EQ(parsed({"--config", "/c", "--role", "gateway"}).role, Role::Gateway);
    EXPECT_FALSE(parseCommandLine({"--config", "/c", "--role", "both"}).ok());
    EXPECT_EQ(parsed({"--help"}).action, Action::Help);
}

TEST(CommandLine, ReadsTheArgumentsOfTheSetup) {
    const CommandLine line = parsed({"setup", "--name", "vpn.example.org", "--addresses", "203.0.113.0/28",
                                     "--city=Berlin", "--tls-certificate", "/c", "--tls-key", "/k"});
    EXPECT_EQ(line.action, Action::Setup);
    EXPECT_EQ(line.setup.name, "vpn.example.org");
    EXPECT_EQ(line.setup.addresses, "203.0.113.0/28");
    EXPECT_EQ(line.setup.city, "Berlin");
    EXPECT_EQ(line.setup.country, std::nullopt);
    EXPECT_EQ(line.setup.tlsKey, "/k");
    EXPECT_EQ(parsed({"setup", "--check"}).action, Action::CheckService);
}

TEST(CommandLine, ReadsTheNameOfAReleasedGateway) {
    const CommandLine line = parsed({"release", "gw1", "--config", "/c"});
    EXPECT_EQ(line.action, Action::Release);
    EXPECT_EQ(line.released, "gw1");
    EXPECT_EQ(line.config, "/c");
    EXPECT_FALSE(parseCommandLine({"release"}).ok());
}

TEST(CommandLine, ReadsTheOtherCommands) {
    EXPECT_EQ(parsed({"renew"}).action, Action::Renew);
    EXPECT_EQ(parsed({"routes"}).action, Action::Routes);
    EXPECT_EQ(parsed({"status"}).config, "/etc/quorvane-service/service.json");
    EXPECT_TRUE(parsed({"status", "--json", "--config", "/c"}).json);
    EXPECT_FALSE(parsed({"drain"}).off);
    EXPECT_TRUE(parsed({"drain", "--off"}).off);
    EXPECT_EQ(parsed({"revoke", "203.0.113.4"}).revokedOf, "203.0.113.4");
    EXPECT_EQ(parsed({"revoke", "--config", "/c", "user"}).revokedOf, "user");
}

TEST(CommandLine, RefusesWhatItDoesNotKnow) {
    const std::vector<std::vector<std::string>> wrong = {{},
                                                         {"other"},
                                                         {"--config"},
                                                         {"--other"},
                                                         {"--conf", "/c"},
                                                         {"--config", "/c", "x"},
                                                         {"setup", "x"},
                                                         {"setup", "--name"},
                                                         {"setup", "--tls-key", "/k"},
                                                         {"renew", "x"},
                                                         {"status", "--off"},
                                                         {"revoke"},
                                                         {"revoke", "a", "b"}};
    for (const auto &arguments : wrong) {
        EXPECT_FALSE(parseCommandLine(arguments)) << (arguments.empty() ? "" : arguments.back());
    }
}

TEST(CommandLine, TheUsageHasEveryCommand) {
    const std::string usage = usageText();
    EXPECT_EQ(usage.rfind("usage: quorvane-service ", 0), 0U);
    for (const char *word : {"setup", "renew", "routes", "status", "drain", "revoke", "--tls-certificate"}) {
        EXPECT_NE(usage.find(word), std::string::npos) << word;
    }
}

} // namespace

} // namespace quorvane::service
