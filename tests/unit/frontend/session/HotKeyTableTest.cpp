#include "frontend/session/HotKeyTable.h"

#include "platform/HotKeyService.h"
#include "tests/unit/Printing.h"

#include <QList>
#include <gtest/gtest.h>
#include <limits>

namespace quorvane {

namespace {

using HotKeyTable::Combination;
using platform::HotKeyService;

struct Line {
    qint32 tag;
    const char *label;
    quint32 modifier;
    quint32 keyCode;
};

constexpr quint32 cmd = 256;
constexpr quint32 shift = 512;
constexpr quint32 ctrl = 4096;

// Written out in full: the list that the program computes from families must equal this one.
const QList<Line> table = {{1, "Cmd + 0", cmd, 29},
                           {2, "Cmd + 1", cmd, 18},
                           {3, "Cmd + 2", cmd, 19},
                           {4, "Cmd + 3", cmd, 20},
                           {5, "Cmd + 4", cmd, 21},
                           {6, "Cmd + 5", cmd, 23},
                           {7, "Cmd + 6", cmd, 22},
                           {8, "Cmd + 7", cmd, 26},
                           {9, "Cmd + 8", cmd, 28},
                           {10, "Cmd + 9", cmd, 25},
                           {11, "Cmd + F1", cmd, 122},
                           {12, "Cmd + F2", cmd, 120},
                           {13, "Cmd + F3", cmd, 99},
                           {14, "Cmd + F4", cmd, 118},
                           {15, "Cmd + F5", cmd, 96},
                           {16, "Cmd + F6", cmd, 97},
                           {17, "Cmd + F7", cmd, 98},
                           {19, "Cmd + F9", cmd, 101},
                           {20, "Cmd + F10", cmd, 109},
                           {21, "Cmd + F11", cmd, 103},
                           {22, "Cmd + F12", cmd, 111},
                           {27, "Cmd + Down arrow", cmd, 125},
                           {28, "Cmd + Left arrow", cmd, 123},
                           {29, "Cmd + Right arrow", cmd, 124},
                           {30, "Cmd + Up arrow", cmd, 126},
                           {31, "Ctrl + 0", ctrl, 29},
                           {32, "Ctrl + 1", ctrl, 18},
                           {33, "Ctrl + 2", ctrl, 19},
                           {34, "Ctrl + 3", ctrl, 20},
                           {35, "Ctrl + 4", ctrl, 21},
                           {36, "Ctrl + 5", ctrl, 23},
                           {37, "Ctrl + 6", ctrl, 22},
                           {38, "Ctrl + 7", ctrl, 26},
                           {39, "Ctrl + 8", ctrl, 28},
                           {40, "Ctrl + 9", ctrl, 25},
                           {41, "Ctrl + F1", ctrl, 122},
                           {42, "Ctrl + F2", ctrl, 120},
                           {43, "Ctrl + F3", ctrl, 99},
                           {44, "Ctrl + F4", ctrl, 118},
                           {45, "Ctrl + F5", ctrl, 96},
                           {46, "Ctrl + F6", ctrl, 97},
                           {47, "Ctrl + F7", ctrl, 98},
                           {49, "Ctrl + F9", ctrl, 101},
                           {50, "Ctrl + F10", ctrl, 109},
                           {51, "Ctrl + F11", ctrl, 103},
                           {52, "Ctrl + F12", ctrl, 111},
                           {57, "Shift + F1", shift, 122},
                           {58, "Shift + F2", shift, 120},
                           {59, "Shift + F3", shift, 99},
                           {60, "Shift + F4", shift, 118},
                           {61, "Shift + F5", shift, 96},
                           {62, "Shift + F6", shift, 97},
                           {63, "Shift + F7", shift, 98},
                           {65, "Shift + F9", shift, 101},
                           {66, "Shift + F10", shift, 109},
                           {67, "Shift + F11", shift, 103},
                           {68, "Shift + F12", shift, 111}};

TEST(HotKeyTableTest, ModifierMasksEqualTheDesktops) {
    EXPECT_EQ(HotKeyService::command, cmd);
    EXPECT_EQ(HotKeyService::shift, shift);
    EXPECT_EQ(HotKeyService::control, ctrl);
}

TEST(HotKeyTableTest, OffersAreNoneAndTheWholeTableInOrder) {
    const auto offers = HotKeyTable::offers();
    ASSERT_EQ(offers.size(), static_cast<std::size_t>(table.size()) + 1);
    EXPECT_EQ(offers[0].tag, -1);
    EXPECT_EQ(offers[0].label, QStringLiteral("None"));
    for (qsizetype i = 0; i < table.size(); ++i) {
        const auto &offer = offers[static_cast<std::size_t>(i) + 1];
        EXPECT_EQ(offer.tag, table[i].tag);
        EXPECT_EQ(offer.label, QString::fromLatin1(table[i].label));
    }
}

TEST(HotKeyTableTest, TagsHaveTheirCombinations) {
    for (const Line &line : table) {
        const auto combination = HotKeyTable::combination(line.tag);
        ASSERT_TRUE(combination) << line.label;
        EXPECT_EQ(combination->keyCode, line.keyCode) << line.label;
        EXPECT_EQ(combination->modifiers, line.modifier) << line.label;
    }
}

TEST(HotKeyTableTest, CombinationsHaveTheirTags) {
    for (const Line &line : table) {
        QList<qint32> tags;
        for (const auto &offer : HotKeyTable::offers()) {
            if (HotKeyTable::combination(offer.tag) == Combination{line.keyCode, line.modifier}) {
                tags.append(offer.tag);
            }
        }
        EXPECT_EQ(tags, QList<qint32>{line.tag}) << line.label;
    }
}

TEST(HotKeyTableTest, NoneMeansNoCombination) {
    EXPECT_FALSE(HotKeyTable::combination(HotKeyTable::none));
}

TEST(HotKeyTableTest, StrayTagsInsideTheFamiliesMeanKeyCodeZero) {
    for (const qint32 tag : {18, 23, 24, 25, 26}) {
        EXPECT_EQ(HotKeyTable::combination(tag), (Combination{0, cmd})) << tag;
    }
    EXPECT_EQ(HotKeyTable::combination(48), (Combination{0, ctrl}));
    EXPECT_EQ(HotKeyTable::combination(64), (Combination{0, shift}));
}

TEST(HotKeyTableTest, StrayTagsOutsideTheFamiliesMeanNothing) {
    for (const qint32 tag : {0, 53, 54, 55, 56, 69, 70, 1000, -2, std::numeric_limits<qint32>::max(),
                             std::numeric_limits<qint32>::min()}) {
        EXPECT_FALSE(HotKeyTable::combination(tag)) << tag;
    }
}

TEST(HotKeyTableTest, NumbersTooLargeForATagMeanNothing) {
    EXPECT_EQ(HotKeyTable::tagOf(68), 68);
    EXPECT_EQ(HotKeyTable::tagOf(-1), -1);
    for (const qint64 stored : {qint64{4294967297}, std::numeric_limits<qint64>::min()}) {
        EXPECT_FALSE(HotKeyTable::combination(HotKeyTable::tagOf(stored)));
        EXPECT_NE(HotKeyTable::tagOf(stored), HotKeyTable::none);
    }
}

} // namespace

} // namespace quorvane
