#pragma once

#include <string>

namespace quorvane::service {

/// One announced request of the strict mode; see AnnouncedRequests.
struct Announcement {
    std::string target;  ///< exact target, unless `pattern` is set
    std::string pattern; ///< POSIX extended expression for the whole target
    unsigned count = 1;  ///< how many requests it covers; 0 for any number
};

} // namespace quorvane::service
