#include "guard/Caller.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace quorvane::guard {

TEST(CallerOf, TheVariableNamesTheUser) {
    EXPECT_EQ(callerOf("1000"), 1000U);
    EXPECT_EQ(callerOf("0"), 0U);
    EXPECT_EQ(callerOf(nullptr), getuid());
    for (const char *wrong : {"", " 1000", "1000 ", "-1", "0x3e8", "99999999999", "joe"}) {
        EXPECT_FALSE(callerOf(wrong).has_value()) << wrong;
    }
}

} // namespace quorvane::guard
