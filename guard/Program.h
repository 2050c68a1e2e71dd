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
    std::string note;    ///< the file that is there while the network lock is closed
    std::string nft;     ///< see LockOpenings
    std::chrono::milliseconds startTimeout;
    std::chrono::milliseconds endTimeout;
    bool isInstalled; ///< its files belong to root alone; those of a build tree also to the caller
};

/// The whole program; returns its exit status. `arguments` are those of main().
int runGuard(std::span<char *> arguments, const Settings &settings, Routing &routing);

} // namespace quorvane::guard
