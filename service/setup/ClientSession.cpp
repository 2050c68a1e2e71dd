#include "ClientSession.h"

#include <curl/curl.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvane::service {

namespace {

constexpr long requestSeconds = 10;
constexpr std::chrono::seconds tunnelTime{20};
constexpr std::size_t maximumAnswer = 4 << 20;
constexpr std::size_t shownOutput = 1500;
constexpr std::string_view lineMark = "<br />";

struct FreeCurl {
    void operator()(CURL *curl) const { curl_easy_cleanup(curl); }

    void operator()(curl_slist *list) const { curl_slist_free_all(list); }
};

std::size_t append(const char *data, std::size_t size, std::size_t count, void *target) {
    auto &answer = *static_cast<std::string *>(target);
    answer.append(data, size * count);
    return answer.size() > maximumAnswer ? 0 : size * count;
}

/// The values of all lines that begin with the key, one a line.
std::string valuesOf(const std::string &answer, const std::string &key) {
    std::string values;
    for (std::size_t begin = 0; begin < answer.size();) {
        const std::size_t end = std::min(answer.find(lineMark, begin), answer.size());
        if (answer.compare(begin, key.size(), key) == 0) {
            values += (values.empty() ? "" : "\n") +
                      answer.substr(begin + key.size(), end - std::min(end, begin + key.size()));
        }
        begin = end + lineMark.size();
    }
    return values;
}

} // namespace

Result<std::string> HttpsClient::get(const std::string &target) const {
    const std::unique_ptr<CURL, FreeCurl> curl(curl_easy_init());
    const std::string port = std::to_string(m_point.port);
    const std::unique_ptr<curl_slist, FreeCurl> resolve(
        curl_slist_append(nullptr, (m_point.host + ':' + port + ':' + m_point.address).c_str()));
    if (!curl || !resolve) {
        return Failure{"libcurl has no memory"};
    }
    std::string answer;
    std::array<char, CURL_ERROR_SIZE> error{};
    const std::string url = "https://" + m_point.host + ':' + port + target;
    curl_easy_setopt(curl.get(), CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl.get(), CURLOPT_RESOLVE, resolve.get());
    curl_easy_setopt(curl.get(), CURLOPT_CAINFO, m_point.authorities.c_str());
    curl_easy_setopt(curl.get(), CURLOPT_CAPATH, nullptr);
    curl_easy_setopt(curl.get(), CURLOPT_PROXY, "");
    curl_easy_setopt(curl.get(), CURLOPT_TIMEOUT, requestSeconds);
    curl_easy_setopt(curl.get(), CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl.get(), CURLOPT_ERRORBUFFER, error.data());
    curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, append);
    curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, &answer);
    const CURLcode done = curl_easy_perform(curl.get());
    if (done != CURLE_OK) {
        return Failure{error[0] == '\0' ? curl_easy_strerror(done) : error.data()};
    }
    long status = 0;
    curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &status);
    if (status != 200) {
        return Failure{"the service answered with status " + std::to_string(status)};
    }
    return answer;
}

bool ServerList::lends(Ipv4Address address) const {
    const std::string text = address.text();
    for (std::size_t found = servers.find(text); found != std::string::npos;
         found = servers.find(text, found + 1)) {
        const char before = found == 0 ? ' ' : servers[found - 1];
        const std::size_t end = found + text.size();
        if ((before == ',' || before == '|') &&
            (end == servers.size() || servers[end] == ',' || servers[end] == '\n')) {
            return true;
        }
    }
    return false;
}

std::optional<ServerList> readServerList(const std::string &answer) {
    ServerList list{valuesOf(answer, "VPNUser: "), valuesOf(answer, "VPNPass: "),
                    valuesOf(answer, "Server: ")};
    return list.user.empty() || list.password.empty() ? std::nullopt : std::optional(list);
}

Result<std::string> readConfiguration(const std::string &answer) {
    constexpr std::string_view key = "VPNConfig: ";
    if (answer.rfind(key, 0) != 0) {
        return Failure{"the service answered: " + answer.substr(0, 200)};
    }
    std::string text;
    for (std::size_t begin = key.size(); begin < answer.size();) {
        const std::size_t end = std::min(answer.find(lineMark, begin), answer.size());
        text += answer.substr(begin, end - begin) + '\n';
        begin = end + lineMark.size();
    }
    return text;
}

VpnClient::~VpnClient() {
    if (m_process > 0) {
        kill(m_process, SIGKILL);
        while (waitpid(m_process, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
}

Result<> VpnClient::start(const std::string &program, const std::string &configuration,
                          const std::string &credentials) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return Failure{std::string("cannot make a pipe: ") + std::strerror(errno)};
    }
    m_output.reset(ends[0]);
    const FileDescriptor input(ends[1]);
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, input.get(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, input.get(), STDERR_FILENO);
    std::array<std::string, 5> words = {program, "--config", configuration, "--auth-user-pass", credentials};
    std::array<char *, words.size() + 1> arguments{};
    for (std::size_t i = 0; i < words.size(); ++i) {
        arguments[i] = words[i].data();
    }
    std::string path = "PATH=/usr/sbin:/usr/bin:/sbin:/bin";
    const std::array<char *, 2> environment = {path.data(), nullptr};
    const int failed =
        posix_spawn(&m_process, program.c_str(), &actions, nullptr, arguments.data(), environment.data());
    posix_spawn_file_actions_destroy(&actions);
    if (failed != 0) {
        m_process = 0;
        return Failure{"cannot start " + program + ": " + std::strerror(failed)};
    }
    return awaitTunnel();
}

Result<> VpnClient::awaitTunnel() {
    const auto end = std::chrono::steady_clock::now() + tunnelTime;
    std::string text;
    std::array<char, 4096> part{};
    std::string why = "ended";
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        pollfd watched{m_output.get(), POLLIN, 0};
        const int ready = left.count() > 0 ? poll(&watched, 1, static_cast<int>(left.count())) : 0;
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        if (ready <= 0) {
            why = "has no tunnel after " + std::to_string(tunnelTime.count()) + " s";
            break;
        }
        const ssize_t count = read(m_output.get(), part.data(), part.size());
        if (count <= 0) {
            break;
        }
        text.append(part.data(), static_cast<std::size_t>(count));
        if (text.find("Initialization Sequence Completed") != std::string::npos) {
            return {};
        }
    }
    return Failure{"OpenVPN " + why + "; the end of its log:\n" +
                   text.substr(text.size() - std::min(text.size(), shownOutput))};
}

} // namespace quorvane::service
