#include "platform/linux/desktop/StandardLogSink.h"

#include <gtest/gtest.h>

namespace quorvane::platform {

namespace {

TEST(StandardLogSinkTest, WritesOneLineToStandardError) {
    ::testing::internal::CaptureStderr();
    StandardLogSink sink;
    sink.write(QStringLiteral("100% häßlich"));
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "quorvane: 100% häßlich\n");
}

} // namespace

} // namespace quorvane::platform
