#pragma once

#include <chrono>
#include <nlohmann/json.hpp>

namespace quorvane::service {

/// The time under the key, a whole number of the time's unit since 1970. Throws json::exception when there is
/// none, or none that fits into microseconds.
template <typename Duration>
std::chrono::sys_time<Duration> timeUnder(const nlohmann::json &object, const char *key) {
    constexpr std::chrono::microseconds latest = std::chrono::days(100000);
    const nlohmann::json &value = object.at(key);
    if (!value.is_number_unsigned() ||
        value.get<std::uint64_t>() >
            static_cast<std::uint64_t>(std::chrono::floor<Duration>(latest).count())) {
        throw nlohmann::json::out_of_range::create(401, "no time", &value);
    }
    return std::chrono::sys_time<Duration>(Duration(value.get<std::int64_t>()));
}

} // namespace quorvane::service
