#include "frontend/control/CommandRunner.h"

#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <gtest/gtest.h>

namespace quorvane {

namespace {

using platform::ControlLocation;
using platform::ControlOperation;
using platform::ControlOutcome;
using platform::ControlState;

/// A running copy, or none, as the other end would see it.
class FakeControlClient final : public platform::ControlClient {
public:
    [[nodiscard]] bool isRunning() override { return running; }

    [[nodiscard]] bool hasDisplay() const override { return display; }

    [[nodiscard]] bool start() override {
        ++starts;
        running = canStart;
        return canStart;
    }

    ControlOutcome operate(ControlOperation operation, const QString &location,
                           const std::function<void(const ControlState &)> &observer) override {
        operations.append({operation, location});
        for (const ControlState &each : states) {
            observer(each);
        }
        return outcome;
    }

    [[nodiscard]] std::optional<ControlState> state() override {
        return running ? std::optional(states.value(0)) : std::nullopt;
    }

    [[nodiscard]] std::optional<QList<ControlLocation>> locations() override {
        return QList<ControlLocation>{{text("Random Location"), {}, false, false},
                                      {text("Norway Oslo"), text("NO"), true, true}};
    }

    void follow(const Follower &follower) override {
        for (const ControlState &each : states) {
            ASSERT_TRUE(follower(each));
        }
        EXPECT_FALSE(follower(std::nullopt));
    }

    bool running = true;
    bool display = true;
    bool canStart = true;
    int starts = 0;
    ControlOutcome outcome;
    QList<ControlState> states;
    QList<std::pair<ControlOperation, QString>> operations;
};

class CommandRunnerTest : public testing::Test {
protected:
    CommandRunner::Status run(const QStringList &arguments) {
        return CommandRunner(
                   m_client, [this](const QString &line) { m_output.append(line); },
                   [this](const QString &line) { m_errors.append(line); })
            .run(CommandLine::parse(QStringList{text("quorvane")} + arguments));
    }

