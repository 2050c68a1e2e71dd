#include "core/Target.h"

#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

TEST(Target, ParsesTheQueryInOrder) {
    const auto target = Target::parse("/?cmd=VPNC&ver=1.0&&systamp=MacOS,user,mobilebox&empty=&flag");
    ASSERT_TRUE(target);
    EXPECT_EQ(target->path(), "/");
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"cmd", "VPNC"}, {"ver", "1.0"}, {"systamp", "MacOS,user,mobilebox"}, {"empty", ""}, {"flag", ""}};
    EXPECT_EQ(target->parameters(), expected);
}

TEST(Target, TheLastOfARepeatedKeyCounts) {
    const auto target = Target::parse("/?cmd=MRTSL&ver=1&cmd=phsabc");
    ASSERT_TRUE(target);
    EXPECT_EQ(target->last("cmd"), "phsabc");
    EXPECT_EQ(target->last("absent"), std::nullopt);
    EXPECT_TRUE(target->has("ver"));
    EXPECT_FALSE(target->has("VER"));
}

TEST(Target, DecodesEscapesAndLeavesPlusSignsAlone) {
    const auto target = Target::parse("/a%20b?k%3d=1%2B2+3%00&=x");
    ASSERT_TRUE(target);
    EXPECT_EQ(target->path(), "/a b");
    EXPECT_EQ(target->last("k="), std::string("1+2+3\0", 6));
    EXPECT_EQ(target->last(""), "x");
}

TEST(Target, KeepsEqualsSignsOfAValue) {
    EXPECT_EQ(Target::parse("/?a=b=c")->last("a"), "b=c");
}

TEST(Target, QuestionMarksAfterTheFirstBelongToTheQuery) {
    EXPECT_EQ(Target::parse("/?a=?b")->last("a"), "?b");
    EXPECT_EQ(Target::parse("/ip?")->path(), "/ip");
    EXPECT_TRUE(Target::parse("/ip?")->parameters().empty());
}

class MalformedTarget : public testing::TestWithParam<std::string> {};

TEST_P(MalformedTarget, IsRefused) {
    EXPECT_FALSE(Target::parse(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Target, MalformedTarget,
                         testing::Values("", "*", "ip", "https://host/", "/?a=%", "/?a=%4", "/?a=%zz",
                                         "/?a=%4g", "/%", "/?%g0=1", "/?a b", "/?a\tb", "/?a\nb", "/#part",
                                         "/?a=1#part", std::string("/\0", 2), "/\x7f"));

TEST(Target, BytesAboveAsciiPassThrough) {
    EXPECT_EQ(Target::parse("/?a=\xc3\xa9\xff")->last("a"), "\xc3\xa9\xff");
}

TEST(Target, ALongQueryIsParsed) {
    std::string raw = "/?";
    for (int i = 0; i < 50000; ++i) {
        raw += "a=1&";
    }
    const auto target = Target::parse(raw);
    ASSERT_TRUE(target);
    EXPECT_EQ(target->parameters().size(), 50000U);
}

} // namespace

} // namespace quorvane::service
