#include "OpenVpnRun.h"

#include "Fuzz.h"
#include "OpenVpnRecorder.h"
#include "UnprintedOptions.h"
#include "guard/Files.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <span>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using quorvane::FileDescriptor;
using quorvane::guard::sealedCopy;

namespace {

/// Of the descriptors, so that all outputs contain the same paths.
constexpr int inheritedNumber = 200;
constexpr std::string_view recordedBegin = "recorded ";

const std::string &ownFolder() {
    static const std::string folder = [] {
        const char *parent = getenv("TMPDIR");
        std::string made = std::string(parent != nullptr ? parent : "/tmp") + "/reads-as-guard-XXXXXX";
        must(mkdtemp(made.data()) != nullptr, "a folder can be made");
        return made;
    }();
    return folder;
}

/// OpenVPN under a name of its own, so that a search for processes named openvpn does not find these.
const char *renamedOpenVpn() {
    static const std::string link = [] {
        std::string made = ownFolder() + "/vpnread";
        must(symlink("/usr/sbin/openvpn", made.c_str()) == 0, "a link can be made");
        return made;
    }();
    return link.c_str();
}

const std::string &managementPath() {
    static const std::string path = ownFolder() + "/management";
    return path;
}

const std::string renegotiateBytes = std::to_string(recorder::renegotiateBytes);
const std::string renegotiatePackets = std::to_string(recorder::renegotiatePackets);
const std::string routeDelay = std::to_string(recorder::routeDelay);
const std::string routeDelayWindow = std::to_string(recorder::routeDelayWindow);

std::vector<const char *> argumentsFor(Probe probe) {
    // The level before the configuration applies when that has none of its own.
    std::vector<const char *> arguments{"openvpn",
                                        "--verb",
                                        "4",
                                        "--config",
                                        "/proc/self/fd/200",
                                        "--auth-user-pass",
                                        "/proc/self/fd/201",
                                        "--script-security",
                                        "0"};
    const auto add = [&arguments](std::initializer_list<const char *> more) {
        arguments.insert(arguments.end(), more);
    };
    switch (probe) {
    case Probe::Settings:
        add({"--plugin", OPENVPN_RECORDER});
        add({"--reneg-bytes", renegotiateBytes.c_str(), "--reneg-pkts", renegotiatePackets.c_str()});
        add({"--route-delay", routeDelay.c_str(), routeDelayWindow.c_str()});
        // A configuration may shorten the log; all settings are needed here.
        add({"--verb", "4", "--mute", "0", "--management", "/nonexistent/none", "unix"});
        break;
    case Probe::Retries:
        add({"--plugin", OPENVPN_RECORDER, "--management", "/nonexistent/none", "unix"});
        break;
    case Probe::Calls:
    case Probe::OwnVerbosity:
        add({"--management", "/nonexistent/none", "unix"});
        break;
    case Probe::Answers:
        add({"--askpass", "/proc/self/fd/202", "--dev", "null", "--nobind", "--user", "no-such-user"});
        add({"--management", managementPath().c_str(), "unix"});
        add({"--management-client", "--management-hold"});
        break;
    case Probe::Keys:
        add({"--verb", "7", "--dev", "null", "--nobind", "--user", "no-such-user"});
        break;
    }
    arguments.push_back(nullptr);
    return arguments;
}

pid_t startOpenVpn(Probe probe, std::span<const FileDescriptor> inherited, int output) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, output, 1);
    posix_spawn_file_actions_adddup2(&actions, output, 2);
    for (int number = inheritedNumber; const FileDescriptor &descriptor : inherited) {
        posix_spawn_file_actions_adddup2(&actions, descriptor.get(), number++);
    }
    auto arguments = argumentsFor(probe);
    std::string recorder = "LD_PRELOAD=" OPENVPN_RECORDER;
    std::string call = "RECORDED_CALL=" + (probe == Probe::Settings ? callThatCopiesBlocks() : "");
    std::array<char *, 3> environment{nullptr, nullptr, nullptr};
    if (probe == Probe::Settings || probe == Probe::Calls) {
        environment[0] = recorder.data();
    }
    if (probe == Probe::Settings) {
        environment[1] = call.data();
    }
    pid_t pid = 0;
    must(posix_spawn(&pid, renamedOpenVpn(), &actions, nullptr, const_cast<char **>(arguments.data()),
                     environment.data()) == 0,
         "OpenVPN can be started");
    posix_spawn_file_actions_destroy(&actions);
    return pid;
}

/// Removes the characters of a set that follow each occurrence of `begin`.
void eraseBehind(std::string &text, std::string_view begin, const char *characters) {
    for (auto at = text.find(begin); at != std::string::npos; at = text.find(begin, at)) {
        at += begin.size();
        text.erase(at, std::min(text.find_first_not_of(characters, at), text.size()) - at);
    }
}

