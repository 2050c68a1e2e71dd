#include "Processes.h"

#include "ControlClient.h"
#include "FileStore.h"

namespace quorvane::service {

using nlohmann::json;

Result<std::map<std::string, std::string>> runtimeFolders(const std::string &configFile) {
    const auto text = FileStore::text(configFile);
    if (!text) {
        return Failure{text.error()};
    }
    const json config = json::parse(text.value(), nullptr, false);
    const std::string key = "runtime_folder";
    if (!config.is_object() || !config.contains(key) || !config.at(key).is_string()) {
        return Failure{configFile + ": runtime_folder: is missing"};
    }
    const auto common = config.at(key).get<std::string>();
    // Two processes cannot share a runtime folder, so they are two when a role has its own.
    std::map<std::string, std::string> folders{{"api", common}, {"gateway", common}};
    const json roles = config.value("roles", json::object());
    for (auto &[role, folder] : folders) {
        const json changes = roles.is_object() ? roles.value(role, json::object()) : json::object();
        if (changes.is_object() && changes.contains(key) && changes.at(key).is_string()) {
            folder = changes.at(key).get<std::string>();
        }
    }
    if (folders.at("api") == folders.at("gateway")) {
        return std::map<std::string, std::string>{{"", folders.at("api")}};
    }
    return folders;
}

Result<> allReadyIn(const std::map<std::string, std::string> &folders) {
    for (const auto &[role, folder] : folders) {
        auto connected = ControlClient::connect(folder);
        if (!connected) {
            return Failure{connected.error()};
        }
        ControlClient control = std::move(connected).value();
        const auto status = control.ask({{"command", "status"}});
        if (!status) {
            return Failure{status.error()};
        }
        if (!status.value().value("ready", false)) {
            return Failure{"the service runs, but its VPN servers are not ready: " + status.value().dump()};
        }
    }
    return {};
}

Result<> reloadAll(const std::map<std::string, std::string> &folders) {
    for (const auto &[role, folder] : folders) {
        auto connected = ControlClient::connect(folder);
        if (!connected) {
            continue;
        }
        ControlClient control = std::move(connected).value();
        if (const auto answer = control.ask({{"command", "reload"}}); !answer) {
            return Failure{answer.error()};
        }
    }
    return {};
}

} // namespace quorvane::service
