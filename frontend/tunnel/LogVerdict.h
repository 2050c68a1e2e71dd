#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

/// The result of reading OpenVPN's log once.
struct LogVerdict {
    enum class Outcome {
        Undecided,  ///< nothing final yet
        Up,         ///< the tunnel is up
        WithErrors, ///< the tunnel came up with errors, which counts as a failure
        Failed      ///< the log contains at least one failure marker
    };

    Outcome outcome = Outcome::Undecided;
    /// The line to log for each failure, in order; one failure each.
    QStringList failures;
    /// The last complete line; null when the log has too few lines to determine it.
    QString lastLine;
    /// Whether OpenVPN's last line is the one about its remote link, which ends the attempt.
    bool stuckAtLink = false;

    /// Reads the whole log's text. Success is checked first: a log with the completion marker is not searched
    /// for failure markers. A null text is undecided.
    [[nodiscard]] static LogVerdict of(const QString &text);
};

} // namespace quorvane
