#pragma once

#include "common/Result.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Requests to etcd and its answers, in the JSON form of its version 3.
namespace quorvane::service::etcd {

/// Bounds of what an answer may be: a server that sends more is not believed.
constexpr std::size_t maximumAnswer = 16 << 20;
constexpr std::size_t maximumKey = 1024;
constexpr std::size_t maximumValue = 64 << 10;

/// A key with its value.
struct Entry {
    std::string key;
    std::string value{};
    std::int64_t modified = 0; ///< the store's revision when it was last written

    bool operator==(const Entry &) const = default;
};

struct Event {
    bool deleted = false;
    Entry entry;

    bool operator==(const Event &) const = default;
};

struct RangeAnswer {
    std::int64_t revision = 0; ///< of the store
    std::int64_t count = 0;    ///< of all keys in the range, also of those that are not in the answer
    std::vector<Entry> entries;
};

/// One message of a watch.
struct WatchAnswer {
    std::int64_t revision = 0;
    bool created = false;
    bool cancelled = false; ///< also because what it asks for is no longer stored
    std::vector<Event> events;
};

/// A lease was granted or kept.
struct LeaseAnswer {
    std::int64_t id = 0;
    std::int64_t seconds = 0; ///< 0: there is no such lease any more
};

struct TransactionAnswer {
    bool succeeded = false;
    std::optional<Entry> found; ///< when it did not succeed: what was read instead
};

/// The keys that begin with the prefix.
[[nodiscard]] std::string rangeRequest(std::string_view prefix);
/// The names of those that were written after the revision.
[[nodiscard]] std::string changesRequest(std::string_view prefix, std::int64_t revision);
/// Changes of keys that begin with the prefix, from the revision on.
[[nodiscard]] std::string watchRequest(std::string_view prefix, std::int64_t revision);
/// lease 0: none.
[[nodiscard]] std::string putRequest(std::string_view key, std::string_view value, std::int64_t lease);
[[nodiscard]] std::string leaseRequest(std::int64_t seconds);
/// For keeping and for ending a lease.
[[nodiscard]] std::string leaseNumber(std::int64_t id);
/// Writes the key when it does not exist, else reads it.
[[nodiscard]] std::string claimRequest(std::string_view key, std::string_view value);
/// Deletes the keys, provided that all of them have the value and `absent`, when it is not empty, does not
/// exist.
[[nodiscard]] std::string deletionRequest(const std::vector<std::string> &keys, std::string_view value,
                                          std::string_view absent);

Result<RangeAnswer> parseRange(std::string_view answer);
Result<WatchAnswer> parseWatch(std::string_view line);
/// The answer to a request for a lease.
Result<LeaseAnswer> parseLease(std::string_view answer);
/// The answer to a request to keep one, which is a stream of one line.
Result<LeaseAnswer> parseKeptLease(std::string_view line);
Result<TransactionAnswer> parseTransaction(std::string_view answer);
/// The answer to a request of which only the success counts.
Result<> parseDone(std::string_view answer);

} // namespace quorvane::service::etcd
