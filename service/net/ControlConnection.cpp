#include "ControlConnection.h"

#include <utility>

namespace quorvane::service {

namespace {

constexpr std::size_t maximumCommandLength = 1 << 20;

} // namespace

ControlConnection::ControlConnection(ControlCommands &commands, LineServer::Send send)
    : m_commands(commands), m_send(std::move(send)) {}

bool ControlConnection::received(std::string_view bytes) {
    m_incompleteLine += bytes;
    for (auto end = m_incompleteLine.find('\n'); end != std::string::npos;
         end = m_incompleteLine.find('\n')) {
        m_commands.answer(std::string_view(m_incompleteLine).substr(0, end),
                          [send = m_send](const std::string &answer) { send(answer + '\n'); });
        m_incompleteLine.erase(0, end + 1);
    }
    return m_incompleteLine.size() <= maximumCommandLength;
}

} // namespace quorvane::service
