#include "Caller.h"

#include <charconv>
#include <cstring>
#include <unistd.h>

namespace quorvane::guard {

std::optional<uid_t> callerOf(const char *variable) {
    if (variable == nullptr) {
        return getuid();
    }
    uid_t caller = 0;
    const char *const end = variable + std::strlen(variable);
    const auto read = std::from_chars(variable, end, caller);
    return read.ec == std::errc() && read.ptr == end ? std::optional(caller) : std::nullopt;
}

} // namespace quorvane::guard
