#pragma once

#include "Ipv4.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::service {

/// Thrown by the configuration reader only; parseConfig() turns it into a Failure.
class ConfigError : public std::runtime_error {
public:
    ConfigError(const std::string &where, const std::string &what)
        : std::runtime_error(where + ": " + what) {}
};

/// Reads one JSON object key by key. Remembers which keys were read, so that a misspelt one is reported
/// instead of ignored. Every error is thrown as a ConfigError that names the key's full path.
class JsonReader {
public:
    JsonReader(const nlohmann::json &object, std::string where);

    [[nodiscard]] bool has(const std::string &key); ///< present and not null; marks the key as read
    [[nodiscard]] std::string text(const std::string &key);
    [[nodiscard]] std::string rawText(const std::string &key); ///< may be empty and contain any character
    [[nodiscard]] std::string text(const std::string &key, const std::string &fallback);
    [[nodiscard]] bool boolean(const std::string &key, bool fallback);
    [[nodiscard]] std::uint32_t number(const std::string &key, std::uint32_t minimum, std::uint32_t maximum);
    [[nodiscard]] std::uint32_t number(const std::string &key, std::uint32_t minimum, std::uint32_t maximum,
                                       std::uint32_t fallback);
    [[nodiscard]] Ipv4Network network(const std::string &key);
    [[nodiscard]] std::vector<std::string> texts(const std::string &key);
    [[nodiscard]] std::vector<Ipv4Address> addresses(const std::string &key);
    [[nodiscard]] std::vector<Ipv4Network> networks(const std::string &key);

    /// Calls `read` with a reader for the object under the key, which must be present.
    void object(const std::string &key, const std::function<void(JsonReader &)> &read);
    /// Calls `read` for every object of the list under the key. An absent list is like an empty one.
    void objects(const std::string &key, const std::function<void(JsonReader &)> &read);

    /// Fails when the object has a key that was not read.
    void finish() const;
    [[noreturn]] void fail(const std::string &key, const std::string &what) const;

private:
    [[nodiscard]] const nlohmann::json &required(const std::string &key);
    [[nodiscard]] const nlohmann::json *list(const std::string &key);
    [[nodiscard]] std::string pathOf(const std::string &key) const;

    const nlohmann::json &m_object;
    std::string m_where;
    std::set<std::string> m_readKeys;
};

} // namespace quorvane::service
