#include <utility>

#include <boost/asio/io_context.hpp>

#include "EtcdClient.h"

#include <algorithm>

namespace quorvane::service {

namespace asio = boost::asio;

namespace {

constexpr std::chrono::milliseconds firstPause{200};
/// Shorter than a lease: a gateway keeps its registration when etcd is back.
constexpr std::chrono::milliseconds longestPause{1000};
constexpr std::chrono::seconds stableTime{10};

} // namespace

EtcdClient::EtcdClient(asio::io_context &context, EtcdSettings settings,
                       std::shared_ptr<asio::ssl::context> tls, Events events)
    : m_context(context), m_settings(std::move(settings)), m_tls(std::move(tls)), m_events(std::move(events)),
      m_retry(context), m_backOff(firstPause, longestPause, stableTime) {}

void EtcdClient::start() {
    connect();
}

void EtcdClient::stop() {
    m_stopped = true;
    m_connected = false;
    m_retry.cancel();
    m_requests.reset();
    m_watch.reset();
}

std::string EtcdClient::endpoint() const {
    const auto &shown = m_settings.endpoints.at(std::max<std::size_t>(m_attempts, 1) - 1);
    return shown.address + ':' + std::to_string(shown.port);
}

std::unique_ptr<EtcdConnection> EtcdClient::makeConnection() {
    // Two tries fit into the time of a lease.
    const auto deadline = std::chrono::milliseconds(m_settings.lease) / 2;
    return std::make_unique<EtcdConnection>(m_context, m_tls, m_settings.endpoints.at(m_attempts - 1),
                                            deadline);
}

void EtcdClient::connect() {
    m_attempts = m_attempts % m_settings.endpoints.size() + 1;
    m_begun = std::chrono::steady_clock::now();
    m_behind = false;
    m_checking = false;
    m_requests = makeConnection();
    m_requests->open([this](const Result<> &opened) {
        if (opened) {
            readAll();
        } else {
            fail(opened.error());
        }
    });
}

void EtcdClient::readAll() {
    m_requests->post("/v3/kv/range", etcd::rangeRequest(m_settings.prefix),
                     [this](const Result<std::string> &answer) {
                         const auto range = answer ? etcd::parseRange(answer.value())
                                                   : Result<etcd::RangeAnswer>(Failure{answer.error()});
                         if (!range) {
                             fail(range.error());
                             return;
                         }
                         m_revision = range.value().revision;
                         m_events.replaced(range.value().entries);
                         beginWatch();
                     });
}

void EtcdClient::beginWatch() {
    m_watch = makeConnection();
    m_watch->open([this](const Result<> &opened) {
        if (!opened) {
            fail(opened.error());
            return;
        }
        m_watch->stream(
            "/v3/watch", etcd::watchRequest(m_settings.prefix, m_revision + 1),
            [this](const std::string &line) { watchLine(line); },
            [this](const std::string &reason) { fail("the watch ended: " + reason); });
    });
}

void EtcdClient::watchLine(const std::string &line) {
    const auto read = etcd::parseWatch(line);
    if (!read || read.value().cancelled) {
        fail(read ? "the watch was cancelled" : read.error());
        return;
    }
    const etcd::WatchAnswer &answer = read.value();
    for (const etcd::Event &event : answer.events) {
        m_revision = std::max(m_revision, event.entry.modified);
    }
    if (!answer.events.empty()) {
        m_behind = false;
        m_events.changed(answer.events);
    }
    if (answer.created && !m_connected) {
        m_connected = true;
        m_events.connected();
    }
}

void EtcdClient::post(const std::string &path, const std::string &body, EtcdConnection::Answered answered) {
    m_requests->post(path, body, [this, answered = std::move(answered)](const Result<std::string> &answer) {
        if (answer) {
            answered(answer);
        } else {
            fail(answer.error());
        }
    });
}

void EtcdClient::check() {
    if (m_connected && !std::exchange(m_checking, true)) {
        post("/v3/kv/range", etcd::changesRequest(m_settings.prefix, m_revision),
             [this](const Result<std::string> &answer) { checked(answer); });
    }
}

void EtcdClient::checked(const Result<std::string> &answer) {
    m_checking = false;
    const auto range = etcd::parseRange(answer.value());
    if (!range) {
        fail(range.error());
        return;
    }
    const auto &entries = range.value().entries;
    const bool missed =
        std::any_of(entries.begin(), entries.end(),
                    [this](const etcd::Entry &entry) { return entry.modified > m_revision; }) ||
        range.value().count != static_cast<std::int64_t>(m_events.keyCount());
    // The watch may only be later than the answer; at the next check it is silent.
    if (missed && m_behind) {
        fail("the watch is silent");
        return;
    }
    m_behind = missed;
}

void EtcdClient::fail(const std::string &reason) {
    if (m_stopped) {
        return;
    }
    m_connected = false;
    m_requests.reset();
    m_watch.reset();
    m_retry.expires_after(m_backOff.next(
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - m_begun)));
    m_retry.async_wait([this](boost::system::error_code cancelled) {
        if (!cancelled && !m_stopped) {
            connect();
        }
    });
    m_events.lost(reason);
}

} // namespace quorvane::service
