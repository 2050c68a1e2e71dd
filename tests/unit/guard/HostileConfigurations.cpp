#include "HostileConfigurations.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace quorvane::guard {

namespace {

std::string replaced(std::string text, const std::string &from, const std::string &to) {
    for (auto found = text.find(from); found != std::string::npos;
         found = text.find(from, found + to.size())) {
        text.replace(found, from.size(), to);
    }
    return text;
}

std::string withBytes(const std::string &line) {
    std::string bytes;
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (line.compare(at, 2, "\\x") == 0) {
            bytes += static_cast<char>(std::stoi(line.substr(at + 2, 2), nullptr, 16));
            at += 3;
        } else {
            bytes += line[at];
        }
    }
    return bytes;
}

std::string expanded(const std::string &line) {
    std::istringstream tokens(line);
    std::string command;
    std::size_t count = 0;
    if (!line.starts_with('%')) {
        return withBytes(line) + '\n';
    }
    if (!(tokens >> command >> count) || (command != "%repeat" && command != "%lines")) {
        throw std::runtime_error("malformed: " + line);
    }
    tokens.get();
    std::string text;
    std::getline(tokens, text);
    std::string result;
    for (; count > 0; --count) {
        result += withBytes(text) + (command == "%lines" ? "\n" : "");
    }
    return command == "%lines" ? result : result + '\n';
}

std::string valueOf(std::istream &file, const std::string &key) {
    std::string line;
    if (!std::getline(file, line) || !line.starts_with(key)) {
        throw std::runtime_error("\"" + key + "\" is missing before: " + line);
    }
    return line.substr(key.size());
}

} // namespace

std::string allowedConfiguration() {
    const std::ifstream file(CLIENT_CONFIGURATION);
    std::ostringstream text;
    text << file.rdbuf();
    if (!file || text.view().empty()) {
        throw std::runtime_error("cannot be read: " CLIENT_CONFIGURATION);
    }
    return text.str();
}

std::vector<HostileConfiguration> hostileConfigurations(const std::string &canary) {
    std::ifstream file(HOSTILE_CONFIGURATIONS);
    std::vector<HostileConfiguration> all;
    std::string line;
    while (std::getline(file, line)) {
        if (line.empty() || (all.empty() && line.starts_with('#'))) {
            continue;
        }
        if (line.starts_with("== ")) {
            const std::string name = line.substr(3);
            valueOf(file, "why: ");
            all.push_back({name, valueOf(file, "says: "), allowedConfiguration()});
        } else if (all.empty()) {
            throw std::runtime_error("before the first record: " + line);
        } else if (line.ends_with("\\e")) {
            all.back().text += replaced(withBytes(line.substr(0, line.size() - 2)), "CANARY", canary);
        } else {
            all.back().text += replaced(expanded(line), "CANARY", canary);
        }
    }
    return all;
}

} // namespace quorvane::guard
