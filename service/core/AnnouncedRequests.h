#pragma once

#include "Announcement.h"
#include "common/Result.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::service {

/// The requests that a strict run expects, and the received ones that it did not expect.
///
/// An announcement covers a number of requests, by exact target or by an expression for the whole target.
/// A request uses the first announcement, in the order they were made, that covers it and is not used up.
class AnnouncedRequests {
public:
    AnnouncedRequests();
    ~AnnouncedRequests();

    /// Fails when the expression is malformed.
    Result<> announce(const Announcement &announcement);
    /// Uses up one announced request. When none covers the target, remembers the target and returns false.
    bool consume(const std::string &target);
    /// Forgets all announcements, but not the unexpected requests.
    void clear();

    [[nodiscard]] const std::vector<std::string> &unexpected() const { return m_unexpected; }

    /// The announcements with a limited count that are not used up; `count` is the number of requests left.
    [[nodiscard]] std::vector<Announcement> outstanding() const;

private:
    class Pattern;

    struct Entry {
        Announcement announcement;
        std::unique_ptr<Pattern> pattern; ///< null for an exact target
        bool unlimited = false;
    };

    [[nodiscard]] static bool covers(const Entry &entry, const std::string &target);

    std::vector<Entry> m_entries;
    std::vector<std::string> m_unexpected;
};

} // namespace quorvane::service
