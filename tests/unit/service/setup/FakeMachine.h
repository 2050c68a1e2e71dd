#pragma once

#include "setup/Machine.h"

#include <map>

namespace quorvane::service::test {

/// Answers commands by a table, and keeps what ip was sent. A command that is not in the table fails.
class FakeMachine : public Machine {
public:
    Result<std::string> run(const std::vector<std::string> &command, const std::string &input) override {
        std::string line;
        for (const std::string &word : command) {
            line += (line.empty() ? "" : " ") + word;
        }
        if (line == "ip -batch -") {
            batch += input;
            return std::string();
        }
        const auto found = answers.find(line);
        return found == answers.end() ? Result<std::string>(Failure{line}) : found->second;
    }

    std::string batch;
    std::map<std::string, std::string> answers = {
        {"ip -json -4 address show",
         R"([{"ifname":"lo","addr_info":[{"local":"127.0.0.1","prefixlen":8}]},
             {"ifname":"wan","addr_info":[{"local":"198.51.100.10","prefixlen":24}]},{}])"},
        {"ip -json -4 route show default",
         R"([{"dst":"default","gateway":"198.51.100.1","dev":"wan"},{"dst":"default","dev":"lan"}])"},
        {"ip -json -4 route show table local proto 171", "[]"}};
};

} // namespace quorvane::service::test
