#include "frontend/api/RequestUrls.h"
#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <gtest/gtest.h>

namespace quorvane {

namespace {

TEST(RequestUrls, BaseQueryByteForByte) {
    EXPECT_EQ(
        RequestUrls::base(text("api.test"), text("1.2"), text("SER-1.2")),
        text("https://api.test/?cmd=MRTSL&ver=1.2&device=1&systamp=MacOS,user,mobilebox&uniqueid=SER-1.2"));
}

TEST(RequestUrls, ParametersCarryTheCommandTwice) {
    const QString base = RequestUrls::base(text("h"), text("1"), text("i"));
    EXPECT_EQ(RequestUrls::parameters(base, text("=x&y=z")), base + text("&cmd=phs=x&y=z"));
}

TEST(RequestUrls, ConfigurationByteForByte) {
    EXPECT_EQ(RequestUrls::configuration(text("h"), text("1.2"), text("203.0.113.5"), text("u1"),
                                         text("SER-1.2"), text("UDP")),
              text("https://h/?cmd=VPNC&ver=1.2&device=1&server=571&desiredip=203.0.113.5&sessid=u1&&systamp="
                   "MacOS,user,mobilebox&uniqueid=SER-1.2&proto=UDP"));
}

struct EscapeCase {
    const char *in;
    const char *out;
};

class Escaping : public testing::TestWithParam<EscapeCase> {};

TEST_P(Escaping, WholeText) {
    const auto escaped = RequestUrls::escaped(text(GetParam().in));
    ASSERT_TRUE(escaped.has_value());
    EXPECT_EQ(*escaped, QByteArray(GetParam().out));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Escaping,
    testing::Values(EscapeCase{"https://h:8/?a=b&c=d,e", "https://h:8/?a=b&c=d,e"},
                    EscapeCase{"a b", "a%20b"}, EscapeCase{"a+b", "a%2Bb"}, EscapeCase{"100%", "100%25"},
                    EscapeCase{"%2B", "%252B"}, EscapeCase{"\xC3\xBC", "%C3%BC"},
                    EscapeCase{"\xF0\x9F\x98\x80", "%F0%9F%98%80"}, EscapeCase{"<\">", "%3C%22%3E"},
                    EscapeCase{"[1]", "%5B1%5D"}, EscapeCase{"a#b", "a%23b"},
                    EscapeCase{"\\^`{|}", "%5C%5E%60%7B%7C%7D"}, EscapeCase{"\n\x7F", "%0A%7F"},
                    EscapeCase{"-_.!~*'();@$", "-_.!~*'();@$"}, EscapeCase{"", ""}));

TEST(EscapingText, NulIsEscaped) {
    EXPECT_EQ(RequestUrls::escaped(QString(QChar(u'\0'))), QByteArray("%00"));
}

TEST(EscapingText, LoneSurrogateIsNoUrl) {
    EXPECT_FALSE(RequestUrls::escaped(QString(QChar(0xD800))).has_value());
}

} // namespace

} // namespace quorvane
