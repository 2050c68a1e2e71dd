#include "CommandLine.h"

#include <QCommandLineParser>

#include <algorithm>
#include <array>
#include <string_view>

namespace quorvane {

using platform::ControlOperation;

namespace {

struct NamedCommand {
    std::string_view name;
    Command::Kind kind;
    ControlOperation operation;
};

constexpr std::array commands = {
    NamedCommand{"hide", Command::Kind::Operate, ControlOperation::Hide},
    NamedCommand{"stop", Command::Kind::Operate, ControlOperation::Stop},
    NamedCommand{"change", Command::Kind::Operate, ControlOperation::Change},
    NamedCommand{"discard", Command::Kind::Operate, ControlOperation::Discard},
    NamedCommand{"show", Command::Kind::Operate, ControlOperation::Show},
    NamedCommand{"quit", Command::Kind::Operate, ControlOperation::Quit},
    NamedCommand{"status", Command::Kind::Status, ControlOperation::Hide},
    NamedCommand{"locations", Command::Kind::Locations, ControlOperation::Hide},
};

QString textOf(std::string_view name) {
    return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
}

/// Why the arguments of a command are wrong; null when they are right.
QString problemOf(const Command &command, int named, const QStringList &rest) {
    if (named != 1) {
        return CommandLine::tr("Exactly one command is needed.");
    }
    const bool takesLocation =
        command.kind == Command::Kind::Operate && command.operation == ControlOperation::Hide;
    if (rest.size() > (takesLocation ? 1 : 0)) {
        return CommandLine::tr("Unexpected argument \"%1\".").arg(rest.last());
    }
    if (command.json && command.kind == Command::Kind::Operate) {
        return CommandLine::tr("--json belongs to --status and --locations.");
    }
    if (command.follow && command.kind != Command::Kind::Status) {
        return CommandLine::tr("--follow belongs to --status.");
    }
    return {};
}

void describe(QCommandLineParser &parser) {
    parser.setApplicationDescription(
        CommandLine::tr("Controls the running copy of Quorvane. Without options, starts it."));
    parser.addPositionalArgument(QStringLiteral("location"),
                                 CommandLine::tr("For --hide: a title that --locations lists."),
                                 QStringLiteral("[location]"));
    parser.addOptions(
        {{QStringLiteral("hide"), CommandLine::tr("Hide the IP, and print the lent one.")},
         {QStringLiteral("stop"), CommandLine::tr("Stop hiding the IP.")},
         {QStringLiteral("change"), CommandLine::tr("Change to an IP of a random location, and print it.")},
         {QStringLiteral("discard"),
          CommandLine::tr("Never use the present IP again; change it, and print the new one.")},
         {QStringLiteral("status"), CommandLine::tr("Print what is hidden.")},
         {QStringLiteral("locations"), CommandLine::tr("Print the locations, one on each line.")},
         {QStringLiteral("show"), CommandLine::tr("Show the window.")},
         {QStringLiteral("quit"), CommandLine::tr("Quit Quorvane.")},
         {QStringLiteral("json"), CommandLine::tr("With --status or --locations: print JSON.")},
         {QStringLiteral("follow"),
          CommandLine::tr("With --status: print each change, until Quorvane quits.")},
         {QStringLiteral("unlock"), CommandLine::tr("Lift the network lock, without a running copy.")},
         {QStringLiteral("version"), CommandLine::tr("Print the version.")}});
    parser.addHelpOption();
}

} // namespace

bool CommandLine::isCommand(const char *argument) {
    const std::string_view given(argument);
    if (!given.starts_with("--")) {
        return false;
    }
    const std::string_view name = given.substr(2);
    return name == "help" || name == "json" || name == "follow" ||
           std::any_of(commands.begin(), commands.end(),
                       [name](const NamedCommand &command) { return command.name == name; });
}

Command CommandLine::parse(const QStringList &arguments) {
    QCommandLineParser parser;
    describe(parser);
    Command command;
    if (!parser.parse(arguments)) {
        command.text = parser.errorText();
        return command;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        return {Command::Kind::Help, {}, {}, false, false, parser.helpText()};
    }
    int named = 0;
    for (const NamedCommand &candidate : commands) {
        if (parser.isSet(textOf(candidate.name))) {
            ++named;
            command.kind = candidate.kind;
            command.operation = candidate.operation;
        }
    }
    const QStringList rest = parser.positionalArguments();
    command.json = parser.isSet(QStringLiteral("json"));
    command.follow = parser.isSet(QStringLiteral("follow"));
    command.location = rest.value(0);
    command.text = problemOf(command, named, rest);
    if (!command.text.isNull()) {
        command.kind = Command::Kind::Wrong;
    }
    return command;
}

} // namespace quorvane
