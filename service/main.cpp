#include "core/Config.h"
#include "net/Service.h"

#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>
#include <string>
#include <sys/resource.h>

namespace {

constexpr int exitUsage = 2;

int usage() {
    std::fputs("usage: quorvane-service --config FILE [--role ROLE] [--check]\n"
               "\n"
               "  --config FILE  the JSON configuration\n"
               "  --role ROLE    \"api\" answers requests, \"gateway\" lends addresses, \"all\" does both\n"
               "  --check        read and check the configuration, then exit\n",
               stderr);
    return exitUsage;
}

/// Every connection needs a file descriptor. Raises the soft limit to the hard one.
void raiseOpenFileLimit() {
    rlimit files{};
    if (getrlimit(RLIMIT_NOFILE, &files) == 0) {
        files.rlim_cur = files.rlim_max;
        setrlimit(RLIMIT_NOFILE, &files);
    }
}

} // namespace

int main(int argc, char **argv) {
    std::string path;
    auto role = std::optional(quorvane::service::Role::All);
    bool checkOnly = false;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--config") == 0 && i + 1 < argc) {
            path = argv[++i];
        } else if (std::strcmp(argv[i], "--role") == 0 && i + 1 < argc) {
            role = quorvane::service::roleNamed(argv[++i]);
        } else if (std::strcmp(argv[i], "--check") == 0) {
            checkOnly = true;
        } else {
            return usage();
        }
    }
    if (path.empty() || !role) {
        return usage();
    }
    auto config = quorvane::service::loadConfig(path, *role);
    if (!config) {
        std::fprintf(stderr, "quorvane-service: %s\n", config.error().c_str());
        return exitUsage;
    }
    if (checkOnly) {
        return 0;
    }
    std::signal(SIGPIPE, SIG_IGN);
    raiseOpenFileLimit();
    try {
        return quorvane::service::runService(std::move(config).value());
    } catch (const std::exception &error) {
        std::fprintf(stderr, "quorvane-service: %s\n", error.what());
        return 1;
    }
}
