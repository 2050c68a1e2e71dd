#include "frontend/tunnel/LentAddress.h"

#include "fakes/TestPlatform.h"
#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <gtest/gtest.h>

namespace quorvane {

namespace {

class LentAddressTest : public testing::Test {
protected:
    void script(const QByteArray &body) { m_services.addResource(text("extractip.sh"), body); }

    fakes::TestPlatform m_services;
};

TEST_F(LentAddressTest, WholeOutputLineFeedIncluded) {
    script("printf '%s\\n' \"$1\"; echo noise >&2\n");
    EXPECT_EQ(LentAddress::read(text("/a b/c's.ovpn")), text("/a b/c's.ovpn\n"));
}

TEST_F(LentAddressTest, NothingPrintedOrNoScriptIsNoAddress) {
    EXPECT_TRUE(LentAddress::read(text("x")).isEmpty());
    script("exit 1\n");
    EXPECT_TRUE(LentAddress::read(text("x")).isEmpty());
}

TEST_F(LentAddressTest, BinaryOutputIsNoText) {
    script("printf '\\377'\n");
    EXPECT_TRUE(LentAddress::read(text("x")).isNull());
}

} // namespace

} // namespace quorvane
