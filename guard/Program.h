#pragma once

#include "Routing.h"

#include <chrono>
#include <span>

namespace quorvane::guard {

/// What a build of the guard uses; the tests have other values.
struct Settings {
    std::string openVpn; ///< the program that is started
    std::string lock;    ///< the file that keeps two guards apart
    std::string record;  ///< see RouteRecord
    std::chrono::milliseconds startTimeout;
    std::chrono::milliseconds endTimeout;
};

/// The whole program; returns its exit status. `arguments` are those of main().
int runGuard(std::span<char *> arguments, const Settings &settings, Routing &routing);

} // namespace quorvane::guard
