#pragma once

#include "EtcdConnection.h"
#include "core/BackOff.h"
#include "core/EtcdMessages.h"
#include "core/EtcdSettings.h"

#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace quorvane::service {

/// Keeps a connection to one of etcd's members, and follows all keys below the prefix: reads them, then
/// watches their changes. When anything fails, or when the watch does not report what has changed, it starts
/// again with the next member. Nothing blocks.
class EtcdClient {
public:
    struct Events {
        /// All keys there are. Called after each connection, before changed().
        std::function<void(const std::vector<etcd::Entry> &entries)> replaced;
        std::function<void(const std::vector<etcd::Event> &events)> changed;
        /// The first one after replaced(), each time.
        std::function<void()> connected;
        /// Requests under way are not answered any more. Also called for a failed attempt.
        std::function<void(const std::string &reason)> lost;
        /// The number of keys that are known.
        std::function<std::size_t()> keyCount;
    };

    EtcdClient(boost::asio::io_context &context, EtcdSettings settings,
               std::shared_ptr<boost::asio::ssl::context> tls, Events events);

    void start();
    /// Ends everything at once. No function is called after this.
    void stop();

    [[nodiscard]] bool connected() const { return m_connected; }

    /// The member that was last tried, as "address:port".
    [[nodiscard]] std::string endpoint() const;

    /// Only while connected. `answered` is not called when the connection is lost before the answer.
    void post(const std::string &path, const std::string &body, EtcdConnection::Answered answered);

    /// Asks whether there are changes that the watch has not reported. Call it regularly.
    void check();

private:
    void connect();
    void readAll();
    void beginWatch();
    void watchLine(const std::string &line);
    void checked(const Result<std::string> &answer);
    void fail(const std::string &reason);
    std::unique_ptr<EtcdConnection> makeConnection();

    boost::asio::io_context &m_context;
    EtcdSettings m_settings;
    std::shared_ptr<boost::asio::ssl::context> m_tls;
    Events m_events;
    boost::asio::steady_timer m_retry;
    BackOff m_backOff;
    std::chrono::steady_clock::time_point m_begun;
    std::size_t m_attempts = 0;
    std::unique_ptr<EtcdConnection> m_requests;
    std::unique_ptr<EtcdConnection> m_watch;
    std::int64_t m_revision = 0; ///< up to which changes are known
    bool m_connected = false;
    bool m_stopped = false;
    bool m_checking = false;
    bool m_behind = false; ///< the last check found a change that the watch has not reported since
};

} // namespace quorvane::service
