#include "frontend/control/CommandLine.h"

#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <gtest/gtest.h>

namespace quorvane {

namespace {

using platform::ControlOperation;

Command parse(const QStringList &arguments) {
    return CommandLine::parse(QStringList{text("quorvane")} + arguments);
}

TEST(CommandLineTest, CommandsDifferFromStartsInTheirFirstArgument) {
    for (const char *command : {"--hide", "--stop", "--change", "--discard", "--status", "--locations",
                                "--show", "--quit", "--json", "--follow", "--help"}) {
        EXPECT_TRUE(CommandLine::isCommand(command)) << command;
    }
    for (const char *other :
         {"-hide", "hide", "--hid", "--hidee", "--", "", "-platform", "--style", "-h", "--version"}) {
        EXPECT_FALSE(CommandLine::isCommand(other)) << other;
    }
}

TEST(CommandLineTest, EveryOperation) {
    const QList<std::pair<const char *, ControlOperation>> operations = {
        {"--hide", ControlOperation::Hide},     {"--stop", ControlOperation::Stop},
        {"--change", ControlOperation::Change}, {"--discard", ControlOperation::Discard},
        {"--show", ControlOperation::Show},     {"--quit", ControlOperation::Quit}};
    for (const auto &[argument, operation] : operations) {
        const Command command = parse({text(argument)});
        EXPECT_EQ(command.kind, Command::Kind::Operate) << argument;
        EXPECT_EQ(command.operation, operation) << argument;
        EXPECT_EQ(command.location, QString()) << argument;
    }
}

TEST(CommandLineTest, HideTakesALocation) {
    const Command command = parse({text("--hide"), text("Germany Berlin")});
    EXPECT_EQ(command.kind, Command::Kind::Operate);
    EXPECT_EQ(command.location, text("Germany Berlin"));
}

TEST(CommandLineTest, StatusAndLocations) {
    const Command status = parse({text("--status"), text("--json"), text("--follow")});
    EXPECT_EQ(status.kind, Command::Kind::Status);
    EXPECT_TRUE(status.json && status.follow);
    const Command locations = parse({text("--json"), text("--locations")});
    EXPECT_EQ(locations.kind, Command::Kind::Locations);
    EXPECT_TRUE(locations.json && !locations.follow);
}

TEST(CommandLineTest, HelpListsEveryCommand) {
    const Command command = parse({text("--help")});
    EXPECT_EQ(command.kind, Command::Kind::Help);
    for (const char *name : {"--hide", "--stop", "--change", "--discard", "--status", "--locations", "--show",
                             "--quit", "--json", "--follow", "--unlock", "--version"}) {
        EXPECT_TRUE(command.text.contains(text(name))) << name;
    }
}

TEST(CommandLineTest, WrongUseIsNamed) {
    const QList<std::pair<QStringList, const char *>> wrong = {
        {{text("--hide"), text("--stop")}, "Exactly one command is needed."},
        {{text("--json")}, "Exactly one command is needed."},
        {{text("--hide"), text("a"), text("b")}, "Unexpected argument \"b\"."},
        {{text("--stop"), text("now")}, "Unexpected argument \"now\"."},
        {{text("--hide"), text("--json")}, "--json belongs to --status and --locations."},
        {{text("--locations"), text("--follow")}, "--follow belongs to --status."},
        {{text("--status"), text("--nonsense")}, "Unknown option 'nonsense'."},
        {{text("--status"), text("-hide")}, "Unknown options: i, d, e."}};
    for (const auto &[arguments, problem] : wrong) {
        const Command command = parse(arguments);
        EXPECT_EQ(command.kind, Command::Kind::Wrong) << problem;
        EXPECT_EQ(command.text, text(problem));
    }
}

} // namespace

} // namespace quorvane