/// The output without the time of each line, where in the configuration an error was found, and addresses in
/// memory. The recorder's lines are apart.
void readLines(std::string_view output, OpenVpnOutput &result) {
    static constexpr std::size_t timeLength = 20;
    while (!output.empty()) {
        std::string line(output.substr(0, output.find('\n')));
        output.remove_prefix(std::min(line.size() + 1, output.size()));
        if (line.starts_with(recordedBegin)) {
            result.recorded.push_back(line.substr(recordedBegin.size()));
            continue;
        }
        if (line.size() >= timeLength && line[4] == '-' && line[timeLength - 1] == ' ') {
            line.erase(0, timeLength);
        }
        if (line.starts_with("us=")) {
            line.erase(0, line.find(' ') + 1);
        }
        eraseBehind(line, "fd/200:", "0123456789");
        eraseBehind(line, "=0x", "0123456789abcdef");
        result.settings += line + '\n';
    }
}

/// Appends what can be read to a text. False at the end. The fuzzer's timer interrupts calls.
bool readMore(const FileDescriptor &from, std::string &text) {
    std::array<char, 4096> buffer{};
    const ssize_t count = TEMP_FAILURE_RETRY(read(from.get(), buffer.data(), buffer.size()));
    must(count >= 0, "the output can be read to its end");
    text.append(buffer.data(), static_cast<std::size_t>(count));
    return count > 0;
}

/// OpenVPN connects to this socket, waits for questions, and ends when they are answered.
class Management {
public:
    Management() : m_listening(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{AF_UNIX, {}};
        must(managementPath().size() < sizeof address.sun_path, "the path of a socket is short");
        managementPath().copy(address.sun_path, sizeof address.sun_path - 1);
        unlink(managementPath().c_str());
        must(bind(m_listening.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
                 listen(m_listening.get(), 1) == 0,
             "OpenVPN can connect to a socket");
    }

    /// Reads the output to its end, and puts the questions when OpenVPN connects.
    void readWhole(const FileDescriptor &output, std::string &text) {
        std::array<pollfd, 2> watched{{{output.get(), POLLIN, 0}, {m_listening.get(), POLLIN, 0}}};
        while (true) {
            must(TEMP_FAILURE_RETRY(poll(watched.data(), watched.size(), -1)) > 0, "outputs can be awaited");
            if (watched[1].revents != 0) {
                ask();
                watched[1].fd = -1;
            }
            if (watched[0].revents != 0 && !readMore(output, text)) {
                return;
            }
        }
    }

    /// What OpenVPN has answered until its end.
    [[nodiscard]] std::string answers() const {
        std::string text;
        while (m_connection.isOpen() && readMore(m_connection, text)) {
        }
        return text;
    }

private:
    void ask() {
        static constexpr std::string_view questions = "auth-retry\nhold release\n";
        m_connection = FileDescriptor(accept4(m_listening.get(), nullptr, nullptr, SOCK_CLOEXEC));
        must(write(m_connection.get(), questions.data(), questions.size()) ==
                 static_cast<ssize_t>(questions.size()),
             "OpenVPN can be asked");
    }

    FileDescriptor m_listening;
    FileDescriptor m_connection;
};

} // namespace

OpenVpnOutput outputOf(std::string_view configuration, Probe probe) {
    std::vector<FileDescriptor> inherited;
    for (const auto text : {configuration, std::string_view("user\npassword\n"), keyPassword}) {
        auto copy = sealedCopy("input", text);
        must(copy.ok(), "descriptors can be made");
        inherited.push_back(std::move(copy).value());
    }
    std::array<int, 2> pipe{};
    must(pipe2(pipe.data(), O_CLOEXEC) == 0, "a pipe can be made");
    FileDescriptor output(pipe[0]);
    FileDescriptor childOutput(pipe[1]);
    Management management;
    const pid_t pid = startOpenVpn(probe, inherited, childOutput.get());
    childOutput.reset();
    OpenVpnOutput result;
    std::string text;
    management.readWhole(output, text);
    must(TEMP_FAILURE_RETRY(waitpid(pid, &result.status, 0)) == pid, "the end of OpenVPN can be awaited");
    readLines(text, result);
    result.answers = management.answers();
    return result;
}

OpenVpnReadings readingsOf(const std::string &text, const std::string &copy, Probe probe) {
    OpenVpnReadings readings{outputOf(text, probe), outputOf(copy, probe)};
    const OpenVpnOutput &original = readings.original;
    const OpenVpnOutput &copied = readings.copy;
    if (original.settings != copied.settings || original.answers != copied.answers) {
        std::fprintf(stderr, "--- the original\n%s%s\n--- the copy\n%s%s\n", original.settings.c_str(),
                     original.answers.c_str(), copied.settings.c_str(), copied.answers.c_str());
    }
    must(original.status == copied.status, "OpenVPN ends with the same status for the original and the copy");
    must(original.settings == copied.settings && original.answers == copied.answers,
         "OpenVPN reads the original as the guard did");
    return readings;
}
