#include "HostileConfigurations.h"
#include "guard/AllowList.h"

#include <gtest/gtest.h>

using namespace quorvane::guard;

namespace {

/// What is said of a configuration; empty when it may pass.
std::string refusalOf(const std::string &text) {
    const auto parsed = parse(text);
    if (const auto *refusal = std::get_if<Refusal>(&parsed)) {
        return refusal->text();
    }
    const auto refusal = check(std::get<std::vector<Directive>>(parsed));
    return refusal ? refusal->text() : "";
}

} // namespace

TEST(HostileConfigurations, WhatTheyAreAddedToMayPass) {
    EXPECT_EQ(refusalOf(allowedConfiguration()), "");
}

TEST(HostileConfigurations, EachIsRefusedForItsOwnReason) {
    const auto all = hostileConfigurations("/bin/true");
    ASSERT_GT(all.size(), 200U);
    for (const auto &hostile : all) {
        const std::string said = refusalOf(hostile.text);
        EXPECT_NE(said.find(hostile.refusal), std::string::npos) << hostile.name << ": \"" << said << "\"";
        EXPECT_EQ(said.find('\n'), std::string::npos) << hostile.name;
    }
}

TEST(HostileConfigurations, TheRefusalNamesTheLine) {
    EXPECT_EQ(refusalOf("client\n\n# x\nup /bin/true\n"),
              "the configuration is refused: line 4: the directive \"up\" is not allowed");
}
