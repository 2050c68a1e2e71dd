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

/// Thrown inside the configuration reader only; parseConfig turns it into a Failure.
class ConfigError : public std::runtime_error {
public:
    ConfigError(const std::string &where, const std::string &what)
        : std::runtime_error(where + ": " + what) {}
};

/// Reads one JSON object key by key and remembers which keys were asked for, so that a misspelt one is
/// reported instead of being ignored. Every problem is a ConfigError that names the key's full path.
class JsonReader {
public:
    JsonReader(const nlohmann::json &object, std::string where);

    [[nodiscard]] bool given(const std::string &key); ///< present and not null
    std::string text(const std::string &key);
    std::string anyText(const std::string &key); ///< may be empty and hold anything
    std::string text(const std::string &key, const std::string &otherwise);
    bool truth(const std::string &key, bool otherwise);
    std::uint32_t number(const std::string &key, std::uint32_t smallest, std::uint32_t largest);
    std::uint32_t number(const std::string &key, std::uint32_t smallest, std::uint32_t largest,
                         std::uint32_t otherwise);
    Ipv4Network network(const std::string &key);
    std::vector<std::string> texts(const std::string &key);
    std::vector<Ipv4Address> addresses(const std::string &key);

    /// Calls `read` with a reader of the object under the key, which must be there.
    void object(const std::string &key, const std::function<void(JsonReader &)> &read);
    /// Calls `read` for every object of the list under the key; an absent list has no elements.
    void objects(const std::string &key, const std::function<void(JsonReader &)> &read);

    /// Fails on a key that nobody asked for.
    void finish() const;
    [[noreturn]] void fail(const std::string &key, const std::string &what) const;

private:
    const nlohmann::json &required(const std::string &key);
    const nlohmann::json *list(const std::string &key);
    [[nodiscard]] std::string pathOf(const std::string &key) const;

    const nlohmann::json &m_object;
    std::string m_where;
    std::set<std::string> m_asked;
};

} // namespace quorvane::service
