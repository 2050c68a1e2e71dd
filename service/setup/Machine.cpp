#include "Machine.h"

#include "common/FileDescriptor.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <spawn.h>
#include <sstream>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvane::service {

namespace {

using nlohmann::json;

constexpr std::size_t maximumOutput = 16 << 20;

constexpr const char *folders = "/usr/sbin:/usr/bin:/sbin:/bin";

/// The program in the administrator's folders, which the path of a root shell may lack.
std::string programPath(const std::string &name) {
    std::istringstream list(folders);
    for (std::string folder; name.find('/') == std::string::npos && std::getline(list, folder, ':');) {
        std::string path = folder + '/' + name;
        if (access(path.c_str(), X_OK) == 0) {
            return path;
        }
    }
    return name;
}

/// The content of a file in memory, from its beginning.
std::string contentOf(const FileDescriptor &file) {
    std::string text;
    std::array<char, 65536> part{};
    off_t offset = 0;
    ssize_t count = 0;
    while (text.size() < maximumOutput && (count = pread(file.get(), part.data(), part.size(), offset)) > 0) {
        text.append(part.data(), static_cast<std::size_t>(count));
        offset += count;
    }
    return text;
}

/// Actions on the descriptors of a program that is started.
class Redirections {
public:
    Redirections() { posix_spawn_file_actions_init(&m_actions); }

    ~Redirections() { posix_spawn_file_actions_destroy(&m_actions); }

    Redirections(const Redirections &) = delete;
    Redirections &operator=(const Redirections &) = delete;

    void add(const FileDescriptor &file, int number) {
        posix_spawn_file_actions_adddup2(&m_actions, file.get(), number);
    }

    [[nodiscard]] const posix_spawn_file_actions_t *get() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions{};
};

/// The signals of a program that is started are those of a program from a shell.
class Attributes {
public:
    Attributes() {
        posix_spawnattr_init(&m_attributes);
        sigset_t signals;
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&m_attributes, &signals);
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&m_attributes, &signals);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }

    ~Attributes() { posix_spawnattr_destroy(&m_attributes); }

    Attributes(const Attributes &) = delete;
    Attributes &operator=(const Attributes &) = delete;

    [[nodiscard]] const posix_spawnattr_t *get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes{};
};

} // namespace

Result<std::string> LocalMachine::run(const std::vector<std::string> &command, const std::string &input) {
    const FileDescriptor in(memfd_create("input", MFD_CLOEXEC));
    const FileDescriptor out(memfd_create("output", MFD_CLOEXEC));
    const FileDescriptor error(memfd_create("error", MFD_CLOEXEC));
    if (!in.isOpen() || !out.isOpen() || !error.isOpen() ||
        pwrite(in.get(), input.data(), input.size(), 0) != static_cast<ssize_t>(input.size())) {
        return Failure{std::string("cannot make a file in memory: ") + std::strerror(errno)};
    }
    Redirections redirections;
    redirections.add(in, STDIN_FILENO);
    redirections.add(out, STDOUT_FILENO);
    redirections.add(error, STDERR_FILENO);
    std::vector<std::string> words = command;
    std::vector<char *> arguments;
    for (std::string &word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    std::string path = std::string("PATH=") + folders;
    std::string language = "LC_ALL=C.UTF-8";
    const std::array<char *, 3> environment = {path.data(), language.data(), nullptr};
    const Attributes attributes;
    pid_t process = 0;
    const int failed = posix_spawn(&process, programPath(command.front()).c_str(), redirections.get(),
                                   attributes.get(), arguments.data(), environment.data());
    if (failed != 0) {
        return Failure{"cannot start " + command.front() + ": " + std::strerror(failed)};
    }
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::string line;
        for (const std::string &word : command) {
            line += (line.empty() ? "" : " ") + word;
        }
        return Failure{line + ": " + contentOf(error) + contentOf(out)};
    }
    return contentOf(out);
}

Ipv4Network OwnAddress::network() const {
    Ipv4Network network{{}, prefix};
    network.base.value = address.value & network.mask().value;
    return network;
}

bool MachineNetwork::owns(Ipv4Address address) const {
    return std::any_of(addresses.begin(), addresses.end(),
                       [address](const OwnAddress &own) { return own.address == address; });
}

std::optional<Ipv4Address> MachineNetwork::publicAddress() const {
    const auto found = std::find_if(addresses.begin(), addresses.end(),
                                    [this](const OwnAddress &own) { return own.device == device; });
    return found == addresses.end() ? std::nullopt : std::optional(found->address);
}

Result<MachineNetwork> MachineNetwork::read(Machine &machine) {
    const auto links = machine.run({"ip", "-json", "-4", "address", "show"});
    const auto routes = machine.run({"ip", "-json", "-4", "route", "show", "default"});
    if (!links || !routes) {
        return Failure{links ? routes.error() : links.error()};
    }
    try {
        MachineNetwork network;
        for (const json &link : json::parse(links.value())) {
            for (const json &entry : link.value("addr_info", json::array())) {
                const auto address = Ipv4Address::parse(entry.at("local").get<std::string>());
                if (address) {
                    network.addresses.push_back(
                        {*address, entry.at("prefixlen").get<unsigned>(), link.at("ifname")});
                }
            }
        }
        for (const json &route : json::parse(routes.value())) {
            if (network.device.empty()) {
                network.device = route.value("dev", "");
                network.nextHop = Ipv4Address::parse(route.value("gateway", ""));
            }
        }
        return network;
    } catch (const json::exception &error) {
        return Failure{std::string("ip: its answer is not understood: ") + error.what()};
    }
}

} // namespace quorvane::service
