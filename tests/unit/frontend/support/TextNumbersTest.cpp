#include "frontend/support/TextNumbers.h"

#include <QString>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

struct Row {
    const char *text;
    int value;
};

class IntegerValue : public testing::TestWithParam<Row> {};

TEST_P(IntegerValue, ReadsTheLeadingInteger) {
    EXPECT_EQ(integerValue(QString::fromUtf8(GetParam().text)), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Cases, IntegerValue,
                         testing::Values(Row{"", 0}, Row{"0", 0}, Row{"12", 12}, Row{" \t\n7", 7},
                                         Row{"-3", -3}, Row{"+4", 4}, Row{"--4", 0}, Row{"4x", 4},
                                         Row{"x4", 0}, Row{"1 2", 1}, Row{"2147483647", 2147483647},
                                         Row{"2147483648", 2147483647},
                                         Row{"99999999999999999999", 2147483647},
                                         Row{"-2147483648", -2147483647 - 1},
                                         Row{"-99999999999999999999", -2147483647 - 1}, Row{"٣", 0}));

struct PureRow {
    const char *text;
    int maxLen;
    const char *left;
    bool clean;
};

class PureInteger : public testing::TestWithParam<PureRow> {};

TEST_P(PureInteger, KeepsDigitsOnly) {
    QString value = QString::fromUtf8(GetParam().text);
    EXPECT_EQ(pureInteger(value, GetParam().maxLen), GetParam().clean);
    EXPECT_EQ(value, QString::fromUtf8(GetParam().left));
}

INSTANTIATE_TEST_SUITE_P(Cases, PureInteger,
                         testing::Values(PureRow{"", 2, "", true}, PureRow{"12", 2, "12", true},
                                         PureRow{"a1b2c", 2, "12", false}, PureRow{"123", 2, "12", false},
                                         PureRow{"123", 0, "123", true}, PureRow{"-1", 2, "1", false},
                                         PureRow{"\xD9\xA3", 2, "", false}, PureRow{"1 2", 3, "12", false}));

} // namespace

} // namespace quorvane
