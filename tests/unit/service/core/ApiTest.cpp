#include "core/Api.h"
#include "SampleAuthority.h"
#include "SampleConfig.h"
#include "core/VpnConfiguration.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quorvane::service {

namespace {

using std::chrono::seconds;

constexpr const char *parsingError = "ERR: Argument parsing error";

class ApiTest : public testing::Test {
protected:
    HttpResponse get(const std::string &target, const std::string &accept = "*/*") {
        return m_api.answer({"198.51.100.10", "GET", target, "api.quorvane.test", accept});
    }

    /// Requests a server list and returns its user.
    std::string newUser() {
        const std::string body =
            get("/?cmd=MRTSL&ver=1.0&device=1&systamp=MacOS,user,mobilebox&uniqueid=A-1").body;
        return fieldOf(body, "VPNUser: ");
    }

    static std::string fieldOf(const std::string &body, const std::string &name) {
        const auto begin = body.find(name) + name.size();
        return body.substr(begin, body.find("<br />", begin) - begin);
    }

    [[nodiscard]] std::string passwordOf(const std::string &user) const {
        const auto opened = m_tokens.open(user);
        return opened ? opened->password : "";
    }

    static std::string vpnc(const std::string &user, const std::string &address, const std::string &proto) {
        return "/?cmd=VPNC&ver=1.0&device=1&server=571&desiredip=" + address + "&sessid=" + user +
               "&&systamp=MacOS,user,mobilebox&uniqueid=A-1&proto=" + proto;
    }

    Config m_config = test::sampleConfig();
    std::chrono::system_clock::time_point m_now;
    UserTokens m_tokens{{UserTokens::Key{1}}};
    VpnUsers m_users{m_tokens, seconds(100), seconds(10), [this] {
                         return m_now;
                     }};
    ControlKey m_controlKey{ControlKey::Bytes{}};
    test::SampleAuthority m_authority;
    Api m_api{m_config, test::samplePem, m_users};
};

TEST_F(ApiTest, OnlyAddressesOfGatewaysThatAreUpAreOffered) {
    const auto berlin = *Ipv4Address::parse("203.0.113.6");
    m_api.setOffered([berlin](Ipv4Address address) { return address == berlin; });
    const std::string list =
        get("/?cmd=MRTSL&ver=1.0&device=1&systamp=MacOS,user,mobilebox&uniqueid=A-1").body;
    EXPECT_NE(list.find("|203.0.113.6"), std::string::npos) << list;
    EXPECT_EQ(list.find("203.0.113.5"), std::string::npos) << list;
    EXPECT_EQ(list.find("Boston"), std::string::npos) << list;
    const std::string user = newUser();
    EXPECT_EQ(get(vpnc(user, "203.0.113.5", "UDP")).body, "ERR: Address not available");
    EXPECT_EQ(get(vpnc(user, "203.0.113.6", "UDP")).body.rfind("VPNConfig: ", 0), 0U);
}

TEST_F(ApiTest, AServerListIssuesAUser) {
    const auto response = get("/?cmd=MRTSL&ver=1.0&device=1&systamp=MacOS,user,mobilebox&uniqueid=A-1");
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.contentType, "text/plain; charset=utf-8");
    const std::string user = fieldOf(response.body, "VPNUser: ");
    EXPECT_TRUE(m_users.find(user));
    EXPECT_EQ(fieldOf(response.body, "VPNPass: "), passwordOf(user));
}

TEST_F(ApiTest, AnIncompleteServerListRequestIsNotAccepted) {
    EXPECT_EQ(get("/?cmd=MRTSL&ver=1.0&device=1&uniqueid=A-1").body,
              "STATUS: 1<br />ClientIP: 198.51.100.10");
}

TEST_F(ApiTest, ALaterCommandReplacesTheFirst) {
    const std::string base = "/?cmd=MRTSL&ver=1.0&device=1&systamp=MacOS,user,mobilebox&uniqueid=A-1";
    EXPECT_EQ(get(base + "&cmd=phs").body, "STATUS: 0<br />ClientIP: 198.51.100.10");
    EXPECT_EQ(get(base + "&cmd=phsa%2Bb&x=1").body, "STATUS: 0<br />ClientIP: 198.51.100.10");
}

