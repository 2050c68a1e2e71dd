#include "frontend/tunnel/LogVerdict.h"

#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <array>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

using Outcome = LogVerdict::Outcome;

constexpr const char *completed = "Initialization Sequence Completed";

struct Marker {
    const char *text;
    const char *line;
};

constexpr std::array<Marker, 5> markers{
    {{"AUTH_FAILED", "stopVpn by AUTH_FAILED"},
     {"TLS key negotiation failed", "stopVpn by TLS key negotiation failed"},
     {"Cannot resolve host address", "stopVpn by Cannot resolve host address"},
     {"auth-user-pass fails", "auth-user-pass fails. Not found .vpnCreds.txt"},
     {"Exiting due to fatal error", "*** auth-user-pass fails. Not found .vpnCreds.txt"}}};

TEST(LogVerdict, EveryCombinationOfFailureMarkersFailsOncePerMarkerInTableOrder) {
    for (unsigned set = 0; set < 32; ++set) {
        for (const bool reversed : {false, true}) {
            QStringList pieces;
            QStringList expected;
            for (unsigned i = 0; i < markers.size(); ++i) {
                if ((set & (1U << i)) != 0) {
                    pieces.append(text("x ") + text(markers.at(i).text) + text(" y"));
                    expected.append(text(markers.at(i).line));
                }
            }
            if (reversed) {
                std::reverse(pieces.begin(), pieces.end());
            }
            const LogVerdict verdict = LogVerdict::of(text("start\n") + pieces.join(u'\n') + text("\nend\n"));
            EXPECT_EQ(verdict.failures, expected) << set;
            EXPECT_EQ(verdict.outcome, expected.isEmpty() ? Outcome::Undecided : Outcome::Failed) << set;
            EXPECT_EQ(verdict.lastLine, text("end"));
        }
    }
}

TEST(LogVerdict, SuccessHasPriorityOverEveryFailureMarker) {
    for (const Marker &marker : markers) {
        const LogVerdict verdict =
            LogVerdict::of(text(marker.text) + text("\n") + text(completed) + text("\n") + text(marker.text));
        EXPECT_EQ(verdict.outcome, Outcome::Up);
        EXPECT_TRUE(verdict.failures.isEmpty());
    }
}

TEST(LogVerdict, WithErrorsAfterTheCompletionIsAFailureWithoutALine) {
    const LogVerdict verdict = LogVerdict::of(text(completed) + text(" with errors\n"));
    EXPECT_EQ(verdict.outcome, Outcome::WithErrors);
    EXPECT_TRUE(verdict.failures.isEmpty());
}

TEST(LogVerdict, WithErrorsIsCaseSensitive) {
    EXPECT_EQ(LogVerdict::of(text(completed) + text(" With Errors\n")).outcome, Outcome::Up);
    EXPECT_EQ(LogVerdict::of(text(completed) + text(" WITH ERRORS\n")).outcome, Outcome::Up);
}

TEST(LogVerdict, WithErrorsCountsAnywhereAfterTheLastCompletionOnly) {
    EXPECT_EQ(LogVerdict::of(text("with errors\n") + text(completed)).outcome, Outcome::Up);
    EXPECT_EQ(LogVerdict::of(text(completed) + text(" with errors\n") + text(completed)).outcome,
              Outcome::Up);
    EXPECT_EQ(LogVerdict::of(text(completed) + text("\nlater with errors")).outcome, Outcome::WithErrors);
}

TEST(LogVerdict, MarkersAreCaseSensitive) {
    EXPECT_EQ(LogVerdict::of(text("auth_failed\ninitialization sequence completed\n")).outcome,
              Outcome::Undecided);
}

TEST(LogVerdict, NoTextIsUndecided) {
    for (const QString &none : {QString(), text("")}) {
        const LogVerdict verdict = LogVerdict::of(none);
        EXPECT_EQ(verdict.outcome, Outcome::Undecided);
        EXPECT_TRUE(verdict.lastLine.isNull());
    }
}

TEST(LogVerdict, LastLineNeedsThreePieces) {
    const QList<QPair<const char *, const char *>> cases{
        {"one", nullptr},          {"one\n", nullptr},    {"\n", nullptr},
        {"one\ntwo\n", "two"},     {"one\ntwo", nullptr}, {"\n\n", ""},
        {"one\ntwo\nrest", "two"}, {"a\nb\nc\n", "c"},    {"a\nb\n\n", ""}};
    for (const auto &[log, line] : cases) {
        const QString expected = line == nullptr ? QString() : text(line);
        EXPECT_TRUE(sameText(LogVerdict::of(text(log)).lastLine, expected)) << log;
    }
}

TEST(LogVerdict, LinkRemoteInTheLastCompleteLineFails) {
    const LogVerdict verdict = LogVerdict::of(text("a\nUDPv4 link remote: [AF_INET]1.2.3.4:1194\n"));
    EXPECT_TRUE(verdict.stuckAtLink);
    EXPECT_EQ(verdict.outcome, Outcome::Failed);
    EXPECT_TRUE(verdict.failures.isEmpty());
}

TEST(LogVerdict, LinkRemoteElsewhereIsNoFailure) {
    EXPECT_FALSE(LogVerdict::of(text("link remote\nnext\n")).stuckAtLink);
    EXPECT_FALSE(LogVerdict::of(text("a\nb\nlink remote")).stuckAtLink);
    EXPECT_FALSE(LogVerdict::of(text("link remote\n")).stuckAtLink); // too few lines
    EXPECT_FALSE(LogVerdict::of(text("a\nLink Remote\n")).stuckAtLink);
}

TEST(LogVerdict, MarkerAndLinkRemoteAreTwoFailures) {
    const LogVerdict verdict = LogVerdict::of(text("AUTH_FAILED\nlink remote\n"));
    EXPECT_EQ(verdict.failures.size(), 1);
    EXPECT_TRUE(verdict.stuckAtLink);
}

} // namespace

} // namespace quorvane
