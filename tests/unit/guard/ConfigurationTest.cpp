#include "guard/Configuration.h"

#include <gmock/gmock.h>

namespace quorvane::guard {

namespace {

using testing::ElementsAre;

std::vector<Directive> parsed(const std::string &text) {
    auto result = parse(text);
    if (!result) {
        ADD_FAILURE() << result.error();
        return {};
    }
    return std::move(result).value();
}

std::vector<std::string> tokens(const std::string &line) {
    const auto directives = parsed(line);
    return directives.empty() ? std::vector<std::string>() : directives.front().tokens;
}

/// The whole text of the refusal; empty when the text is accepted.
std::string refusalOf(const std::string &text) {
    const auto result = parse(text);
    return result ? "" : result.error();
}

} // namespace

TEST(GuardConfiguration, TokensAreSeparatedByBlanksTabsAndCarriageReturns) {
    EXPECT_THAT(tokens("  remote\t1.2.3.4  1194 \r\n"), ElementsAre("remote", "1.2.3.4", "1194"));
}

TEST(GuardConfiguration, CommentsBeginAtAHashOrSemicolonBeforeAToken) {
    EXPECT_TRUE(parsed("# a\n ; b\n\n   \n").empty());
    EXPECT_THAT(tokens("port 1 # two"), ElementsAre("port", "1"));
    EXPECT_THAT(tokens("port 1;2"), ElementsAre("port", "1;2"));
    EXPECT_THAT(tokens("\"port\"#2"), ElementsAre("port"));
}

TEST(GuardConfiguration, CommentsMayContainAnyByteButZero) {
    EXPECT_TRUE(parsed("# \x01 \xFF \\ \" '\n").empty());
    EXPECT_EQ(refusalOf(std::string("# a\0b\n", 6)),
              "the configuration is refused: line 1: the line contains a zero byte");
}

TEST(GuardConfiguration, BothQuotesKeepBlanksAndEndTheToken) {
    EXPECT_THAT(tokens("a \"b c\" 'd \"e'"), ElementsAre("a", "b c", "d \"e"));
    EXPECT_THAT(tokens("\"a\"'b'c"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(tokens("a \"\""), ElementsAre("a", ""));
    EXPECT_THAT(tokens("a b\"c"), ElementsAre("a", "b\"c"));
}

TEST(GuardConfiguration, TwoDashesBeforeANameAreSkippedOnce) {
    EXPECT_THAT(tokens("--port 1"), ElementsAre("port", "1"));
    EXPECT_THAT(tokens("----port 1"), ElementsAre("--port", "1"));
    EXPECT_THAT(tokens("--"), ElementsAre("--"));
    EXPECT_THAT(tokens("port --1"), ElementsAre("port", "--1"));
}

TEST(GuardConfiguration, AByteOrderMarkIsSkippedAtTheStartOnly) {
    EXPECT_THAT(tokens("\xEF\xBB\xBFport 1"), ElementsAre("port", "1"));
    EXPECT_NE(refusalOf("\n\xEF\xBB\xBFport 1"), "");
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
    EXPECT_THAT(tokens("<ca> x"), ElementsAre("<ca>", "x"));
    EXPECT_THAT(tokens("<ca"), ElementsAre("<ca"));
    EXPECT_THAT(tokens("<"), ElementsAre("<"));
}

TEST(GuardConfiguration, LinesUpToOpenVpnsBufferAreRead) {
    const std::string longest(254, '#');
    EXPECT_TRUE(parsed(longest + "\n" + longest).empty());
    EXPECT_EQ(refusalOf(longest + "#\n"), "the configuration is refused: line 1: the line is too long");
    const std::string mark = "\xEF\xBB\xBF";
    EXPECT_TRUE(parsed(mark + longest.substr(mark.size()) + "\n" + longest).empty());
    EXPECT_EQ(refusalOf(mark + longest + "\n"), "the configuration is refused: line 1: the line is too long");
    EXPECT_EQ(refusalOf("<ca>\n" + longest + "#\n</ca>\n"),
              "the configuration is refused: line 2: the line is too long");
}

TEST(GuardConfiguration, SizeIsBounded) {
    std::string text;
    while (text.size() + 4 <= maximumConfigurationSize) {
        text += "#12\n";
    }
    ASSERT_EQ(text.size(), maximumConfigurationSize);
    EXPECT_EQ(refusalOf(text), "");
    EXPECT_EQ(refusalOf(text + "\n"), "the configuration is refused: it is too large");
}

TEST(GuardConfiguration, AnEmptyConfigurationIsAccepted) {
    EXPECT_TRUE(parsed("").empty());
    EXPECT_TRUE(parsed("\n\n").empty());
}

TEST(GuardConfiguration, QuotedTextsAreShortAndPrintable) {
    EXPECT_EQ(quotedForLog("a\x1b\"\n\xFF"), "\"a????\"");
    EXPECT_EQ(quotedForLog(std::string(100, 'x')), "\"" + std::string(40, 'x') + "...\"");
}

} // namespace quorvane::guard