TEST_F(ApiTest, AConfigurationIsGrantedForTheAddress) {
    const std::string user = newUser();
    const auto response = get(vpnc(user, "203.0.113.6", "TCP"));
    EXPECT_EQ(response.status, 200);
    const std::string text = clientConfiguration(m_config.vpn, *m_config.vpn.tcp,
                                                 *Ipv4Address::parse("203.0.113.6"), test::samplePem);
    EXPECT_EQ(response.body.rfind("VPNConfig: client<br />", 0), 0U);
    EXPECT_NE(response.body.find("<br />remote 203.0.113.6 443<br />"), std::string::npos);
    EXPECT_EQ(response.body.find('\n'), std::string::npos);
    EXPECT_EQ(response.body.size(),
              11 + text.size() + 5 * std::size_t(std::count(text.begin(), text.end(), '\n')));
}

TEST_F(ApiTest, AConfigurationHasACertificateWithTheGrant) {
    m_api.useKeys(m_controlKey, m_authority.authority());
    m_now += seconds(1000);
    const std::string user = newUser();
    const auto grantIn = [](std::string body) {
        for (auto end = body.find("<br />"); end != std::string::npos; end = body.find("<br />")) {
            body.replace(end, 6, "\n");
        }
        return test::grantInBlocks(body);
    };
    const auto first = grantIn(get(vpnc(user, "203.0.113.6", "TCP")).body);
    const auto second = grantIn(get(vpnc(user, "203.0.113.42", "udp")).body);
    using std::chrono::microseconds;
    const Grant::TimePoint now{seconds(1000)};
    EXPECT_EQ(first,
              (Grant{user, *Ipv4Address::parse("203.0.113.6"), Protocol::Tcp, now, now + seconds(10)}));
    EXPECT_EQ(second, (Grant{user, *Ipv4Address::parse("203.0.113.42"), Protocol::Udp, now + microseconds(1),
                             now + seconds(10)}));
}

TEST_F(ApiTest, EveryConfigurationHasAClientKeyOfItsOwn) {
    m_api.useKeys(m_controlKey, m_authority.authority());
    const std::string target = vpnc(newUser(), "203.0.113.6", "UDP");
    const auto keyOf = [](const std::string &body) {
        return body.substr(std::min(body.size(), body.find("<tls-crypt-v2><br />-----BEGIN OpenVPN")));
    };
    const std::string first = keyOf(get(target).body);
    EXPECT_GT(first.size(), 740U);
    EXPECT_EQ(first.find('\n'), std::string::npos);
    EXPECT_NE(first, keyOf(get(target).body));
}

TEST(RequestsConfiguration, IsRecognizedInEveryForm) {
    EXPECT_TRUE(requestsConfiguration("/?cmd=VPNC&ver=1"));
    EXPECT_TRUE(requestsConfiguration("/?cmd=MRTSL&cmd=%56%50NC"));
    EXPECT_FALSE(requestsConfiguration("/?cmd=VPNC&cmd=MRTSL"));
    EXPECT_FALSE(requestsConfiguration("/?cmd=MRTSL&ver=%20"));
    EXPECT_FALSE(requestsConfiguration("VPNC"));
}

TEST_F(ApiTest, TheProtocolsNameIsCaseInsensitive) {
    const std::string user = newUser();
    EXPECT_NE(get(vpnc(user, "203.0.113.5", "udp")).body.find("proto udp<br />"), std::string::npos);
    EXPECT_NE(get(vpnc(user, "203.0.113.5", "Tcp")).body.find("proto tcp-client<br />"), std::string::npos);
    EXPECT_EQ(get(vpnc(user, "203.0.113.5", "SCTP")).body, parsingError);
}

TEST_F(ApiTest, AMissingEmptyOrTooLongArgumentIsAParsingError) {
    const std::string user = newUser();
    const std::string good = vpnc(user, "203.0.113.5", "UDP");
    for (const std::string key :
         {"ver", "device", "server", "desiredip", "sessid", "systamp", "uniqueid", "proto"}) {
        const auto begin = good.find(key + '=');
        const auto value = begin + key.size() + 1;
        const auto end = std::min(good.find('&', value), good.size());
        EXPECT_EQ(get(good.substr(0, value) + good.substr(end)).body, parsingError) << key << " empty";
        EXPECT_EQ(get(good.substr(0, begin) + good.substr(end)).body, parsingError) << key << " missing";
        EXPECT_EQ(get(good.substr(0, value) + std::string(300, '1') + good.substr(end)).body, parsingError)
            << key;
    }
}

