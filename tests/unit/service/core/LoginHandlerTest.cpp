#include "core/LoginHandler.h"

#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

using std::chrono::seconds;
using Kind = ManagementEvent::Kind;

const Ipv4Address berlin = *Ipv4Address::parse("203.0.113.5");
const Ipv4Address boston = *Ipv4Address::parse("203.0.113.42");

/// Records the calls, and answers when the test calls answer().
class FakeLeaseTable : public AddressLeaseTable {
public:
    void lend(Ipv4Address tunnel, Ipv4Address lent, std::function<void(bool)> done) override {
        calls.push_back("lend " + tunnel.text() + ' ' + lent.text());
        waiting.push_back(std::move(done));
    }

    void release(Ipv4Address tunnel) override { calls.push_back("release " + tunnel.text()); }

    void answer(bool succeeded) {
        const auto done = std::move(waiting.front());
        waiting.erase(waiting.begin());
        done(succeeded);
    }

    std::vector<std::string> calls;
    std::vector<std::function<void(bool)>> waiting;
};

class LoginHandlerTest : public testing::Test {
protected:
    /// What a client logs in with.
    struct Client : Credentials {
        std::optional<Grant> grant;
    };

    void handle(Kind kind, std::uint64_t number, std::uint64_t key = 0, const Client &client = {}) {
        ManagementEvent event;
        event.kind = kind;
        event.client = number;
        event.key = key;
        event.fields = {{"username", client.user}, {"password", client.password}, m_source};
        if (client.grant) {
            for (const SubjectAttribute &attribute : subjectOf(*client.grant)) {
                event.fields.emplace(std::string("X509_0_") + attribute.name, attribute.text);
            }
        }
        m_handler->handle(event);
    }

    /// A new user with a grant of the address.
    Client granted(Ipv4Address address) {
        auto credentials = m_users.issue();
        auto grant = m_users.grant(credentials.user, address, Protocol::Udp);
        return {credentials, grant};
    }

    std::string sent() { return std::exchange(m_sent, {}); }

    std::pair<std::string, std::string> m_source{"untrusted_ip", "198.51.100.10"};
    std::chrono::system_clock::time_point m_now;
    UserTokens m_tokens{{UserTokens::Key{1}}};
    VpnUsers m_users{m_tokens, seconds(100), seconds(10), [this] {
                         return m_now;
                     }};
    UsedGrants m_grants{m_users,
                        {[](Ipv4Address) {
                            return true;
                        }},
                        [this] {
                            return m_now;
                        }};
    TunnelAddresses m_addresses{*Ipv4Network::parse("10.8.0.0/29"), 0};
    FakeLeaseTable m_table;
    std::string m_sent;
    std::vector<std::string> m_logLines;
    std::shared_ptr<LoginHandler> m_handler = std::make_shared<LoginHandler>(
        Protocol::Udp, m_grants, m_addresses, m_table, [this](const std::string &text) { m_sent += text; },
        [this](const std::string &line) { m_logLines.push_back(line); });
};

TEST_F(LoginHandlerTest, ReleasesTheServerAndReportsItReady) {
    handle(Kind::Hold, 0);
    EXPECT_EQ(sent(), "state on\nhold release\n");
    EXPECT_FALSE(m_handler->ready());
    ManagementEvent state;
    state.kind = Kind::State;
    state.text = "CONNECTED";
    m_handler->handle(state);
    EXPECT_TRUE(m_handler->ready());
    state.text = "EXITING";
    m_handler->handle(state);
    EXPECT_FALSE(m_handler->ready());
}

TEST_F(LoginHandlerTest, ALoginIsAnsweredOnceItsAddressIsLent) {
    handle(Kind::Connect, 4, 1, granted(berlin));
    EXPECT_EQ(m_table.calls, std::vector<std::string>{"lend 10.8.0.2 203.0.113.5"});
    EXPECT_EQ(sent(), "");
    m_table.answer(true);
    EXPECT_EQ(sent(), "client-auth 4 1\nifconfig-push 10.8.0.2 255.255.255.248\nEND\n");
    EXPECT_EQ(m_handler->sessionCount(), 1U);
    handle(Kind::Established, 4);
    handle(Kind::Disconnect, 4);
    EXPECT_EQ(m_table.calls.back(), "release 10.8.0.2");
    EXPECT_EQ(m_addresses.allocatedCount(), 0U);
    EXPECT_EQ(m_handler->sessionCount(), 0U);
}

