#pragma once

#include "Caller.h"
#include "Config.h"
#include "TokenBucket.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quorvane::service {

/// What a caller can have too much of.
enum class Limit {
    Requests,        ///< requests a second
    Configurations,  ///< requests for a configuration a second
    Connections,     ///< new connections a second
    Handshakes,      ///< TLS handshakes a second
    OpenConnections, ///< connections of one caller at once
    AllConnections   ///< connections of all callers at once
};

constexpr std::size_t limitCount = 6;

/// "requests", "configurations", ...
[[nodiscard]] std::string_view limitName(Limit limit);

/// Decides what each caller may do now, and counts what was refused. Use it from one thread only.
///
/// The callers are remembered in a table of fixed size (about 6 MB), in groups of eight places by a hash of
/// the address. A new caller replaces the one of its group that has been silent for the longest time. A
/// caller who is replaced begins with full supplies, so strangers with any number of addresses neither need
/// more memory nor make another caller wait.
class CallerLimits {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;
    /// Receives what was refused since the last report about this caller and limit, at most once a minute.
    using Report = std::function<void(const Caller &, Limit, std::uint64_t count)>;

    /// `limits` is not owned.
    CallerLimits(const PerCallerLimits &limits, Clock clock, Report report);

    /// False, and counted as refused, when the caller has had enough in this second. Not for the limits of
    /// connections at once.
    [[nodiscard]] bool admit(const Caller &caller, Limit limit);
    /// Counts an open connection. False, and counted as refused, when the caller has too many.
    [[nodiscard]] bool open(const Caller &caller);
    /// Undoes a successful open().
    void close(const Caller &caller);
    /// Counts something that was refused for another reason than the caller's own supplies.
    void refuse(const Caller &caller, Limit limit);
    /// Reports what was refused and is not reported yet, if the last report is a minute old. To be called
    /// every few seconds.
    void reportOld();

    /// The number of callers in the table.
    [[nodiscard]] std::size_t remembered() const;

    /// What was refused since the start.
    [[nodiscard]] std::uint64_t refused(Limit limit) const {
        return m_refused.at(static_cast<std::size_t>(limit));
    }

private:
    using TimePoint = std::chrono::steady_clock::time_point;

    static constexpr std::size_t rateCount = 4; ///< the first limits of the enumeration

    struct Refusals {
        std::uint64_t count = 0;
        std::optional<TimePoint> reported;
    };

    struct Place {
        Place(const Caller &owner, const std::vector<TokenBucket> &full) : caller(owner), supplies(full) {}

        Caller caller;
        TimePoint used;
        std::vector<TokenBucket> supplies;
        std::array<Refusals, limitCount> refusals{};
    };

    Place &placeOf(const Caller &caller);
    void reportAll(const Place &place);

    const PerCallerLimits &m_limits;
    Clock m_clock;
    Report m_report;
    std::vector<TokenBucket> m_full;
    std::array<unsigned, rateCount> m_rates;
    std::vector<std::vector<Place>> m_groups;
    std::unordered_map<Caller, unsigned, CallerHash> m_open; ///< as many as connections at the most
    std::array<std::uint64_t, limitCount> m_refused{};
};

} // namespace quorvane::service
