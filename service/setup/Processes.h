#pragma once

#include "common/Result.h"

#include <map>
#include <string>

namespace quorvane::service {

/// The runtime folders of a service's processes by their roles; one without a name when it is a single
/// process. Of the configuration file only the keys of the folders count: a service that runs may have one
/// that was made wrong since.
Result<std::map<std::string, std::string>> runtimeFolders(const std::string &configFile);

/// Whether every process runs and is ready.
Result<> allReadyIn(const std::map<std::string, std::string> &folders);

/// Has the processes that run take what has changed: a gateway without ending a session, and one that answers
/// requests by ending, after which its supervisor starts it again.
Result<> reloadAll(const std::map<std::string, std::string> &folders);

} // namespace quorvane::service
