#pragma once

#include "Config.h"
#include "common/Result.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::service {

/// The requests that a strict run expects, and the ones that came without being expected.
///
/// An announcement covers a number of requests, by exact target or by an expression over the whole
/// target. Announcements are tried in the order they were made; one that is used up is passed over.
class AnnouncedRequests {
public:
    AnnouncedRequests();
    ~AnnouncedRequests();

    /// Fails on an expression that cannot be read.
    Result<> announce(const Announcement &announcement);
    /// Uses up one announced request; false, and remembered, when none covers the target.
    bool take(const std::string &target);
    /// Forgets all announcements; what was unexpected stays so.
    void clear();

    [[nodiscard]] const std::vector<std::string> &unexpected() const { return m_unexpected; }

    /// The announcements with a bounded count that is not used up, with `count` as what is left.
    [[nodiscard]] std::vector<Announcement> outstanding() const;

private:
    class Pattern;

    struct Entry {
        Announcement announcement;
        std::unique_ptr<Pattern> pattern; ///< null for an exact target
        bool endless = false;
    };

    [[nodiscard]] static bool covers(const Entry &entry, const std::string &target);

    std::vector<Entry> m_entries;
    std::vector<std::string> m_unexpected;
};

} // namespace quorvane::service
