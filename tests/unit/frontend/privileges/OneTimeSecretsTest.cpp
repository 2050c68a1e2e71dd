#include "frontend/privileges/OneTimeSecrets.h"

#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <gtest/gtest.h>

namespace quorvane {

namespace {

class OneTimeSecretsTest : public testing::Test {
protected:
    OneTimeSecrets m_secrets;
};

TEST_F(OneTimeSecretsTest, EveryOccurrenceIsMasked) {
    m_secrets.add(text("abc"));
    EXPECT_EQ(m_secrets.masked(text("abc=abc;ABC")), text("*****=*****;ABC"));
}

TEST_F(OneTimeSecretsTest, EmptyOnesMaskNothing) {
    m_secrets.add(QString());
    m_secrets.add(text(""));
    EXPECT_EQ(m_secrets.masked(text("abc")), text("abc"));
}

TEST_F(OneTimeSecretsTest, OldestAreRemovedAboveTheMaximum) {
    for (int i = 0; i < 33; ++i) {
        m_secrets.add(text("<%1>").arg(i));
    }
    EXPECT_EQ(m_secrets.masked(text("<0> <1> <32>")), text("<0> ***** *****"));
}

} // namespace

} // namespace quorvane
