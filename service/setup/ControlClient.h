#pragma once

#include "common/FileDescriptor.h"
#include "common/Result.h"

#include <nlohmann/json.hpp>

#include <string>

#include <sys/types.h>

namespace quorvane::service {

/// A connection to the control socket of a running service.
class ControlClient {
public:
    /// Fails when no service runs.
    static Result<ControlClient> connect(const std::string &runtimeFolder);

    /// Sends one command and returns the answer, an object.
    Result<nlohmann::json> ask(const nlohmann::json &command);

private:
    explicit ControlClient(FileDescriptor socket) : m_socket(std::move(socket)) {}

    FileDescriptor m_socket;
};

} // namespace quorvane::service