TEST_F(LoginHandlerTest, EveryRefusalHasItsReason) {
    const auto credentials = granted(berlin);
    handle(Kind::Connect, 1, 0, {{"unknown", "x"}, credentials.grant});
    EXPECT_EQ(sent(), "client-deny 1 0 \"unknown or expired user\" \"login refused\"\n");
    handle(Kind::Connect, 2, 0, {{credentials.user, "x"}, credentials.grant});
    EXPECT_EQ(sent(), "client-deny 2 0 \"wrong password\" \"login refused\"\n");
    handle(Kind::Connect, 3, 0, credentials);
    m_table.answer(true);
    sent();
    m_source.second = "198.51.100.11";
    handle(Kind::Connect, 4, 5, credentials);
    EXPECT_EQ(sent(), "client-deny 4 5 \"the grant was used elsewhere\" \"login refused\"\n");
    handle(Kind::Connect, 4, 6, {m_users.issue(), {}});
    EXPECT_EQ(sent(), "client-deny 4 6 \"the certificate contains no grant\" \"login refused\"\n");
    handle(Kind::Connect, 5, 0, {});
    EXPECT_EQ(sent(), "client-deny 5 0 \"unknown or expired user\" \"login refused\"\n");
    EXPECT_EQ(m_handler->refusedLogins().at("unknown or expired user"), 2U);
    EXPECT_EQ(m_handler->refusedLogins().at("wrong password"), 1U);
    EXPECT_EQ(m_table.calls.size(), 1U);
}

TEST_F(LoginHandlerTest, ALoginFromTheSameSourceReplacesTheSession) {
    const auto credentials = granted(berlin);
    handle(Kind::Connect, 1, 0, credentials);
    m_table.answer(true);
    sent();
    handle(Kind::Connect, 2, 0, credentials);
    EXPECT_EQ(sent(), "client-kill 1\n");
    m_table.answer(true);
    EXPECT_EQ(sent(), "client-auth 2 0\nifconfig-push 10.8.0.2 255.255.255.248\nEND\n");
    handle(Kind::Disconnect, 1);
    EXPECT_EQ(m_handler->sessionCount(), 1U);
    const std::vector<std::string> expected = {"lend 10.8.0.2 203.0.113.5", "release 10.8.0.2",
                                               "lend 10.8.0.2 203.0.113.5"};
    EXPECT_EQ(m_table.calls, expected);
}

TEST_F(LoginHandlerTest, ATunnelThatReconnectsKeepsItsAddress) {
    const auto credentials = granted(berlin);
    handle(Kind::Connect, 1, 0, credentials);
    handle(Kind::Connect, 2, 0, granted(boston));
    m_handler->connectionLost(); // the server ended; the next one has a handler of its own
    m_handler = std::make_shared<LoginHandler>(
        Protocol::Udp, m_grants, m_addresses, m_table, [this](const std::string &text) { m_sent += text; },
        [](const std::string &) {});
    m_table.calls.clear();
    handle(Kind::Connect, 1, 0, granted(boston));
    handle(Kind::Connect, 2, 0, credentials);
    EXPECT_EQ(m_table.calls,
              (std::vector<std::string>{"lend 10.8.0.4 203.0.113.42", "lend 10.8.0.2 203.0.113.5"}));
}

TEST_F(LoginHandlerTest, ATunnelAddressThatIsAllocatedMeanwhileIsNotKept) {
    const auto credentials = granted(berlin);
    handle(Kind::Connect, 1, 0, credentials);
    handle(Kind::Disconnect, 1);
    ASSERT_EQ(m_addresses.allocatePreferred(*Ipv4Address::parse("10.8.0.2")), Ipv4Address::parse("10.8.0.2"));
    handle(Kind::Connect, 2, 0, credentials);
    EXPECT_EQ(m_table.calls.back(), "lend 10.8.0.3 203.0.113.5");
}

