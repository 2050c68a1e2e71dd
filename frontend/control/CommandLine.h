#pragma once

#include "platform/Control.h"

#include <QCoreApplication>
#include <QStringList>
#include <optional>

namespace quorvane {

/// What a command line asks of the running copy.
struct Command {
    enum class Kind { Operate, Status, Locations, Help, Wrong };
    Kind kind = Kind::Wrong;
    platform::ControlOperation operation = platform::ControlOperation::Hide;
    QString location;
    bool json = false;
    bool follow = false;
    /// Help: the text to print. Wrong: why.
    QString text;
};

/// The commands that control a running copy from a terminal or a script.
class CommandLine {
    Q_DECLARE_TR_FUNCTIONS(quorvane::CommandLine)

public:
    /// Whether the first argument is a command for the running copy, and not a start of the program: "-hide"
    /// starts it in the background, "--hide" is a command.
    [[nodiscard]] static bool isCommand(const char *argument);
    /// The arguments with the program's name.
    [[nodiscard]] static Command parse(const QStringList &arguments);
};

} // namespace quorvane
