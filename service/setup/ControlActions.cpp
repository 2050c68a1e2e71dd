#include "ControlActions.h"

#include "ControlClient.h"
#include "Processes.h"
#include "RoleAnswers.h"
#include "StatusText.h"
#include "core/Ipv4.h"

#include <cstdio>
#include <map>
#include <vector>

namespace quorvane::service {

namespace {

using nlohmann::json;

constexpr int exitRefused = 1;
constexpr int exitUnreadable = 2;

int failed(const std::string &message, int status) {
    std::fprintf(stderr, "quorvane-service: %s\n", message.c_str());
    return status;
}

json commandOf(const CommandLine &line) {
    switch (line.action) {
    case Action::Drain:
        return {{"command", "drain"}, {"on", !line.off}};
    case Action::Revoke:
        return {{"command", "revoke"},
                {Ipv4Address::parse(line.revokedOf) ? "address" : "user", line.revokedOf}};
    case Action::Release:
        return {{"command", "release"}, {"gateway", line.released}};
    default:
        return {{"command", "status"}};
    }
}

int showStatus(const json &answer, bool asJson) {
    const std::string text =
        asJson ? answer.dump(2) + '\n' : statusText(answer, std::chrono::system_clock::now());
    std::fputs(text.c_str(), stdout);
    return answer.value("ready", false) ? 0 : exitNotReady;
}

/// What a command has done, without the field that says that it was done; sessions are those of the gateway.
void showAnswers(const std::map<std::string, json> &answers) {
    json shown = json::object();
    for (const auto &[role, answer] : answers) {
        shown.update(answer);
    }
    shown.erase("ok");
    std::printf("%s\n", shown.empty() ? "done" : shown.dump().c_str());
}

Result<json> answerOf(const std::string &runtimeFolder, const json &command) {
    auto client = ControlClient::connect(runtimeFolder);
    if (!client) {
        return Failure{client.error()};
    }
    ControlClient connected = std::move(client).value();
    return connected.ask(command);
}

} // namespace

int runControlAction(const CommandLine &line) {
    const auto folders = runtimeFolders(line.config);
    if (!folders) {
        return failed(folders.error(), exitUnreadable);
    }
    std::map<std::string, json> answers;
    std::vector<std::string> missing;
    std::string reason;
    for (const auto &[role, folder] : folders.value()) {
        auto answer = answerOf(folder, commandOf(line));
        if (!answer) {
            missing.push_back(role);
            reason = answer.error();
        } else if (!answer.value().value("ok", false)) {
            return failed(answer.value().value("error", "the service refused the command"), exitRefused);
        } else {
            answers[role] = std::move(answer).value();
        }
        if (line.action == Action::Release && !answers.empty()) {
            break; // of a gateway it is ordered once
        }
    }
    if (answers.empty()) {
        return failed("the service does not run: " + reason, exitNotRunning);
    }
    if (line.action == Action::Status) {
        return showStatus(mergedStatus(answers, missing), line.json);
    }
    showAnswers(answers);
    for (const std::string &role : missing) {
        failed("the process with the role " + role + " does not run, and does not know of it: " + reason,
               exitNotRunning);
    }
    return missing.empty() ? 0 : exitNotRunning;
}

} // namespace quorvane::service
