#pragma once

#include "Routing.h"
#include "common/FileDescriptor.h"

#include "common/Result.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace quorvane::guard {

/// openvpn.log, which the application reads while it waits for the tunnel. Everything that OpenVPN prints is
/// copied through this class line by line. A text from the far side of the connection cannot pass for
/// OpenVPN's own report that the tunnel is up, and every line is plain ASCII, so that the log can always be
/// read.
class TunnelLog {
public:
    /// `file`: the log, opened for appending. Reserves disk space for the lines that finish() writes; see
    /// hasSpace().
    explicit TunnelLog(FileDescriptor file);

    /// Called with each line of OpenVPN's, before it is written.
    using Reader = std::function<void(std::string_view line)>;
    /// Decides whether the tunnel is up when OpenVPN reports it; the error is a text for the log.
    using Confirmation = std::function<Result<>()>;

    void setReader(Reader reader) { m_reader = std::move(reader); }

    /// Without one, OpenVPN's report is believed.
    void setConfirmation(Confirmation confirmation) { m_confirmation = std::move(confirmation); }

    /// False when the disk has no space for a log: the end of an attempt could not be reported.
    [[nodiscard]] bool hasSpace() const { return m_hasSpace; }

    /// Adds output of OpenVPN. An incomplete line is written when its rest follows.
    void add(std::string_view output);

    /// Adds a line of the guard's own, with the time in front.
    void addOwnLine(std::string_view line);

    /// Writes the rest of an incomplete line, then `reason`. When no line of the log shows the application
    /// that the attempt is over, one that does is added.
    void finish(std::string_view reason);

    /// Ends the attempt: from now on no output of OpenVPN can mean that the tunnel is up.
    void giveUp() { m_hasGivenUp = true; }

    /// True when a report that the tunnel is up was not confirmed. The attempt is over then, see giveUp().
    [[nodiscard]] bool isRefused() const { return m_isRefused; }

    /// True once OpenVPN has reported that the tunnel is up, and that was confirmed.
    [[nodiscard]] bool isUp() const { return m_isUp; }

    /// False when a line was lost because it could not be written.
    [[nodiscard]] bool isComplete() const { return m_isComplete; }

private:
    void addLine(std::string line);
    void addReport(std::string line);
    void write(std::string_view text);

    FileDescriptor m_file;
    Reader m_reader;
    Confirmation m_confirmation;
    std::string m_incompleteLine;
    std::size_t m_size = 0; ///< bytes written
    bool m_hasSpace = false;
    bool m_isUp = false;
    bool m_isOver = false;
    bool m_hasGivenUp = false;
    bool m_isRefused = false;
    bool m_isComplete = true;
};

/// The address of the server in OpenVPN's own line about it; absent in any other line.
[[nodiscard]] std::optional<Network> serverIn(std::string_view line);

} // namespace quorvane::guard
