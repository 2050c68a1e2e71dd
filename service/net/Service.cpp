#include <utility>

#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>

#include "Service.h"

#include "HttpsServer.h"
#include "core/AnnouncedRequests.h"
#include "core/Api.h"
#include "core/CredentialStore.h"
#include "core/RequestLog.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/stat.h>

namespace quorvane::service {

namespace {

namespace asio = boost::asio;

std::string readFile(const std::string &path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

Result<bool> prepareRuntimeFolder(const std::string &folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error || chmod(folder.c_str(), 0700) != 0) {
        return Failure{"runtime_folder: cannot use " + folder + ": " +
                       (error ? error.message() : std::strerror(errno))};
    }
    return true;
}

/// Everything that runs, put together. Members are destroyed from the last to the first.
class Service {
public:
    explicit Service(const Config &config)
        : m_config(config), m_credentials(config.credentialLifetime, config.grantLifetime,
                                          &std::chrono::steady_clock::now, systemRandomText),
          m_api(config, readFile(config.vpn.ca), m_credentials),
          m_log(config.strict ? &m_announced : nullptr, &std::chrono::system_clock::now),
          m_https(
              m_context, config, [this](const HttpRequest &request) { return m_api.answer(request); }, m_log),
          m_signals(m_context, SIGTERM, SIGINT) {}

    Result<bool> start() {
        if (auto folder = prepareRuntimeFolder(m_config.runtimeFolder); !folder) {
            return folder;
        }
        if (auto opened = m_log.open(m_config.requestLog); !opened) {
            return opened;
        }
        for (const Announcement &announcement : m_config.announced) {
            if (auto announced = m_announced.announce(announcement); !announced) {
                return announced;
            }
        }
        if (auto listening = m_https.start(); !listening) {
            return listening;
        }
        m_signals.async_wait([this](boost::system::error_code error, int) {
            if (!error) {
                stop();
            }
        });
        return writeAddresses();
    }

    void run() { m_context.run(); }

    /// Tells on standard error what was not expected.
    [[nodiscard]] int exitStatus() const {
        for (const std::string &target : m_announced.unexpected()) {
            std::fprintf(stderr, "quorvane-service: unexpected request: %s\n", jsonText(target).c_str());
        }
        return m_announced.unexpected().empty() ? ExitClean : ExitUnexpectedRequests;
    }

private:
    /// One line "address port" per listener; the file appears only when all of them are bound.
    Result<bool> writeAddresses() {
        const std::string path = m_config.runtimeFolder + "/listening";
        std::ofstream file(path + ".new", std::ios::trunc);
        for (const std::string &address : m_https.bound()) {
            file << address << '\n';
        }
        file.close();
        std::error_code error;
        std::filesystem::rename(path + ".new", path, error);
        if (!file || error) {
            return Failure{"runtime_folder: cannot write " + path};
        }
        return true;
    }

    void stop() {
        std::error_code ignored;
        std::filesystem::remove(m_config.runtimeFolder + "/listening", ignored);
        m_https.stop();
    }

    const Config &m_config;
    asio::io_context m_context{1};
    CredentialStore m_credentials;
    Api m_api;
    AnnouncedRequests m_announced;
    RequestLog m_log;
    HttpsServer m_https;
    asio::signal_set m_signals;
};

} // namespace

int runService(const Config &config) {
    Service service(config);
    if (const auto started = service.start(); !started) {
        std::fprintf(stderr, "quorvane-service: %s\n", started.error().c_str());
        return ExitFailed;
    }
    service.run();
    return service.exitStatus();
}

} // namespace quorvane::service
