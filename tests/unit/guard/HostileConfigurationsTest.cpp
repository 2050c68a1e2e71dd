#include "HostileConfigurations.h"
#include "guard/AllowList.h"

#include <gtest/gtest.h>

namespace quorvane::guard {

namespace {

/// The refusal of a configuration; empty when it is allowed.
std::string refusalOf(const std::string &text) {
    const auto parsed = parse(text);
    if (!parsed) {
        return parsed.error();
    }
    const auto checked = check(parsed.value());
    return checked ? "" : checked.error();
}

} // namespace

TEST(HostileConfigurations, TheConfigurationThatTheyExtendIsAllowed) {
    EXPECT_EQ(refusalOf(allowedConfiguration()), "");
}

TEST(HostileConfigurations, EachIsRefusedForItsOwnReason) {
    const auto all = hostileConfigurations("/bin/true");
    ASSERT_GE(all.size(), 390U);
    for (const auto &hostile : all) {
        const std::string reason = refusalOf(hostile.text);
        EXPECT_NE(reason.find(hostile.refusal), std::string::npos)
            << hostile.name << ": \"" << reason << "\"";
        EXPECT_EQ(reason.find('\n'), std::string::npos) << hostile.name;
    }
}

TEST(HostileConfigurations, TheRefusalNamesTheLine) {
    EXPECT_EQ(refusalOf("client\n\n# x\nup /bin/true\n"),
              "the configuration is refused: line 4: the directive \"up\" is not allowed");
}

} // namespace quorvane::guard
