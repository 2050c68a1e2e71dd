#include "CallerLimits.h"

#include <algorithm>

namespace quorvane::service {

namespace {

constexpr std::size_t groupCount = 2048;
constexpr std::size_t placesOfGroup = 8;
constexpr std::chrono::minutes reportInterval{1};

} // namespace

std::string_view limitName(Limit limit) {
    switch (limit) {
    case Limit::Requests:
        return "requests";
    case Limit::Configurations:
        return "configurations";
    case Limit::Connections:
        return "connections";
    case Limit::Handshakes:
        return "handshakes";
    case Limit::OpenConnections:
        return "connections at once";
    case Limit::AllConnections:
        return "connections of all callers";
    }
    return {};
}

CallerLimits::CallerLimits(const PerCallerLimits &limits, Clock clock, Report report)
    : m_limits(limits), m_clock(std::move(clock)),
      m_report(std::move(report)), m_rates{limits.requestsPerSecond, limits.configurationsPerSecond,
                                           limits.connectionsPerSecond, limits.handshakesPerSecond},
      m_groups(groupCount) {
    for (const unsigned rate : m_rates) {
        m_full.emplace_back(rate, static_cast<double>(rate) * limits.burstSeconds);
    }
}

CallerLimits::Place &CallerLimits::placeOf(const Caller &caller) {
    auto &group = m_groups[CallerHash()(caller) % groupCount];
    auto found =
        std::find_if(group.begin(), group.end(), [&](const Place &place) { return place.caller == caller; });
    if (found == group.end() && group.size() < placesOfGroup) {
        group.emplace_back(caller, m_full);
        found = std::prev(group.end());
    } else if (found == group.end()) {
        found = std::min_element(group.begin(), group.end(),
                                 [](const Place &one, const Place &other) { return one.used < other.used; });
        reportAll(*found);
        *found = Place(caller, m_full);
    }
    found->used = m_clock();
    return *found;
}

bool CallerLimits::admit(const Caller &caller, Limit limit) {
    const auto index = static_cast<std::size_t>(limit);
    if (m_rates.at(index) == 0 || placeOf(caller).supplies.at(index).take(1, m_clock())) {
        return true;
    }
    refuse(caller, limit);
    return false;
}

bool CallerLimits::open(const Caller &caller) {
    if (m_limits.connections > 0) {
        unsigned &connections = m_open[caller];
        if (connections >= m_limits.connections) {
            refuse(caller, Limit::OpenConnections);
            return false;
        }
        ++connections;
    }
    return true;
}

void CallerLimits::close(const Caller &caller) {
    const auto found = m_open.find(caller);
    if (found != m_open.end() && --found->second == 0) {
        m_open.erase(found);
    }
}

void CallerLimits::refuse(const Caller &caller, Limit limit) {
    const auto index = static_cast<std::size_t>(limit);
    ++m_refused.at(index);
    Refusals &refusals = placeOf(caller).refusals.at(index);
    ++refusals.count;
    const TimePoint now = m_clock();
    if (!refusals.reported || now - *refusals.reported >= reportInterval) {
        m_report(caller, limit, std::exchange(refusals.count, 0));
        refusals.reported = now;
    }
}

void CallerLimits::reportOld() {
    const TimePoint now = m_clock();
    for (auto &group : m_groups) {
        for (Place &place : group) {
            for (std::size_t index = 0; index < limitCount; ++index) {
                Refusals &refusals = place.refusals.at(index);
                if (refusals.count > 0 && now - *refusals.reported >= reportInterval) {
                    m_report(place.caller, static_cast<Limit>(index), std::exchange(refusals.count, 0));
                    refusals.reported = now;
                }
            }
        }
    }
}

std::size_t CallerLimits::remembered() const {
    std::size_t count = 0;
    for (const auto &group : m_groups) {
        count += group.size();
    }
    return count;
}

void CallerLimits::reportAll(const Place &place) {
    for (std::size_t index = 0; index < limitCount; ++index) {
        if (place.refusals.at(index).count > 0) {
            m_report(place.caller, static_cast<Limit>(index), place.refusals.at(index).count);
        }
    }
}

} // namespace quorvane::service
