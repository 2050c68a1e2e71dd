#include "guard/Configuration.h"

#include <gmock/gmock.h>

using namespace quorvane::guard;
using testing::ElementsAre;

namespace {

std::vector<Directive> parsed(const std::string &text) {
    auto result = parse(text);
    if (const auto *refusal = std::get_if<Refusal>(&result)) {
        ADD_FAILURE() << refusal->text();
        return {};
    }
    return std::get<std::vector<Directive>>(result);
}

std::vector<std::string> words(const std::string &line) {
    const auto directives = parsed(line);
    return directives.empty() ? std::vector<std::string>() : directives.front().words;
}

std::string refusal(const std::string &text) {
    const auto result = parse(text);
    const auto *refusal = std::get_if<Refusal>(&result);
    return refusal == nullptr ? "" : refusal->reason;
}

} // namespace

TEST(GuardConfiguration, WordsAreSeparatedByBlanksTabsAndCarriageReturns) {
    EXPECT_THAT(words("  remote\t1.2.3.4  1194 \r\n"), ElementsAre("remote", "1.2.3.4", "1194"));
}

TEST(GuardConfiguration, CommentsBeginAtAHashOrSemicolonBeforeAWord) {
    EXPECT_TRUE(parsed("# a\n ; b\n\n   \n").empty());
    EXPECT_THAT(words("port 1 # two"), ElementsAre("port", "1"));
    EXPECT_THAT(words("port 1;2"), ElementsAre("port", "1;2"));
    EXPECT_THAT(words("\"port\"#2"), ElementsAre("port"));
}

TEST(GuardConfiguration, CommentsMayHoldAnyByteButZero) {
    EXPECT_TRUE(parsed("# \x01 \xFF \\ \" '\n").empty());
    EXPECT_EQ(refusal(std::string("# a\0b\n", 6)), "the line holds a zero byte");
}

TEST(GuardConfiguration, BothQuotesKeepBlanksAndEndTheWord) {
    EXPECT_THAT(words("a \"b c\" 'd \"e'"), ElementsAre("a", "b c", "d \"e"));
    EXPECT_THAT(words("\"a\"'b'c"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(words("a \"\""), ElementsAre("a", ""));
    EXPECT_THAT(words("a b\"c"), ElementsAre("a", "b\"c"));
}

TEST(GuardConfiguration, TwoDashesBeforeANameAreSkippedOnce) {
    EXPECT_THAT(words("--port 1"), ElementsAre("port", "1"));
    EXPECT_THAT(words("----port 1"), ElementsAre("--port", "1"));
    EXPECT_THAT(words("--"), ElementsAre("--"));
    EXPECT_THAT(words("port --1"), ElementsAre("port", "--1"));
}

TEST(GuardConfiguration, AByteOrderMarkIsSkippedAtTheStartOnly) {
    EXPECT_THAT(words("\xEF\xBB\xBFport 1"), ElementsAre("port", "1"));
    EXPECT_NE(refusal("\n\xEF\xBB\xBFport 1"), "");
}

TEST(GuardConfiguration, InlineBlocksEndAtTheirTag) {
    const auto directives = parsed("<ca>\r\n  one\r\n# two\r\n \t</ca> \r\nport 1\n");
    ASSERT_EQ(directives.size(), 2U);
    EXPECT_EQ(directives[0].name(), "ca");
    EXPECT_EQ(directives[0].block, "  one\n# two\n");
    EXPECT_EQ(directives[0].line, 1U);
    EXPECT_EQ(directives[1].line, 5U);
    EXPECT_FALSE(directives[1].block.has_value());
}

TEST(GuardConfiguration, ATagWithParametersIsNoBlock) {
    EXPECT_THAT(words("<ca> x"), ElementsAre("<ca>", "x"));
    EXPECT_THAT(words("<ca"), ElementsAre("<ca"));
    EXPECT_THAT(words("<"), ElementsAre("<"));
}

TEST(GuardConfiguration, LinesUpToOpenVpnsBufferAreRead) {
    const std::string longest(254, '#');
    EXPECT_TRUE(parsed(longest + "\n" + longest).empty());
    EXPECT_EQ(refusal(longest + "#\n"), "the line is too long");
    EXPECT_EQ(refusal("<ca>\n" + longest + "#\n</ca>\n"), "the line is too long");
}

TEST(GuardConfiguration, SizeIsBounded) {
    std::string text;
    while (text.size() + 4 <= LargestConfiguration) {
        text += "#12\n";
    }
    ASSERT_EQ(text.size(), LargestConfiguration);
    EXPECT_EQ(refusal(text), "");
    EXPECT_EQ(refusal(text + "\n"), "it is too large");
}

TEST(GuardConfiguration, NothingIsRefusedForBeingEmpty) {
    EXPECT_TRUE(parsed("").empty());
    EXPECT_TRUE(parsed("\n\n").empty());
}

TEST(GuardConfiguration, WhatIsShownIsShortAndPrintable) {
    EXPECT_EQ(shown("a\x1b\"\n\xFF"), "\"a????\"");
    EXPECT_EQ(shown(std::string(100, 'x')), "\"" + std::string(40, 'x') + "...\"");
}
