#include "AnnouncedRequests.h"

#include <regex.h>

namespace quorvane::service {

/// A compiled expression that must match a whole target. POSIX expressions, because the standard library's
/// matcher recurses once per character: a hostile target could exhaust the stack.
class AnnouncedRequests::Pattern {
public:
    explicit Pattern(const std::string &expression)
        : m_valid(regcomp(&m_compiled, ("^(" + expression + ")$").c_str(), REG_EXTENDED | REG_NOSUB) == 0) {}

    ~Pattern() {
        if (m_valid) {
            regfree(&m_compiled);
        }
    }

    Pattern(const Pattern &) = delete;
    Pattern &operator=(const Pattern &) = delete;

    [[nodiscard]] bool valid() const { return m_valid; }

    [[nodiscard]] bool matches(const std::string &text) const {
        return regexec(&m_compiled, text.c_str(), 0, nullptr, 0) == 0;
    }

private:
    regex_t m_compiled{};
    bool m_valid;
};

AnnouncedRequests::AnnouncedRequests() = default;

AnnouncedRequests::~AnnouncedRequests() = default;

Result<> AnnouncedRequests::announce(const Announcement &announcement) {
    Entry entry{announcement, nullptr, announcement.count == 0};
    if (!announcement.pattern.empty()) {
        entry.pattern = std::make_unique<Pattern>(announcement.pattern);
        if (!entry.pattern->valid()) {
            return Failure{"not a POSIX extended regular expression: " + announcement.pattern};
        }
    }
    m_entries.push_back(std::move(entry));
    return {};
}

bool AnnouncedRequests::covers(const Entry &entry, const std::string &target) {
    if (!entry.unlimited && entry.announcement.count == 0) {
        return false;
    }
    return entry.pattern ? entry.pattern->matches(target) : entry.announcement.target == target;
}

bool AnnouncedRequests::consume(const std::string &target) {
    for (Entry &entry : m_entries) {
        if (covers(entry, target)) {
            entry.announcement.count -= entry.unlimited ? 0 : 1;
            return true;
        }
    }
    m_unexpected.push_back(target);
    return false;
}

void AnnouncedRequests::clear() {
    m_entries.clear();
}

std::vector<Announcement> AnnouncedRequests::outstanding() const {
    std::vector<Announcement> rest;
    for (const Entry &entry : m_entries) {
        if (!entry.unlimited && entry.announcement.count > 0) {
            rest.push_back(entry.announcement);
        }
    }
    return rest;
}

} // namespace quorvane::service
