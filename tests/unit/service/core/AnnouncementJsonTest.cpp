#include "core/AnnouncementJson.h"

#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

TEST(Latin1, IsConvertedInBothDirections) {
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
    }
    EXPECT_EQ(utf8ToLatin1(latin1ToUtf8(bytes)), bytes);
    EXPECT_EQ(latin1ToUtf8("\xe9"), "\xc3\xa9");
    for (const std::string_view text : {"\xc4\x80", "\xc3", "\xc3x", "\xff", "\xe2\x82\xac"}) {
        EXPECT_EQ(utf8ToLatin1(text), std::nullopt);
    }
}

} // namespace

} // namespace quorvane::service
