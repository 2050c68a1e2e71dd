#include "core/AnnouncedRequests.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quorvane::service {

namespace {

TEST(AnnouncedRequests, AnExactTargetCoversItsCount) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"/ip", "", 2}));
    EXPECT_TRUE(announced.consume("/ip"));
    EXPECT_FALSE(announced.consume("/ip?"));
    EXPECT_TRUE(announced.consume("/ip"));
    EXPECT_FALSE(announced.consume("/ip"));
    EXPECT_EQ(announced.unexpected(), (std::vector<std::string>{"/ip?", "/ip"}));
}

TEST(AnnouncedRequests, AnExpressionMustMatchTheWholeTarget) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"", "/a[0-9]+|/b", 0}));
    EXPECT_TRUE(announced.consume("/a12"));
    EXPECT_TRUE(announced.consume("/b"));
    EXPECT_FALSE(announced.consume("/a12x"));
    EXPECT_FALSE(announced.consume("x/b"));
    EXPECT_FALSE(announced.consume(""));
}

TEST(AnnouncedRequests, AnExactTargetIsNoExpression) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"/?a=.*", "", 0}));
    EXPECT_TRUE(announced.consume("/?a=.*"));
    EXPECT_FALSE(announced.consume("/?a=b"));
}

TEST(AnnouncedRequests, AUsedUpAnnouncementIsSkipped) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"/ip", "", 1}));
    ASSERT_TRUE(announced.announce({"", "/.*", 1}));
    EXPECT_TRUE(announced.consume("/ip"));
    EXPECT_TRUE(announced.consume("/ip"));
    EXPECT_FALSE(announced.consume("/ip"));
}

TEST(AnnouncedRequests, ReportsWhatIsOutstanding) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"/a", "", 3}));
    ASSERT_TRUE(announced.announce({"", "/b.*", 0}));
    announced.consume("/a");
    const auto outstanding = announced.outstanding();
    ASSERT_EQ(outstanding.size(), 1U);
    EXPECT_EQ(outstanding[0].target, "/a");
    EXPECT_EQ(outstanding[0].count, 2U);
    announced.clear();
    EXPECT_TRUE(announced.outstanding().empty());
    EXPECT_FALSE(announced.consume("/b"));
}

TEST(AnnouncedRequests, AMalformedExpressionFails) {
    AnnouncedRequests announced;
    EXPECT_FALSE(announced.announce({"", "(", 1}));
    EXPECT_FALSE(announced.announce({"", "[", 1}));
    EXPECT_FALSE(announced.consume("("));
}

TEST(AnnouncedRequests, AHugeTargetDoesNotExhaustAnything) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"", "/(a|b)*c", 1}));
    EXPECT_FALSE(announced.consume('/' + std::string(200000, 'a')));
    EXPECT_TRUE(announced.consume('/' + std::string(200000, 'a') + 'c'));
}

} // namespace

} // namespace quorvane::service
