#include "core/Base64.h"

#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

TEST(Base64, EncodesAndDecodes) {
    const std::pair<std::string, std::string> examples[] = {{"", ""},
                                                            {"f", "Zg=="},
                                                            {"fo", "Zm8="},
                                                            {"foo", "Zm9v"},
                                                            {"foob", "Zm9vYg=="},
                                                            {"fooba", "Zm9vYmE="},
                                                            {"foobar", "Zm9vYmFy"},
                                                            {std::string("\0\xff", 2), "AP8="}};
    for (const auto &[bytes, text] : examples) {
        EXPECT_EQ(base64Of(bytes), text);
        EXPECT_EQ(bytesInBase64(text), bytes);
    }
}

TEST(Base64, RefusesWhatItWouldNotMake) {
    for (const std::string text :
         {"Z", "Zg", "Zg=", "Zg===", "=Zg=", "====", "Zm9v=", "Zh==", "Zm9=", "Zm9v\n", "Zm-v", "Z===Zg=="}) {
        EXPECT_EQ(bytesInBase64(text), std::nullopt) << text;
    }
}

} // namespace

} // namespace quorvane::service
