#include "core/NodeName.h"

#include <gtest/gtest.h>

#include <string>

namespace quorvane::service {

namespace {

TEST(NodeName, AcceptsWhatAHostMayBeCalled) {
    EXPECT_TRUE(isNodeName("gw-1.example_x"));
    for (const std::string name : {"", "a b", "a/b", "\xc3\xa4", "a\n"}) {
        EXPECT_FALSE(isNodeName(name)) << name;
    }
    EXPECT_FALSE(isNodeName(std::string(65, 'a')));
}

} // namespace

} // namespace quorvane::service
