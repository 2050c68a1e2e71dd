#pragma once

#include <string>
#include <vector>

namespace quorvane::guard {

/// One record of tests/hostile/configurations.txt.
struct HostileConfiguration {
    std::string name;
    std::string refusal; ///< a part of the refusal's text
    std::string text;    ///< the whole configuration: the allowed one, then the record's lines
};

/// An allowed configuration: byte for byte what the service generates, which a test of the service checks.
/// Throws when it cannot be read.
[[nodiscard]] std::string allowedConfiguration();

/// All records. `canary` is the program that must never run; it replaces the word CANARY. Throws when the
/// file is malformed.
[[nodiscard]] std::vector<HostileConfiguration> hostileConfigurations(const std::string &canary);

} // namespace quorvane::guard
