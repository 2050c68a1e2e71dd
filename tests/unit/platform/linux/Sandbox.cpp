#include "Sandbox.h"

#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace quorvane::platform {

namespace sandbox {

namespace {

constexpr char stateVariable[] = "QUORVANE_TEST_SANDBOX";

std::string state() {
    const char *value = std::getenv(stateVariable);
    return value != nullptr ? value : "";
}

std::vector<std::string> unshareArguments() {
    std::vector<std::string> arguments{"unshare", "--mount", "--pid", "--fork",        "--kill-child=SIGKILL",
                                       "--net",   "--ipc",   "--uts", "--propagation", "private"};
    if (geteuid() != 0) {
        arguments.insert(arguments.end(), {"--user", "--map-root-user"});
    }
    arguments.insert(arguments.end(), {"/bin/sh", SANDBOX_SCRIPT});
    return arguments;
}

std::vector<char *> pointers(std::vector<std::string> &arguments) {
    std::vector<char *> result;
    result.reserve(arguments.size() + 1);
    for (std::string &argument : arguments) {
        result.push_back(argument.data());
    }
    result.push_back(nullptr);
    return result;
}

/// Whether the namespaces can be created and set up here.
bool works() {
    std::vector<std::string> arguments = unshareArguments();
    arguments.emplace_back("true");
    const pid_t child = fork();
    if (child == 0) {
        execvp("unshare", pointers(arguments).data());
        _exit(127);
    }
    int status = 1;
    return child > 0 && waitpid(child, &status, 0) == child && status == 0;
}

} // namespace

bool wasTried() {
    return !state().empty();
}

bool isInside() {
    return state() == "inside" || hasAccounts();
}

bool hasAccounts() {
    return state() == "accounts";
}

void enter(char **ownArguments) {
    char self[4096];
    const ssize_t length = readlink("/proc/self/exe", self, sizeof self - 1);
    if (length <= 0) {
        return;
    }
    self[length] = '\0';
    std::vector<std::string> arguments;
    const bool inside = works();
    const char *mode = !inside ? "outside" : geteuid() == 0 ? "accounts" : "inside";
    setenv(stateVariable, mode, 1);
    if (inside) {
        arguments = unshareArguments();
    }
    arguments.emplace_back(self);
    for (char **argument = ownArguments + 1; *argument != nullptr; ++argument) {
        arguments.emplace_back(*argument);
    }
    execvp(arguments.front().c_str(), pointers(arguments).data());
}

} // namespace sandbox

} // namespace quorvane::platform