    FakeControlClient m_client;
    QStringList m_output;
    QStringList m_errors;
    const ControlState m_hidden{
        text("hidden"), text("203.0.113.9"), text("198.51.100.10"), text("Norway Oslo"), false, false};
};

TEST_F(CommandRunnerTest, LentAddressIsPrinted) {
    m_client.outcome.text = text("203.0.113.9");
    EXPECT_EQ(run({text("--hide"), text("Norway Oslo")}), CommandRunner::Success);
    EXPECT_EQ(m_output, QStringList{text("203.0.113.9")});
    EXPECT_EQ(m_client.operations, QList({std::pair(ControlOperation::Hide, text("Norway Oslo"))}));
    EXPECT_EQ(m_client.starts, 0);
}

TEST_F(CommandRunnerTest, OnlyHideAndShowStartACopy) {
    for (const char *command : {"--hide", "--show"}) {
        m_client.running = false;
        m_client.starts = 0;
        EXPECT_EQ(run({text(command)}), CommandRunner::Success) << command;
        EXPECT_EQ(m_client.starts, 1) << command;
    }
    for (const char *command : {"--stop", "--change", "--discard", "--quit", "--status", "--locations"}) {
        m_client.running = false;
        m_client.starts = 0;
        m_errors.clear();
        EXPECT_EQ(run({text(command)}), CommandRunner::NotRunning) << command;
        EXPECT_EQ(m_client.starts, 0) << command;
        EXPECT_EQ(m_errors, QStringList{text("Quorvane is not running.")}) << command;
    }
}

TEST_F(CommandRunnerTest, StartNeedsADisplay) {
    m_client.running = false;
    m_client.display = false;
    EXPECT_EQ(run({text("--hide")}), CommandRunner::CannotStart);
    EXPECT_EQ(m_client.starts, 0);
    EXPECT_EQ(m_errors,
              QStringList{text("Quorvane is not running, and there is no display to start it on.")});
}

TEST_F(CommandRunnerTest, StartThatFails) {
    m_client.running = false;
    m_client.canStart = false;
    EXPECT_EQ(run({text("--show")}), CommandRunner::CannotStart);
    EXPECT_TRUE(m_client.operations.isEmpty());
}

TEST_F(CommandRunnerTest, EveryFailureHasItsStatus) {
    const QList<std::pair<ControlOutcome::Kind, CommandRunner::Status>> failures = {
        {ControlOutcome::Kind::Failed, CommandRunner::Failed},
        {ControlOutcome::Kind::NotHidden, CommandRunner::NotHidden},
        {ControlOutcome::Kind::UnknownLocation, CommandRunner::UnknownLocation},
        {ControlOutcome::Kind::NotRunning, CommandRunner::NotRunning}};
    for (const auto &[kind, status] : failures) {
        m_client.outcome = {kind, text("why")};
        EXPECT_EQ(run({text("--change")}), status);
    }
    EXPECT_EQ(m_errors,
              (QStringList{text("why"), text("why"), text("why"), text("Quorvane is not running.")}));
    EXPECT_TRUE(m_output.isEmpty());
}

TEST_F(CommandRunnerTest, CopyThatQuitsBeforeItsAnswerHasQuit) {
    m_client.outcome.kind = ControlOutcome::Kind::NotRunning;
    EXPECT_EQ(run({text("--quit")}), CommandRunner::Success);
}

TEST_F(CommandRunnerTest, AdministratorsDialogIsReportedOnce) {
    ControlState asks = m_hidden;
    asks.asksAdministrator = true;
    m_client.states = {m_hidden, asks, asks};
    EXPECT_EQ(run({text("--hide")}), CommandRunner::Success);
    EXPECT_EQ(m_errors,
              QStringList{text("Quorvane's window asks for an administrator's name and password.")});
}

TEST_F(CommandRunnerTest, StatusOfEveryState) {
    ControlState locked = m_hidden;
    locked.state = text("not-hidden");
    locked.locked = true;
    const QList<std::pair<ControlState, const char *>> lines = {
        {m_hidden, "Hidden behind 203.0.113.9 (Norway Oslo). The real IP is 198.51.100.10."},
        {locked, "Not hidden: 198.51.100.10. Traffic outside the tunnel is blocked."},
        {{text("searching"), {}, {}, text("Norway Oslo"), false, false},
         "Searching for an available IP (Norway Oslo)."},
        {{text("starting"), {}, {}, {}, false, false}, "Starting: the service has not answered yet."}};
    for (const auto &[state, line] : lines) {
        m_client.states = {state};
        m_output.clear();
        EXPECT_EQ(run({text("--status")}), CommandRunner::Success);
        EXPECT_EQ(m_output, QStringList{text(line)});
    }
}

TEST_F(CommandRunnerTest, StatusAsJson) {
    m_client.states = {m_hidden};
    EXPECT_EQ(run({text("--status"), text("--json")}), CommandRunner::Success);
    EXPECT_EQ(m_output, QStringList{text(
                            "{\"asks_administrator\":false,\"current_address\":\"203.0.113.9\",\"location\":"
                            "\"Norway Oslo\",\"network_lock\":false,\"real_address\":\"198.51.100.10\","
                            "\"running\":true,\"state\":\"hidden\"}")});
    m_client.running = false;
    m_output.clear();
    EXPECT_EQ(run({text("--status"), text("--json")}), CommandRunner::NotRunning);
    EXPECT_EQ(m_output, QStringList{text("{\"running\":false}")});
    EXPECT_TRUE(m_errors.isEmpty());
}

TEST_F(CommandRunnerTest, FollowPrintsEachStateUntilTheCopyQuits) {
    ControlState searching = m_hidden;
    searching.state = text("searching");
    m_client.states = {searching, m_hidden};
    EXPECT_EQ(run({text("--status"), text("--follow")}), CommandRunner::Success);
    EXPECT_EQ(m_output.size(), 2);
    m_output.clear();
    EXPECT_EQ(run({text("--status"), text("--follow"), text("--json")}), CommandRunner::Success);
    EXPECT_EQ(m_output.size(), 3);
    EXPECT_EQ(m_output.last(), text("{\"running\":false}"));
}

TEST_F(CommandRunnerTest, Locations) {
    EXPECT_EQ(run({text("--locations")}), CommandRunner::Success);
    EXPECT_EQ(m_output, (QStringList{text("Random Location"), text("Norway Oslo")}));
    m_output.clear();
    EXPECT_EQ(run({text("--locations"), text("--json")}), CommandRunner::Success);
    EXPECT_EQ(m_output,
              QStringList{
                  text("[{\"country\":\"\",\"full\":false,\"selected\":false,\"title\":\"Random Location\"},"
                       "{\"country\":\"NO\",\"full\":true,\"selected\":true,\"title\":\"Norway Oslo\"}]")});
}

TEST_F(CommandRunnerTest, HelpAndWrongUse) {
    EXPECT_EQ(run({text("--help")}), CommandRunner::Success);
    EXPECT_EQ(m_output.size(), 1);
    EXPECT_EQ(run({text("--json")}), CommandRunner::WrongUse);
    EXPECT_EQ(m_errors, QStringList{text("Exactly one command is needed.")});
}

} // namespace

} // namespace quorvane