TEST_F(LoginHandlerTest, AnotherGrantMeansAnotherTunnelAddress) {
    auto credentials = granted(berlin);
    handle(Kind::Connect, 1, 0, credentials);
    handle(Kind::Disconnect, 1);
    credentials.grant = m_users.grant(credentials.user, boston, Protocol::Udp);
    handle(Kind::Connect, 2, 0, credentials);
    EXPECT_EQ(m_table.calls.back(), "lend 10.8.0.3 203.0.113.42");
}

TEST_F(LoginHandlerTest, ClientsOverIpv6AreDistinguishedToo) {
    m_source = {"untrusted_ip6", "2001:db8::1"};
    const auto credentials = granted(berlin);
    handle(Kind::Connect, 1, 0, credentials);
    m_table.answer(true);
    handle(Kind::Disconnect, 1);
    sent();
    m_source.second = "2001:db8::2";
    handle(Kind::Connect, 2, 0, credentials);
    EXPECT_EQ(sent(), "client-deny 2 0 \"the grant was used elsewhere\" \"login refused\"\n");
    m_source.second = "2001:db8::1";
    handle(Kind::Connect, 3, 0, credentials);
    m_table.answer(true);
    EXPECT_EQ(sent(), "client-auth 3 0\nifconfig-push 10.8.0.2 255.255.255.248\nEND\n");
}

TEST_F(LoginHandlerTest, LoginsMayInterleave) {
    handle(Kind::Connect, 1, 0, granted(berlin));
    handle(Kind::Connect, 2, 0, granted(boston));
    m_table.answer(true);
    EXPECT_EQ(sent(), "client-auth 1 0\nifconfig-push 10.8.0.2 255.255.255.248\nEND\n");
    m_table.answer(true);
    EXPECT_EQ(sent(), "client-auth 2 0\nifconfig-push 10.8.0.3 255.255.255.248\nEND\n");
}

TEST_F(LoginHandlerTest, AClientThatLeavesBeforeItsAnswerReceivesNone) {
    handle(Kind::Connect, 1, 0, granted(berlin));
    handle(Kind::Disconnect, 1);
    m_table.answer(true);
    EXPECT_EQ(sent(), "");
    const std::vector<std::string> expected = {"lend 10.8.0.2 203.0.113.5", "release 10.8.0.2"};
    EXPECT_EQ(m_table.calls, expected);
}

TEST_F(LoginHandlerTest, AReusedClientNumberIsANewClient) {
    handle(Kind::Connect, 1, 0, granted(berlin));
    handle(Kind::Connect, 1, 1, granted(boston));
    m_table.answer(true); // the lease of the first client, which has disconnected
    EXPECT_EQ(sent(), "");
    m_table.answer(true);
    EXPECT_EQ(sent(), "client-auth 1 1\nifconfig-push 10.8.0.3 255.255.255.248\nEND\n");
    EXPECT_EQ(m_addresses.allocatedCount(), 1U);
}

TEST_F(LoginHandlerTest, ALoginIsRefusedWhenTheGatewayCannotLend) {
    handle(Kind::Connect, 1, 2, granted(berlin));
    m_table.answer(false);
    EXPECT_EQ(sent(), "client-deny 1 2 \"the gateway cannot lend the address\" \"login refused\"\n");
    EXPECT_EQ(m_addresses.allocatedCount(), 0U);
    EXPECT_EQ(m_handler->sessionCount(), 0U);
}

TEST_F(LoginHandlerTest, NoLoginWithoutATunnelAddress) {
    for (std::uint64_t client = 0; client < 5; ++client) {
        handle(Kind::Connect, client, 0, granted(berlin));
    }
    handle(Kind::Connect, 5, 0, granted(berlin));
    EXPECT_EQ(sent(), "client-deny 5 0 \"no tunnel address is free\" \"login refused\"\n");
    handle(Kind::Disconnect, 3);
    handle(Kind::Connect, 6, 0, granted(berlin));
    EXPECT_EQ(m_table.calls.back(), "lend 10.8.0.5 203.0.113.5");
}

