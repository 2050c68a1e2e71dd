#include "core/BackOff.h"

#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

using std::chrono::milliseconds;

TEST(BackOff, DoublesUpToItsLimitAndForgetsAfterALongRun) {
    BackOff backOff(milliseconds(100), milliseconds(500), milliseconds(1000));
    EXPECT_EQ(backOff.next(milliseconds(0)), milliseconds(100));
    EXPECT_EQ(backOff.next(milliseconds(999)), milliseconds(200));
    EXPECT_EQ(backOff.next(milliseconds(0)), milliseconds(400));
    EXPECT_EQ(backOff.next(milliseconds(0)), milliseconds(500));
    EXPECT_EQ(backOff.next(milliseconds(0)), milliseconds(500));
    EXPECT_EQ(backOff.next(milliseconds(1000)), milliseconds(100));
    EXPECT_EQ(backOff.next(milliseconds(0)), milliseconds(200));
}

} // namespace

} // namespace quorvane::service
