#pragma once

#include "common/Result.h"
#include "core/Config.h"

#include <optional>
#include <string>
#include <vector>

namespace quorvane::service {

/// The arguments of `setup`. What is absent stays as an earlier setup made it.
struct SetupArguments {
    std::optional<std::string> name;
    std::optional<std::string> addresses;
    std::optional<std::string> listen;
    std::optional<std::string> country;
    std::optional<std::string> countryName;
    std::optional<std::string> city;
    std::optional<std::string> locationCode;
    std::optional<std::string> dns;
    std::optional<std::string> tlsCertificate;
    std::optional<std::string> tlsKey;
};

enum class Action {
    Help,
    Run,
    CheckConfiguration,
    Setup,
    CheckService,
    Renew,
    Routes,
    Status,
    Drain,
    Revoke,
    Release
};

struct CommandLine {
    Action action = Action::Run;
    Role role = Role::All;
    std::string config = "/etc/quorvane-service/service.json";
    SetupArguments setup;
    bool json = false;     ///< of status
    bool off = false;      ///< of drain
    std::string revokedOf; ///< of revoke: the user or the address
    std::string released;  ///< of release: the gateway's name
};

/// Reads the arguments, without the program's name.
Result<CommandLine> parseCommandLine(const std::vector<std::string> &arguments);

/// How the program is used, with all options.
[[nodiscard]] std::string usageText();

} // namespace quorvane::service
