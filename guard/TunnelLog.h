#pragma once

#include "common/FileDescriptor.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace quorvane::guard {

/// openvpn.log, which the application reads while it waits for the tunnel. Everything that OpenVPN prints
/// passes through here, line by line: what comes from the far side of the connection cannot look like
/// OpenVPN's own word that the tunnel is up, and every line is plain ASCII, so that the log can always be
/// read.
class TunnelLog {
public:
    /// Takes the log, opened for appending. Reserves room for what has to be said at the end; see hasRoom().
    explicit TunnelLog(FileDescriptor file);

    /// False when the disk has no room for a log: the end of an attempt could then not be told.
    bool hasRoom() const { return m_hasRoom; }

    /// Adds what OpenVPN printed; an unfinished line waits for its end.
    void add(std::string_view output);

    /// Adds a line of our own, with the time.
    void note(std::string_view line);

    /// Ends the log: an unfinished line is written, and when nothing in it tells the application that the
    /// attempt is over, a line that does, with `reason`.
    void finish(std::string_view reason);

    /// The attempt was given up: what OpenVPN says from now on cannot mean that the tunnel is up.
    void giveUp() { m_isGivenUp = true; }

    /// True once OpenVPN has said that the tunnel is up.
    bool isUp() const { return m_isUp; }

    /// False when a line was lost because the disk is full.
    bool isWhole() const { return m_isWhole; }

private:
    void addLine(std::string line);
    void write(std::string_view text);

    FileDescriptor m_file;
    std::string m_unfinished;
    std::size_t m_written = 0;
    bool m_hasRoom = false;
    bool m_isUp = false;
    bool m_isOver = false;
    bool m_isGivenUp = false;
    bool m_isWhole = true;
};

} // namespace quorvane::guard
