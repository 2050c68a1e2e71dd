#include "ControlActions.h"

#include "ControlClient.h"
#include "FileStore.h"
#include "StatusText.h"
#include "core/Ipv4.h"

#include <cstdio>

namespace quorvane::service {

namespace {

using nlohmann::json;

constexpr int exitRefused = 1;
constexpr int exitUnreadable = 2;

int failed(const std::string &message, int status) {
    std::fprintf(stderr, "quorvane-service: %s\n", message.c_str());
    return status;
}

/// Of the configuration only this key counts: a service that runs may have one that was made wrong since.
Result<std::string> runtimeFolder(const std::string &path) {
    const auto text = FileStore::text(path);
    if (!text) {
        return Failure{text.error()};
    }
    const json config = json::parse(text.value(), nullptr, false);
    if (!config.is_object() || !config.contains("runtime_folder") ||
        !config.at("runtime_folder").is_string()) {
        return Failure{path + ": runtime_folder: is missing"};
    }
    return config.at("runtime_folder").get<std::string>();
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

/// What a command has done, without the field that says that it was done.
void showAnswer(json answer) {
    answer.erase("ok");
    std::printf("%s\n", answer.empty() ? "done" : answer.dump().c_str());
}

} // namespace

int runControlAction(const CommandLine &line) {
    const auto folder = runtimeFolder(line.config);
    if (!folder) {
        return failed(folder.error(), exitUnreadable);
    }
    auto client = ControlClient::connect(folder.value());
    if (!client) {
        return failed("the service does not run: " + client.error(), exitNotRunning);
    }
    ControlClient connected = std::move(client).value();
    const auto answer = connected.ask(commandOf(line));
    if (!answer) {
        return failed(answer.error(), exitNotRunning);
    }
    if (!answer.value().value("ok", false)) {
        return failed(answer.value().value("error", "the service refused the command"), exitRefused);
    }
    if (line.action == Action::Status) {
        return showStatus(answer.value(), line.json);
    }
    showAnswer(answer.value());
    return 0;
}

} // namespace quorvane::service
