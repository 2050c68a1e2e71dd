#include "core/Config.h"
#include "net/Service.h"
#include "setup/CommandLine.h"
#include "setup/ControlActions.h"
#include "setup/SetupActions.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <string>
#include <sys/resource.h>

namespace {

using quorvane::service::Action;
using quorvane::service::CommandLine;

constexpr int exitUsage = 2;

/// Every connection needs a file descriptor. Raises the soft limit to the hard one.
void raiseOpenFileLimit() {
    rlimit files{};
    if (getrlimit(RLIMIT_NOFILE, &files) == 0) {
        files.rlim_cur = files.rlim_max;
        setrlimit(RLIMIT_NOFILE, &files);
    }
}

int serve(const CommandLine &line) {
    auto config = quorvane::service::loadConfig(line.config, line.role);
    if (!config) {
        std::fprintf(stderr, "quorvane-service: %s\n", config.error().c_str());
        return exitUsage;
    }
    if (line.action == Action::CheckConfiguration) {
        return 0;
    }
    std::signal(SIGPIPE, SIG_IGN);
    raiseOpenFileLimit();
    return quorvane::service::runService(std::move(config).value());
}

int runAction(const CommandLine &line) {
    switch (line.action) {
    case Action::Help:
        std::fputs(quorvane::service::usageText().c_str(), stdout);
        return 0;
    case Action::Run:
    case Action::CheckConfiguration:
        return serve(line);
    case Action::Setup:
    case Action::CheckService:
    case Action::Renew:
    case Action::Routes:
        return quorvane::service::runSetupAction(line);
    case Action::Status:
    case Action::Drain:
    case Action::Revoke:
    case Action::Release:
        return quorvane::service::runControlAction(line);
    }
    return exitUsage;
}

} // namespace

int main(int argc, char **argv) {
    try {
        const auto line = quorvane::service::parseCommandLine(
            std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc));
        if (!line) {
            std::fprintf(stderr, "%s\nquorvane-service: %s\n", quorvane::service::usageText().c_str(),
                         line.error().c_str());
            return exitUsage;
        }
        return runAction(line.value());
    } catch (const std::exception &error) {
        std::fprintf(stderr, "quorvane-service: %s\n", error.what());
        return 1;
    }
}
