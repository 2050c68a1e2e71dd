#pragma once

#include "CommandLine.h"

#include <functional>

namespace quorvane {

/// Runs a command with the running copy, and prints its result. Main thread of a process without windows.
class CommandRunner {
    Q_DECLARE_TR_FUNCTIONS(quorvane::CommandRunner)

public:
    /// What the process ends with.
    enum Status {
        Success = 0,
        Failed = 1,          ///< the operation did not succeed
        WrongUse = 2,        ///< of the command line
        NotRunning = 3,      ///< there is no copy, and the command starts none
        CannotStart = 4,     ///< there is no copy, and none could be started
        UnknownLocation = 5, ///< no location has this title
        NotHidden = 6        ///< nothing is hidden that could be changed or discarded
    };

    /// Receives one line, without its end.
    using Printer = std::function<void(const QString &line)>;

    /// The client is not owned.
    CommandRunner(platform::ControlClient &client, Printer output, Printer errors);

    [[nodiscard]] Status run(const Command &command);

private:
    [[nodiscard]] Status operate(const Command &command);
    [[nodiscard]] Status status(const Command &command);
    [[nodiscard]] Status locations(const Command &command);
    [[nodiscard]] Status notRunning(bool json);
    void print(const platform::ControlState &state, bool json);

    platform::ControlClient &m_client;
    Printer m_output;
    Printer m_errors;
};

} // namespace quorvane
