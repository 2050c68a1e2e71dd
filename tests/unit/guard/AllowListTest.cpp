#include "guard/AllowList.h"
#include "HostileConfigurations.h"

#include <fstream>
#include <gtest/gtest.h>
#include <set>

namespace quorvane::guard {

namespace {

std::vector<Directive> parsed(const std::string &text) {
    return parse(text).value();
}

bool passes(const std::string &text) {
    return check(parsed(text)).ok();
}

} // namespace

class AllowedLine : public testing::TestWithParam<const char *> {};

TEST_P(AllowedLine, Passes) {
    EXPECT_TRUE(passes(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(
    AllowList, AllowedLine,
    testing::Values(
        "client", "tls-client", "pull", "dev tun", "dev tun7", "dev-type tun", "topology subnet",
        "remote vpn.example.test", "remote 2001:db8::1 443 tcp6", "remote 1.2.3.4 65535 udp", "remote-random",
        "proto tcp-client", "port 1", "rport 65535", "nobind", "float", "resolv-retry infinite",
        "resolv-retry 0", "connect-retry 1 5", "connect-retry-max 1", "connect-timeout 5",
        "server-poll-timeout 5", "hand-window 5", "tran-window 60", "tls-timeout 2", "ping 10",
        "ping-exit 60", "ping-restart 0", "keepalive 10 60", "explicit-exit-notify", "explicit-exit-notify 1",
        "auth-user-pass", "auth-nocache", "auth-retry nointeract", "remote-cert-tls server",
        "verify-x509-name \"C=DE, CN=a b\" subject", "<ca>\nx\n</ca>", "<cert>\nx\n</cert>",
        "<key>\nx\n</key>", "<extra-certs>\nx\n</extra-certs>", "<tls-auth>\nx\n</tls-auth>",
        "<tls-crypt>\nx\n</tls-crypt>", "<tls-crypt-v2>\nx\n</tls-crypt-v2>", "key-direction 1",
        "cipher AES-256-GCM", "data-ciphers AES-256-GCM:AES-128-GCM", "data-ciphers-fallback AES-256-CBC",
        "auth SHA256", "tls-version-min 1.3", "tls-version-max 1.3", "reneg-sec 0", "comp-lzo no",
        "allow-compression no", "redirect-gateway def1 ipv6", "block-ipv6",
        "ifconfig-ipv6 fd00::2/64 fd00::1", "dhcp-option DNS 8.8.8.8", "tun-mtu 1500", "mssfix 0",
        "fragment 1300", "sndbuf 0", "rcvbuf 393216", "persist-key", "persist-tun", "fast-io",
        "mute-replay-warnings", "verb 1", "verb 4", "mute 20", "replay-window 64", "replay-window 128 30",
        "tls-cipher TLS-ECDHE-RSA-WITH-AES-256-GCM-SHA384:TLS-DHE-RSA-WITH-AES-256-CBC-SHA",
        "tls-ciphersuites TLS_AES_256_GCM_SHA384:TLS_CHACHA20_POLY1305_SHA256",
        "tls-version-min 1.2 or-highest", "ping-timer-rem",
        "remote-cert-eku \"TLS Web Server Authentication\"", "remote-cert-eku 1.3.6.1.5.5.7.3.1",
        "cipher aes-256-gcm", "auth Sha256", "data-ciphers aes-256-gcm:Chacha20-Poly1305",
        "setenv opt block-outside-dns", "ignore-unknown-option block-outside-dns register-dns",
        "block-outside-dns", "<connection>\nremote 192.0.2.1 1194 udp\n\n# x\nnobind\n</connection>"));

class RefusedLine : public testing::TestWithParam<const char *> {};

TEST_P(RefusedLine, IsRefused) {
    EXPECT_FALSE(passes(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(
    AllowList, RefusedLine,
    testing::Values("remote", "remote -x", "remote a b", "remote a 0", "remote a 65536", "remote a 1 icmp",
                    "remote a 1 udp x", "port", "port 0", "port 65536", "port 1 2", "dev tun1234", "dev tunx",
                    "keepalive 10", "connect-retry 0", "resolv-retry x", "data-ciphers AES-256-GCM:",
                    "data-ciphers :", "data-ciphers \"\"", "cipher \"\"", "ifconfig-ipv6 fd00::2 fd00::1",
                    "ifconfig-ipv6 fd00::2/125 fd00::1", "ifconfig-ipv6 1.2.3.4/24 1.2.3.4",
                    "dhcp-option DNS x", "dhcp-option DNS", "verify-x509-name -x", "verify-x509-name a b",
                    "verb", "verb 5", "redirect-gateway", "tls-version-min 1.1", "client x", "\"\"", "mute",
                    "mute 0", "mute 1001", "replay-window", "replay-window 65537", "replay-window 64 601",
                    "tls-cipher DEFAULT", "tls-cipher TLS-RSA-WITH-AES-256-CBC-SHA", "tls-cipher \"\"",
                    "tls-ciphersuites x", "tls-version-min 1.2 x", "tls-version-min or-highest",
                    "ping-timer-rem 1", "remote-cert-eku", "remote-cert-eku x", "cipher none", "auth md5",
                    "setenv opt", "setenv x block-outside-dns", "setenv opt client",
                    "setenv opt block-outside-dns x", "ignore-unknown-option", "ignore-unknown-option client",
                    "block-outside-dns x", "connection", "<connection>\nclient\n</connection>",
                    "<connection>\nremote a 0\n</connection>", "<connection>\nremote 'a\n</connection>",
                    "<connection>\n<ca>\nx\n</ca>\n</connection>",
                    "<block-outside-dns>\n</block-outside-dns>"));

TEST(AllowList, TheCopySaysTheSameInThePlainestForm) {
    const std::string odd = "\xEF\xBB\xBF# x\n --remote\t\"1.2.3.4\" '1194' # y\r\n"
                            "verify-x509-name 'a b' name\n  <ca>\r\n x\r\n  </ca>\r\n";
    EXPECT_EQ(privateCopy(parsed(odd)),
              "remote 1.2.3.4 1194\nverify-x509-name \"a b\" name\n<ca>\n x\n</ca>\n");
}

TEST(AllowList, NoLineOfTheCopyIsLongerThanItsOrigin) {
    std::string longest = "tls-ciphersuites TLS_AES_256_GCM_SHA384";
    for (int i = 0; i < 3; ++i) {
        longest += ":TLS_AES_128_GCM_SHA256";
    }
    for (int i = 0; i < 5; ++i) {
        longest += ":TLS_CHACHA20_POLY1305_SHA256";
    }
    ASSERT_EQ(longest.size(), 253U);
    const auto directives = parsed(longest + "\n");
    ASSERT_TRUE(check(directives).ok());
    EXPECT_EQ(privateCopy(directives), longest + "\n");
}

TEST(AllowList, TheCopyIsWithoutWhatIsIgnored) {
    EXPECT_EQ(privateCopy(parsed("client\nblock-outside-dns\nsetenv opt register-dns\n"
                                 "ignore-unknown-option block-outside-dns\n"
                                 "<connection>\n remote\t'192.0.2.1' # x\n--nobind\n</connection>\n")),
              "client\n<connection>\nremote 192.0.2.1\nnobind\n</connection>\n");
}

TEST(AllowList, ARefusalInAConnectionBlockNamesItsLine) {
    const auto checked = check(parsed("client\n<connection>\nremote 192.0.2.1\nup x\n</connection>\n"));
    ASSERT_FALSE(checked.ok());
    EXPECT_EQ(checked.error(), "the configuration is refused: line 4: the directive \"up\" is not allowed");
}

TEST(AllowList, TheDocumentListsEveryDirectiveThatMayPassAndNoOther) {
    std::ifstream file(DIRECTIVES_DOCUMENT);
    const std::string begin = "| `";
    std::set<std::string> documented;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(begin)) {
            documented.insert(line.substr(begin.size(), line.find('`', begin.size()) - begin.size()));
        }
    }
    const auto names = allowedNames();
    EXPECT_EQ(documented, std::set<std::string>(names.begin(), names.end()));
}

TEST(AllowList, TheCopyOfACopyIsTheCopy) {
    const std::string once = privateCopy(parsed(allowedConfiguration()));
    EXPECT_EQ(privateCopy(parsed(once)), once);
    EXPECT_TRUE(passes(once));
}

} // namespace quorvane::guard
