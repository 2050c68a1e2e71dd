#pragma once

#include "LineServer.h"
#include "core/ControlCommands.h"

#include <string>
#include <string_view>

namespace quorvane::service {

/// One connection of the control socket: its lines are commands.
class ControlConnection : public LineServer::Client {
public:
    /// `commands` is not owned.
    ControlConnection(ControlCommands &commands, LineServer::Send send);

    bool received(std::string_view bytes) override;

private:
    ControlCommands &m_commands;
    LineServer::Send m_send;
    std::string m_incompleteLine;
};

} // namespace quorvane::service
