#pragma once

#include "Grant.h"
#include "TokenBucket.h"
#include "UserTokens.h"
#include "common/FileDescriptor.h"
#include "common/Result.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::service {

/// A grant with which a user has logged in.
struct UsedGrant {
    std::string user;
    Grant::TimePoint issued;
    Ipv4Address address;               ///< the lent one
    std::string source;                ///< the client's own address; empty: unknown
    std::optional<Ipv4Address> tunnel; ///< of the last login
    UserTokens::TimePoint userEnd;

    friend bool operator==(const UsedGrant &, const UsedGrant &) = default;
};

/// One line of a journal, with its line feed: a JSON array of the fields in their order, times in
/// microseconds since 1970.
[[nodiscard]] std::string journalLine(const UsedGrant &grant);

/// Nothing when the line is malformed, as one that was written in part only.
[[nodiscard]] std::optional<UsedGrant> usedGrantIn(std::string_view line);

/// The file in which a gateway keeps its used grants while it is not running. A grant is appended before its
/// login is accepted; of several lines of a user the last one counts.
///
/// It belongs into a folder that the system empties when it starts, such as /run: it contains addresses of
/// clients, which are not for a disk, and no session outlives the system. Use it from one thread only.
class GrantJournal {
public:
    /// Opens or makes the file, and returns its grants in their order. Malformed lines are left out.
    Result<std::vector<UsedGrant>> open(const std::string &path);

    /// A failure is reported on standard error, at most once a minute: it makes the grant unknown after a
    /// restart, which must not prevent the login.
    void append(const UsedGrant &grant);

    /// Replaces all lines.
    Result<> rewrite(const std::vector<UsedGrant> &grants);

    /// The number of lines.
    [[nodiscard]] std::size_t lines() const { return m_lines; }

private:
    void reportError(const std::string &reason);

    std::string m_path;
    FileDescriptor m_file;
    std::size_t m_lines = 0;
    TokenBucket m_reports{1.0 / 60, 1};
};

} // namespace quorvane::service
