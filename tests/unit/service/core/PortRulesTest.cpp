#include "core/PortRules.h"
#include "SampleConfig.h"

#include <gmock/gmock.h>

namespace quorvane::service {

namespace {

using testing::HasSubstr;
using testing::Not;

TEST(PortRules, ByteForByte) {
    const Config config = test::sampleConfig();
    EXPECT_EQ(portRules(config.vpn, config.limits.vpn),
              " set udp_starts { type ipv4_addr; size 65536; flags dynamic,timeout; timeout 30s; }\n"
              " set tcp_starts { type ipv4_addr; size 65536; flags dynamic,timeout; timeout 30s; }\n"
              " chain udp_port {\n"
              "  notrack\n"
              "  @th,64,8 != { 0x18-0x37, 0x48-0x5f } counter drop\n"
              "  @th,64,8 0x50-0x5f udp length < 316 counter drop\n"
              "  @th,64,8 0x50-0x57 update @udp_starts { ip saddr limit rate over 4/second burst 20 packets }"
              " counter drop\n"
              " }\n"
              " chain tcp_port {\n"
              "  notrack\n"
              "  tcp flags & (fin | syn | rst | ack) == syn update @tcp_starts { ip saddr limit rate over "
              "4/second burst 20 packets } counter drop\n"
              " }\n"
              " chain arriving {\n"
              "  type filter hook prerouting priority raw; policy accept;\n"
              "  fib daddr type local udp dport 1194 goto udp_port\n"
              "  fib daddr type local tcp dport 443 goto tcp_port\n"
              " }\n"
              " chain leaving {\n"
              "  type filter hook output priority raw; policy accept;\n"
              "  udp sport 1194 notrack\n"
              "  tcp sport 443 notrack\n"
              " }\n");
}

TEST(PortRules, OnlyOfTheServersThatExist) {
    Config config = test::sampleConfig();
    config.vpn.udp.reset();
    config.limits.vpn.startsPerSecond = 7;
    config.limits.vpn.startsBurst = 70;
    const std::string rules = portRules(config.vpn, config.limits.vpn);
    EXPECT_THAT(rules, Not(HasSubstr("udp")));
    EXPECT_THAT(rules, HasSubstr("limit rate over 7/second burst 70 packets"));
}

} // namespace

} // namespace quorvane::service
