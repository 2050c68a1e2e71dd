#pragma once

#include <ostream>
#include <string>
#include <vector>

/// One record of tests/hostile/configurations.txt.
struct HostileConfiguration {
    std::string name;
    std::string refusal; ///< a part of what the refusal says
    std::string text;    ///< the whole configuration: the allowed one, then what was added
};

inline void PrintTo(const HostileConfiguration &configuration, std::ostream *stream) {
    *stream << configuration.name;
}

/// A configuration that may pass: byte for byte what the service makes, see its own test. Throws when it
/// cannot be read.
std::string allowedConfiguration();

/// All records, with `canary` in the place of the program that must never run. Throws when the file is not
/// understood.
std::vector<HostileConfiguration> hostileConfigurations(const std::string &canary);
