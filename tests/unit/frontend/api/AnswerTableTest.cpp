#include "frontend/api/AnswerTable.h"
#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <gtest/gtest.h>

namespace quorvane {

namespace {

TEST(AnswerTable, NullTextIsNoAnswer) {
    EXPECT_FALSE(AnswerTable::read(QString()).has_value());
}

TEST(AnswerTable, BareSuccessMessageIsNoAnswer) {
    EXPECT_FALSE(AnswerTable::read(text("Connection to the Quorvane API successful.")).has_value());
    EXPECT_TRUE(AnswerTable::read(text("Connection to the Quorvane API successful. ")).has_value());
}

TEST(AnswerTable, EmptyTextIsAnAnswerWithoutValues) {
    const auto table = AnswerTable::read(text(""));
    ASSERT_TRUE(table.has_value());
    EXPECT_TRUE(table->values.isEmpty());
    EXPECT_TRUE(table->servers.isEmpty());
}

TEST(AnswerTable, LinesAreSeparatedByBreakMarkup) {
    const auto table =
        AnswerTable::read(text("STATUS: 0<br />ClientIP: 1.2.3.4<br />Server: a,b,c,d,e,f|1.1.1.1,2.2.2.2"));
    ASSERT_TRUE(table.has_value());
    EXPECT_EQ(table->value(text("STATUS")), text("0"));
    EXPECT_EQ(table->value(text("ClientIP")), text("1.2.3.4"));
    EXPECT_EQ(table->servers, QStringList{text("a,b,c,d,e,f|1.1.1.1,2.2.2.2")});
}

TEST(AnswerTable, LineFeedsDoNotEndALine) {
    const auto table = AnswerTable::read(text("STATUS: 0\nClientIP: 1.2.3.4\nServer: a,b,c,d,e,f|1.1.1.1"));
    ASSERT_TRUE(table.has_value());
    ASSERT_EQ(table->values.size(), 1);
    EXPECT_EQ(table->value(text("STATUS")), text("0\nClientIP: 1.2.3.4\nServer: a,b,c,d,e,f|1.1.1.1"));
    EXPECT_TRUE(table->servers.isEmpty());
}

TEST(AnswerTable, OtherSpellingsOfTheBreakDoNotSeparate) {
    const auto table = AnswerTable::read(text("A: 1<br>B: 2<BR />C: 3<br/>D: 4"));
    ASSERT_TRUE(table.has_value());
    EXPECT_EQ(table->value(text("A")), text("1<br>B: 2<BR />C: 3<br/>D: 4"));
    EXPECT_EQ(table->values.size(), 1);
}

TEST(AnswerTable, KeyEndsAtTheFirstColon) {
    const auto table = AnswerTable::read(text("Time: 12:34:56"));
    EXPECT_EQ(table->value(text("Time")), text("12:34:56"));
}

TEST(AnswerTable, LineWithoutColonIsIgnored) {
    const auto table = AnswerTable::read(text("nothing here<br />A: 1"));
    EXPECT_EQ(table->values.size(), 1);
}

TEST(AnswerTable, BlanksAndTabsAreTrimmedLineFeedsAreNot) {
    const auto table = AnswerTable::read(text(" \tA\t : \t1 2\t <br />\nB: 2\n"));
    EXPECT_EQ(table->value(text("A")), text("1 2"));
    EXPECT_EQ(table->value(text("\nB")), text("2\n"));
}

TEST(AnswerTable, LaterLineWins) {
    const auto table = AnswerTable::read(text("ClientIP: 1.1.1.1<br />ClientIP: 2.2.2.2"));
    EXPECT_EQ(table->value(text("ClientIP")), text("2.2.2.2"));
}

TEST(AnswerTable, EveryServerLineIsKeptInOrder) {
    const auto table = AnswerTable::read(text("Server: one<br />X: y<br />Server: two<br />Server: one"));
    EXPECT_EQ(table->servers, (QStringList{text("one"), text("two"), text("one")}));
    EXPECT_TRUE(table->value(text("Server")).isNull());
}

TEST(AnswerTable, KeysAreCaseSensitive) {
    const auto table = AnswerTable::read(text("server: one"));
    EXPECT_TRUE(table->servers.isEmpty());
    EXPECT_EQ(table->value(text("server")), text("one"));
}

TEST(AnswerTable, PresentButEmptyValueIsNotAbsent) {
    const auto table = AnswerTable::read(text("A:<br />: b"));
    EXPECT_TRUE(sameText(table->value(text("A")), text("")));
    EXPECT_TRUE(table->value(text("B")).isNull());
    EXPECT_EQ(table->value(text("")), text("b"));
}

} // namespace

} // namespace quorvane