TEST_F(LoginHandlerTest, KeysAreRenewedWithTheSessionsOwnCredentialsOnly) {
    const auto credentials = granted(berlin);
    handle(Kind::Connect, 1, 0, credentials);
    m_table.answer(true);
    sent();
    m_now += seconds(1000); // the user has expired, its session has not
    handle(Kind::Reauth, 1, 1, credentials);
    EXPECT_EQ(sent(), "client-auth-nt 1 1\n");
    handle(Kind::Reauth, 1, 2, {{credentials.user, "x"}, credentials.grant});
    EXPECT_EQ(sent(), "client-deny 1 2 \"not the session's credentials\" \"login refused\"\n");
    handle(Kind::Reauth, 9, 3, credentials);
    EXPECT_EQ(sent(), "client-deny 9 3 \"not the session's credentials\" \"login refused\"\n");
    EXPECT_EQ(m_handler->sessionCount(), 1U);
}

TEST_F(LoginHandlerTest, SessionsCanBeEndedByUserAndByAddress) {
    const auto first = granted(berlin);
    handle(Kind::Connect, 1, 0, first);
    handle(Kind::Connect, 2, 0, granted(boston));
    handle(Kind::Connect, 3, 0, granted(boston));
    m_table.calls.clear();
    EXPECT_EQ(m_handler->endSessions([](const Grant &grant) { return grant.address == boston; }), 2U);
    EXPECT_EQ(sent(), "client-kill 2 HALT\nclient-kill 3 HALT\n");
    EXPECT_EQ(m_table.calls, (std::vector<std::string>{"release 10.8.0.3", "release 10.8.0.4"}));
    handle(Kind::Disconnect, 2);
    EXPECT_EQ(m_table.calls.size(), 2U);
    EXPECT_EQ(m_handler->endSessions([&first](const Grant &grant) { return grant.user == first.user; }), 1U);
    EXPECT_EQ(m_handler->endSessions([](const Grant &) { return true; }), 0U);
}

TEST_F(LoginHandlerTest, TheEndOfTheServerEndsItsSessions) {
    handle(Kind::Connect, 1, 0, granted(berlin));
    handle(Kind::Connect, 2, 0, granted(boston));
    m_table.answer(true);
    sent();
    m_handler->connectionLost();
    m_table.answer(true);
    EXPECT_EQ(sent(), "");
    EXPECT_EQ(m_addresses.allocatedCount(), 0U);
    const std::vector<std::string> expected = {"lend 10.8.0.2 203.0.113.5", "lend 10.8.0.3 203.0.113.42",
                                               "release 10.8.0.2", "release 10.8.0.3"};
    EXPECT_EQ(m_table.calls, expected);
}

TEST_F(LoginHandlerTest, TheTableMayAnswerAfterTheHandlerIsDestroyed) {
    handle(Kind::Connect, 1, 0, granted(berlin));
    m_handler->connectionLost();
    m_handler.reset();
    m_table.answer(true);
    EXPECT_EQ(m_sent, "");
}

TEST_F(LoginHandlerTest, AnUnknownClientMayDisconnect) {
    handle(Kind::Disconnect, 77);
    EXPECT_TRUE(m_table.calls.empty());
}

TEST_F(LoginHandlerTest, LogLinesNeverContainAPasswordOrRawBytes) {
    auto credentials = granted(berlin);
    handle(Kind::Connect, 1, 0, credentials);
    handle(Kind::Connect, 2, 0, {{"evil\nuser", "secret"}, {}});
    ManagementEvent error;
    error.kind = Kind::Error;
    error.text = "bad\x1b[2J";
    m_handler->handle(error);
    ASSERT_FALSE(m_logLines.empty());
    for (const std::string &line : m_logLines) {
        EXPECT_EQ(line.find(credentials.password), std::string::npos);
        EXPECT_EQ(line.find("secret"), std::string::npos);
        EXPECT_EQ(line.find_first_of("\n\x1b"), std::string::npos);
    }
}

} // namespace

} // namespace quorvane::service