TEST_F(ApiTest, MalformedArgumentsAreAParsingError) {
    const std::string user = newUser();
    EXPECT_EQ(get(vpnc(user, "203.0.113", "UDP")).body, parsingError);
    EXPECT_EQ(get(vpnc(user, "203.0.113.05", "UDP")).body, parsingError);
    EXPECT_EQ(get(vpnc(user, "host.example", "UDP")).body, parsingError);
    EXPECT_EQ(get(vpnc(user, "203.0.113.5%zz", "UDP")).body, parsingError);
    EXPECT_EQ(get(vpnc(user, "203.0.113.5", "UDP") + "&server=x").body, parsingError);
    EXPECT_EQ(get(vpnc(user, "203.0.113.5", "UDP") + "&device=-1").body, parsingError);
    EXPECT_EQ(get("/?cmd=VPNC").body, parsingError);
}

TEST_F(ApiTest, RefusalsOfAWellFormedRequestHaveAReason) {
    const std::string user = newUser();
    EXPECT_EQ(get(vpnc("unknown", "203.0.113.5", "UDP")).body, "ERR: Unknown or expired session");
    EXPECT_EQ(get(vpnc(user, "203.0.113.7", "UDP")).body, "ERR: Address not available");
    m_config.vpn.tcp.reset();
    EXPECT_EQ(get(vpnc(user, "203.0.113.5", "TCP")).body, "ERR: Protocol not offered");
    m_now += seconds(100);
    EXPECT_EQ(get(vpnc(user, "203.0.113.5", "UDP")).body, "ERR: Unknown or expired session");
}

TEST_F(ApiTest, WhileItDrainsNothingIsOffered) {
    const std::string user = newUser();
    m_api.setDraining([] { return true; });
    const std::string list =
        get("/?cmd=MRTSL&ver=1.0&device=1&systamp=MacOS,user,mobilebox&uniqueid=A-1").body;
    EXPECT_EQ(list.rfind("STATUS: 0<br />", 0), 0U);
    EXPECT_EQ(fieldOf(list, "LOCATIONS: "), "");
    EXPECT_EQ(list.find("Server: "), std::string::npos);
    EXPECT_EQ(get(vpnc(user, "203.0.113.5", "UDP")).body, "ERR: Address not available");
}

TEST_F(ApiTest, TheAddressPageDependsOnTheCaller) {
    const auto script = get("/ip");
    EXPECT_EQ(script.body, "198.51.100.10\n");
    EXPECT_EQ(script.contentType, "text/plain; charset=utf-8");
    const auto browser = get("/ip?utm_source=905&uid=A-1", "Text/HTML,application/xhtml+xml;q=0.9");
    EXPECT_EQ(browser.contentType, "text/html; charset=utf-8");
    EXPECT_NE(browser.body.find("198.51.100.10"), std::string::npos);
}

TEST_F(ApiTest, TheRestOfTheSite) {
    EXPECT_EQ(get("/").status, 200);
    EXPECT_EQ(get("/?utm_source=905-quorvane-mac&utm_medium=in-app&uid=A-1").contentType,
              "text/html; charset=utf-8");
    EXPECT_EQ(get("/nothing").status, 404);
    EXPECT_EQ(get("//").status, 404);
    EXPECT_EQ(get("/?cmd=OTHER").status, 400);
    EXPECT_EQ(get("/?a=%zz").status, 400);
    EXPECT_EQ(get("*").status, 400);
}

TEST_F(ApiTest, OnlyGetIsAccepted) {
    for (const std::string method : {"POST", "HEAD", "PUT", "DELETE", "OPTIONS", "get", "QUUX"}) {
        const auto response = m_api.answer({"198.51.100.10", method, "/?cmd=MRTSL", "h", ""});
        EXPECT_EQ(response.status, 405) << method;
        EXPECT_EQ(response.allow, "GET");
    }
}

} // namespace

} // namespace quorvane::service
