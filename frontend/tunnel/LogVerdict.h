#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

/// What one look at OpenVPN's log says.
struct LogVerdict {
    enum class Outcome {
        Undecided,  ///< nothing final yet
        Up,         ///< the tunnel is up
        WithErrors, ///< it came up with errors, which counts as a failure
        Failed      ///< at least one failure marker is there
    };

    Outcome outcome = Outcome::Undecided;
    /// The line to log for each failure, in order; one failure each.
    QStringList failures;
    /// The last complete line; null when the log has too few lines to tell.
    QString lastLine;
    /// That line ends the attempt: OpenVPN had come no further than its remote link.
    bool stuckAtLink = false;

    /// Reads the whole log's text. Success is decided first: failure markers are not looked for once
    /// the completion marker is there. A null text says nothing.
    [[nodiscard]] static LogVerdict of(const QString &text);
};

} // namespace quorvane
