#include "core/AnnouncedRequests.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quorvane::service {
namespace {

TEST(AnnouncedRequests, AnExactTargetCoversItsCount) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"/ip", "", 2}));
    EXPECT_TRUE(announced.take("/ip"));
    EXPECT_FALSE(announced.take("/ip?"));
    EXPECT_TRUE(announced.take("/ip"));
    EXPECT_FALSE(announced.take("/ip"));
    EXPECT_EQ(announced.unexpected(), (std::vector<std::string>{"/ip?", "/ip"}));
}

TEST(AnnouncedRequests, AnExpressionMustMatchTheWholeTarget) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"", "/a[0-9]+|/b", 0}));
    EXPECT_TRUE(announced.take("/a12"));
    EXPECT_TRUE(announced.take("/b"));
    EXPECT_FALSE(announced.take("/a12x"));
    EXPECT_FALSE(announced.take("x/b"));
    EXPECT_FALSE(announced.take(""));
}

TEST(AnnouncedRequests, AnExactTargetIsNoExpression) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"/?a=.*", "", 0}));
    EXPECT_TRUE(announced.take("/?a=.*"));
    EXPECT_FALSE(announced.take("/?a=b"));
}

TEST(AnnouncedRequests, TheNextAnnouncementTakesOver) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"/ip", "", 1}));
    ASSERT_TRUE(announced.announce({"", "/.*", 1}));
    EXPECT_TRUE(announced.take("/ip"));
    EXPECT_TRUE(announced.take("/ip"));
    EXPECT_FALSE(announced.take("/ip"));
}

TEST(AnnouncedRequests, ReportsWhatIsOutstanding) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"/a", "", 3}));
    ASSERT_TRUE(announced.announce({"", "/b.*", 0}));
    announced.take("/a");
    const auto outstanding = announced.outstanding();
    ASSERT_EQ(outstanding.size(), 1U);
    EXPECT_EQ(outstanding[0].target, "/a");
    EXPECT_EQ(outstanding[0].count, 2U);
    announced.clear();
    EXPECT_TRUE(announced.outstanding().empty());
    EXPECT_FALSE(announced.take("/b"));
}

TEST(AnnouncedRequests, AnUnreadableExpressionFails) {
    AnnouncedRequests announced;
    EXPECT_FALSE(announced.announce({"", "(", 1}));
    EXPECT_FALSE(announced.announce({"", "[", 1}));
    EXPECT_FALSE(announced.take("("));
}

TEST(AnnouncedRequests, AHugeTargetDoesNotExhaustAnything) {
    AnnouncedRequests announced;
    ASSERT_TRUE(announced.announce({"", "/(a|b)*c", 1}));
    EXPECT_FALSE(announced.take('/' + std::string(200000, 'a')));
    EXPECT_TRUE(announced.take('/' + std::string(200000, 'a') + 'c'));
}

} // namespace
} // namespace quorvane::service
