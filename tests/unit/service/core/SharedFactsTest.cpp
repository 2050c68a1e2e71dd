#include "core/SharedFacts.h"
#include "core/GatewayClaims.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

const Ipv4Address berlin = *Ipv4Address::parse("203.0.113.5");
const Ipv4Address boston = *Ipv4Address::parse("203.0.113.42");

class SharedFactsTest : public testing::Test {
protected:
    static RegisteredGateway gateway(std::vector<Ipv4Address> addresses, bool draining = false) {
        return {std::move(addresses), draining, std::chrono::sys_seconds(std::chrono::seconds(1000)), "a"};
    }

    void put(const std::string &key, const std::string &value) { m_facts.apply({false, {key, value}}); }

    void remove(const std::string &key) { m_facts.apply({true, {key}}); }

    /// Two gateways with an address each.
    void begin() {
        m_facts.replace({{"/q/gateways/gw1", gateway({berlin}).text()},
                         {"/q/gateways/gw2", gateway({boston}).text()},
                         {"/q/owners/203.0.113.5", "gw1"},
                         {"/q/owners/203.0.113.42", "gw2"}});
    }

    SharedFacts m_facts{"/q/"};
};

TEST_F(SharedFactsTest, AddressesOfRegisteredGatewaysAreOffered) {
    EXPECT_FALSE(m_facts.known());
    begin();
    EXPECT_TRUE(m_facts.known());
    EXPECT_EQ(m_facts.keyCount(), 4U);
    EXPECT_TRUE(m_facts.isOffered(berlin));
    remove("/q/gateways/gw1");
    EXPECT_FALSE(m_facts.isOffered(berlin));
    EXPECT_TRUE(m_facts.isOwnedBy(berlin, "gw1")) << "it owns them also while it is down";
    EXPECT_TRUE(m_facts.isOffered(boston));
    put("/q/gateways/gw2", gateway({boston}, true).text());
    EXPECT_FALSE(m_facts.isOffered(boston)) << "it drains";
    put("/q/gateways/gw2", gateway({boston}).text());
    EXPECT_TRUE(m_facts.isOffered(boston));
    put("/q/owners/203.0.113.42", "gw3");
    EXPECT_FALSE(m_facts.isOffered(boston)) << "another gateway owns it";
}

TEST_F(SharedFactsTest, WhatIsNotReadAgainIsGone) {
    begin();
    put("/q/orders/users/user1", R"({"end":9})");
    EXPECT_EQ(m_facts.orders().users.size(), 1U);
    m_facts.replace({{"/q/owners/203.0.113.5", "gw1"}});
    EXPECT_THAT(m_facts.gateways(), IsEmpty());
    EXPECT_THAT(m_facts.owners(), ElementsAre(Pair(berlin, "gw1")));
    EXPECT_EQ(m_facts.orders(), SharedOrders());
    EXPECT_EQ(m_facts.keyCount(), 1U);
}

TEST_F(SharedFactsTest, OrdersComeAndGo) {
    begin();
    put("/q/orders/drain", R"({"on":true,"given":5})");
    put("/q/orders/users/user1", R"({"end":9})");
    EXPECT_TRUE(m_facts.orders().drain.on);
    put("/q/orders/drain", R"({"on":false,"given":4})");
    EXPECT_FALSE(m_facts.orders().drain.on) << "what is written last counts";
    remove("/q/orders/users/user1");
    EXPECT_THAT(m_facts.orders().users, IsEmpty());
}

TEST_F(SharedFactsTest, MalformedValuesCountAsAbsent) {
    begin();
    for (const std::string bad :
         {"", "x", "[]", R"({"addresses":["host"],"draining":false,"since":1,"instance":"a"})",
          R"({"addresses":5,"draining":false,"since":1,"instance":"a"})",
          R"({"addresses":[],"draining":false,"since":-1,"instance":"a"})",
          R"({"addresses":[],"draining":0,"since":1,"instance":"a"})"}) {
        put("/q/gateways/gw1", bad);
        EXPECT_FALSE(m_facts.gateways().contains("gw1")) << bad;
    }
    put("/q/owners/203.0.113.5", "not a name");
    EXPECT_FALSE(m_facts.owners().contains(berlin));
    put("/q/owners/host", "gw1");
    put("/q/gateways/a/b", gateway({}).text());
    put("/other/gateways/gw9", gateway({}).text());
    put("/q/else", "x");
    EXPECT_THAT(m_facts.gateways(), ElementsAre(Pair("gw2", gateway({boston}))));
}

TEST_F(SharedFactsTest, GatewaysAndOwnersAreKeptInAFile) {
    begin();
    SharedFacts later("/q/");
    ASSERT_TRUE(later.load(m_facts.text()).ok());
    EXPECT_TRUE(later.known());
    EXPECT_EQ(later.gateways(), m_facts.gateways());
    EXPECT_EQ(later.owners(), m_facts.owners());
    EXPECT_FALSE(SharedFacts("/q/").load("{}").ok());
    EXPECT_FALSE(SharedFacts("/q/").load(R"({"gateways":{"a":1},"owners":{}})").ok());
}

TEST_F(SharedFactsTest, AGatewayClaimsWhatNoneOwns) {
    begin();
    const auto nothing = *Ipv4Address::parse("203.0.113.7");
    const auto claims =
        GatewayClaims::of(m_facts, "gw1", {berlin, boston, nothing}, [](Ipv4Address) { return false; });
    EXPECT_THAT(claims.owned, ElementsAre(berlin));
    EXPECT_THAT(claims.claim, ElementsAre(nothing));
    EXPECT_THAT(claims.ownedByOthers, ElementsAre(Pair(boston, "gw2")));
    EXPECT_THAT(claims.release, IsEmpty());
}

TEST_F(SharedFactsTest, AGatewayReleasesWhatItNoLongerLendsWhenNoSessionHasIt) {
    begin();
    EXPECT_THAT(GatewayClaims::of(m_facts, "gw1", {}, [](Ipv4Address) { return true; }).release, IsEmpty());
    EXPECT_THAT(GatewayClaims::of(m_facts, "gw1", {}, [](Ipv4Address) { return false; }).release,
                ElementsAre(berlin));
}

} // namespace

} // namespace quorvane::service
