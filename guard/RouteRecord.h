#pragma once

#include "Routing.h"

namespace quorvane::guard {

/// What the next guard needs to take back the changes of a session whose guard was killed.
struct RouteRecord {
    NetworkState before; ///< without rules
    std::set<Network> servers;
};

/// Writes the record to a private file, which replaces one that is there.
Result<> writeRecord(const std::string &path, const RouteRecord &record);

/// The record of a guard that did not end by itself. Absent when there is none, or when it is incomplete or
/// damaged, from before the last start of the computer, from another network namespace, or not written by a
/// guard of this user.
[[nodiscard]] std::optional<RouteRecord> readRecord(const std::string &path);

void removeRecord(const std::string &path);

} // namespace quorvane::guard
