#include "Metrics.h"

namespace quorvane::service {

namespace {

std::string head(const std::string &name, const std::string &type, const std::string &help) {
    return "# HELP quorvane_" + name + ' ' + help + "\n# TYPE quorvane_" + name + ' ' + type + '\n';
}

template <typename Number>
std::string sample(const std::string &name, Number value, const std::string &labels = {}) {
    return "quorvane_" + name + (labels.empty() ? "" : '{' + labels + '}') + ' ' + std::to_string(value) +
           '\n';
}

template <typename Number>
std::string single(const std::string &name, const std::string &type, const std::string &help, Number value) {
    return head(name, type, help) + sample(name, value);
}

} // namespace

std::string metricsPage(const Metrics &metrics) {
    std::string page = single("uptime_seconds", "gauge", "Time since the start.", metrics.uptime.count());
    page += head("server_ready", "gauge", "1 while an OpenVPN server accepts clients.");
    for (const ServerStatus &server : metrics.servers) {
        page += sample("server_ready", server.ready ? 1 : 0, "server=\"" + server.name + '"');
    }
    page += head("sessions", "gauge", "Sessions that are logged in.");
    for (const ServerStatus &server : metrics.servers) {
        page += sample("sessions", server.clients, "server=\"" + server.name + '"');
    }
    page += single("lends", "gauge", "Tunnel addresses that are lent an address now.",
                   metrics.facts.currentLends);
    page += single("lends_total", "counter", "Lends since the start.", metrics.facts.lends);
    page += single("failed_lends_total", "counter", "Logins refused because the gateway could not lend.",
                   metrics.facts.failedLends);
    page += head("refused_total", "counter", "What was refused because of a limit of the callers.");
    for (const auto &[limit, count] : metrics.facts.refused) {
        page += sample("refused_total", count, "limit=\"" + limit + '"');
    }
    page += head("refused_logins_total", "counter", "Logins refused since an OpenVPN server was started.");
    for (const ServerStatus &server : metrics.servers) {
        for (const auto &[reason, count] : server.refusedLogins) {
            page += sample("refused_logins_total", count,
                           "server=\"" + server.name + "\",reason=\"" + reason + '"');
        }
    }
    page += head("certificate_expiry_timestamp_seconds", "gauge", "End of validity of a certificate.");
    for (const auto &[key, expiry] : metrics.facts.certificates) {
        page += sample("certificate_expiry_timestamp_seconds", expiry, "key=\"" + key + '"');
    }
    if (metrics.etcdConnected) {
        page += single("etcd_connected", "gauge", "1 while what all nodes share is up to date.",
                       *metrics.etcdConnected ? 1 : 0);
    }
    return page;
}

} // namespace quorvane::service
