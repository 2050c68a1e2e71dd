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

std::vector<std::string> unshareWords() {
    std::vector<std::string> words{"unshare", "--mount", "--pid", "--fork",        "--kill-child=SIGKILL",
                                   "--net",   "--ipc",   "--uts", "--propagation", "private"};
    if (geteuid() != 0) {
        words.insert(words.end(), {"--user", "--map-root-user"});
    }
    words.insert(words.end(), {"/bin/sh", SANDBOX_SCRIPT});
    return words;
}

std::vector<char *> pointers(std::vector<std::string> &words) {
    std::vector<char *> result;
    result.reserve(words.size() + 1);
    for (std::string &word : words) {
        result.push_back(word.data());
    }
    result.push_back(nullptr);
    return result;
}

/// Whether the namespaces can be created and set up here.
bool works() {
    std::vector<std::string> words = unshareWords();
    words.emplace_back("true");
    const pid_t child = fork();
    if (child == 0) {
        execvp("unshare", pointers(words).data());
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

void enter(char **arguments) {
    char self[4096];
    const ssize_t length = readlink("/proc/self/exe", self, sizeof self - 1);
    if (length <= 0) {
        return;
    }
    self[length] = '\0';
    std::vector<std::string> words;
    const bool inside = works();
    const char *mode = !inside ? "outside" : geteuid() == 0 ? "accounts" : "inside";
    setenv(stateVariable, mode, 1);
    if (inside) {
        words = unshareWords();
    }
    words.emplace_back(self);
    for (char **argument = arguments + 1; *argument != nullptr; ++argument) {
        words.emplace_back(*argument);
    }
    execvp(words.front().c_str(), pointers(words).data());
}

} // namespace sandbox

} // namespace quorvane::platform
