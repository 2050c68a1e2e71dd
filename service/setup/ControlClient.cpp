#include "ControlClient.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>

namespace quorvane::service {

namespace {

constexpr std::size_t maximumAnswer = 1 << 24;
constexpr timeval timeLimit{10, 0};

Failure failure(const std::string &what) {
    return Failure{what + ": " + std::strerror(errno)};
}

} // namespace

Result<ControlClient> ControlClient::connect(const std::string &runtimeFolder) {
    const std::string path = runtimeFolder + "/control.sock";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof(address.sun_path)) {
        return Failure{"runtime_folder: its path is too long"};
    }
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!socket.isOpen() ||
        setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &timeLimit, sizeof(timeLimit)) != 0 ||
        ::connect(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof(address)) != 0) {
        return failure("cannot connect to " + path);
    }
    return ControlClient(std::move(socket));
}

Result<nlohmann::json> ControlClient::ask(const nlohmann::json &command) {
    const std::string line = command.dump() + '\n';
    if (send(m_socket.get(), line.data(), line.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(line.size())) {
        return failure("cannot send a command to the service");
    }
    std::string answer;
    std::array<char, 65536> part{};
    while (answer.find('\n') == std::string::npos) {
        const ssize_t count = recv(m_socket.get(), part.data(), part.size(), 0);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0 || answer.size() > maximumAnswer) {
            return count < 0 ? failure("the service does not answer")
                             : Failure{"the service's answer is not complete"};
        }
        answer.append(part.data(), static_cast<std::size_t>(count));
    }
    auto json = nlohmann::json::parse(answer, nullptr, false);
    return json.is_object() ? Result<nlohmann::json>(std::move(json))
                            : Failure{"the service's answer is not understood"};
}

} // namespace quorvane::service
