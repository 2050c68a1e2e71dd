#include "frontend/api/AnswerTable.h"
#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <QRegularExpression>
#include <gtest/gtest.h>
#include <random>

namespace quorvane {

namespace {

TEST(AnswerTable, NullTextIsNoAnswer) {
    EXPECT_FALSE(AnswerTable::read(QByteArray()).has_value());
}

TEST(AnswerTable, BareSuccessMessageIsNoAnswer) {
    EXPECT_FALSE(AnswerTable::read(QByteArray("Connection to the Quorvane API successful.")).has_value());
    EXPECT_TRUE(AnswerTable::read(QByteArray("Connection to the Quorvane API successful. ")).has_value());
}

TEST(AnswerTable, EmptyTextIsAnAnswerWithoutValues) {
    const auto table = AnswerTable::read(QByteArray(""));
    ASSERT_TRUE(table.has_value());
    EXPECT_TRUE(table->values.isEmpty());
    EXPECT_TRUE(table->servers.isEmpty());
}

TEST(AnswerTable, LinesAreSeparatedByBreakMarkup) {
    const auto table = AnswerTable::read(
        QByteArray("STATUS: 0<br />ClientIP: 1.2.3.4<br />Server: a,b,c,d,e,f|1.1.1.1,2.2.2.2"));
    ASSERT_TRUE(table.has_value());
    EXPECT_EQ(table->value(text("STATUS")), text("0"));
    EXPECT_EQ(table->value(text("ClientIP")), text("1.2.3.4"));
    EXPECT_EQ(table->servers.toStringList(), QStringList{text("a,b,c,d,e,f|1.1.1.1,2.2.2.2")});
}

TEST(AnswerTable, LineFeedsDoNotEndALine) {
    const auto table =
        AnswerTable::read(QByteArray("STATUS: 0\nClientIP: 1.2.3.4\nServer: a,b,c,d,e,f|1.1.1.1"));
    ASSERT_TRUE(table.has_value());
    ASSERT_EQ(table->values.size(), 1);
    EXPECT_EQ(table->value(text("STATUS")), text("0\nClientIP: 1.2.3.4\nServer: a,b,c,d,e,f|1.1.1.1"));
    EXPECT_TRUE(table->servers.isEmpty());
}

TEST(AnswerTable, OtherSpellingsOfTheBreakDoNotSeparate) {
    const auto table = AnswerTable::read(QByteArray("A: 1<br>B: 2<BR />C: 3<br/>D: 4"));
    ASSERT_TRUE(table.has_value());
    EXPECT_EQ(table->value(text("A")), text("1<br>B: 2<BR />C: 3<br/>D: 4"));
    EXPECT_EQ(table->values.size(), 1);
}

TEST(AnswerTable, KeyEndsAtTheFirstColon) {
    const auto table = AnswerTable::read(QByteArray("Time: 12:34:56"));
    EXPECT_EQ(table->value(text("Time")), text("12:34:56"));
}

TEST(AnswerTable, LineWithoutColonIsIgnored) {
    const auto table = AnswerTable::read(QByteArray("nothing here<br />A: 1"));
    EXPECT_EQ(table->values.size(), 1);
}

TEST(AnswerTable, BlanksAndTabsAreTrimmedLineFeedsAreNot) {
    const auto table = AnswerTable::read(QByteArray(" \tA\t : \t1 2\t <br />\nB: 2\n"));
    EXPECT_EQ(table->value(text("A")), text("1 2"));
    EXPECT_EQ(table->value(text("\nB")), text("2\n"));
}

TEST(AnswerTable, LaterLineWins) {
    const auto table = AnswerTable::read(QByteArray("ClientIP: 1.1.1.1<br />ClientIP: 2.2.2.2"));
    EXPECT_EQ(table->value(text("ClientIP")), text("2.2.2.2"));
}

TEST(AnswerTable, EveryServerLineIsKeptInOrder) {
    const auto table =
        AnswerTable::read(QByteArray("Server: one<br />X: y<br />Server: two<br />Server: one"));
    EXPECT_EQ(table->servers.toStringList(), (QStringList{text("one"), text("two"), text("one")}));
    EXPECT_TRUE(table->value(text("Server")).isNull());
}

TEST(AnswerTable, KeysAreCaseSensitive) {
    const auto table = AnswerTable::read(QByteArray("server: one"));
    EXPECT_TRUE(table->servers.isEmpty());
    EXPECT_EQ(table->value(text("server")), text("one"));
}

TEST(AnswerTable, PresentButEmptyValueIsNotAbsent) {
    const auto table = AnswerTable::read(QByteArray("A:<br />: b"));
    EXPECT_TRUE(sameText(table->value(text("A")), text("")));
    EXPECT_TRUE(table->value(text("B")).isNull());
    EXPECT_EQ(table->value(text("")), text("b"));
}

TEST(AnswerTable, TextThatIsNotUtf8IsNoAnswer) {
    EXPECT_FALSE(AnswerTable::read(QByteArray("A: 1<br />B: \xff")).has_value());
    EXPECT_FALSE(AnswerTable::read(QByteArray("A: 1\xC3")).has_value());
    EXPECT_FALSE(AnswerTable::read(QByteArray("A: \xED\xA0\x80")).has_value());
}

TEST(AnswerTable, ByteOrderMarkIsLeftOutAtTheStartOnly) {
    const auto table = AnswerTable::read(QByteArray("\xEF\xBB\xBF"
                                                    "A: \xEF\xBB\xBF"
                                                    "b<br />Server: \xEF\xBB\xBF"
                                                    "c"));
    EXPECT_EQ(table->value(text("A")), QChar(0xFEFF) + text("b"));
    EXPECT_EQ(table->servers.toStringList(), QStringList{QChar(0xFEFF) + text("c")});
}

TEST(AnswerTable, LinesBeyondTheMaximumAreCountedOnly) {
    const QByteArray text = QByteArray("Server:a<br />").repeated(ServerLines::maximumLines + 3) + "A: 1";
    const auto table = AnswerTable::read(text);
    EXPECT_EQ(table->servers.size(), ServerLines::maximumLines);
    EXPECT_EQ(table->servers.leftOut(), 3);
    EXPECT_EQ(table->value(QStringLiteral("A")), QStringLiteral("1"));
}

/// A simple way to read an answer, on the decoded text.
void readSimply(const QString &answer, QHash<QString, QString> &values, QStringList &servers) {
    const QRegularExpression blanks(QStringLiteral("^[ \t]+|[ \t]+\\z"));
    for (const QString &line : answer.split(QStringLiteral("<br />"))) {
        if (const qsizetype colon = line.indexOf(u':'); colon >= 0) {
            const QString key = line.left(colon).remove(blanks);
            const QString value = line.mid(colon + 1).remove(blanks);
            if (key == QLatin1String("Server")) {
                servers.append(value);
            } else {
                values.insert(key, value);
            }
        }
    }
}

TEST(AnswerTableProperty, RandomAnswersAreReadAsTheSimpleWayReadsThem) {
    const QStringList pieces{text("<br />"), text("<br /"),  text("<"),  text("Server"), text(":"),
                             text(" "),      text("\t"),     text("\n"), text("A"),      text("\u00e9"),
                             text("\uFEFF"), text("\u20ac"), text("|"),  text(","),      text("\U0001F600")};
    std::mt19937 engine(4);
    for (int round = 0; round < 3000; ++round) {
        QString answer = text("x");
        for (auto left = engine() % 40; left > 0; --left) {
            answer += pieces.at(static_cast<qsizetype>(engine() % static_cast<unsigned>(pieces.size())));
        }
        QHash<QString, QString> values;
        QStringList servers;
        readSimply(answer, values, servers);
        const auto table = AnswerTable::read(answer.toUtf8());
        ASSERT_TRUE(table.has_value());
        ASSERT_EQ(table->values, values) << answer.toStdString();
        ASSERT_EQ(table->servers.toStringList(), servers) << answer.toStdString();
    }
}

} // namespace

} // namespace quorvane
