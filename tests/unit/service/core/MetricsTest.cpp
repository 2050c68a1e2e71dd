#include "core/Metrics.h"
#include "core/CertificateExpiry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

TEST(Metrics, ByteForByte) {
    Metrics metrics;
    metrics.uptime = std::chrono::seconds(61);
    metrics.servers = {{"udp", true, true, 3, {{"unknown user", 7}}}, {"tcp", true, false, 0, {}}};
    metrics.facts.lends = 10;
    metrics.facts.failedLends = 1;
    metrics.facts.currentLends = 3;
    metrics.facts.refused = {{"requests", 5}, {"connections at once", 0}};
    metrics.facts.certificates = {{"tls.certificate", 1800000000}};
    EXPECT_EQ(metricsPage(metrics),
              "# HELP quorvane_uptime_seconds Time since the start.\n"
              "# TYPE quorvane_uptime_seconds gauge\n"
              "quorvane_uptime_seconds 61\n"
              "# HELP quorvane_server_ready 1 while an OpenVPN server accepts clients.\n"
              "# TYPE quorvane_server_ready gauge\n"
              "quorvane_server_ready{server=\"udp\"} 1\n"
              "quorvane_server_ready{server=\"tcp\"} 0\n"
              "# HELP quorvane_sessions Sessions that are logged in.\n"
              "# TYPE quorvane_sessions gauge\n"
              "quorvane_sessions{server=\"udp\"} 3\n"
              "quorvane_sessions{server=\"tcp\"} 0\n"
              "# HELP quorvane_lends Tunnel addresses that are lent an address now.\n"
              "# TYPE quorvane_lends gauge\n"
              "quorvane_lends 3\n"
              "# HELP quorvane_lends_total Lends since the start.\n"
              "# TYPE quorvane_lends_total counter\n"
              "quorvane_lends_total 10\n"
              "# HELP quorvane_failed_lends_total Logins refused because the gateway could not lend.\n"
              "# TYPE quorvane_failed_lends_total counter\n"
              "quorvane_failed_lends_total 1\n"
              "# HELP quorvane_refused_total What was refused because of a limit of the callers.\n"
              "# TYPE quorvane_refused_total counter\n"
              "quorvane_refused_total{limit=\"requests\"} 5\n"
              "quorvane_refused_total{limit=\"connections at once\"} 0\n"
              "# HELP quorvane_refused_logins_total Logins refused since an OpenVPN server was started.\n"
              "# TYPE quorvane_refused_logins_total counter\n"
              "quorvane_refused_logins_total{server=\"udp\",reason=\"unknown user\"} 7\n"
              "# HELP quorvane_certificate_expiry_timestamp_seconds End of validity of a certificate.\n"
              "# TYPE quorvane_certificate_expiry_timestamp_seconds gauge\n"
              "quorvane_certificate_expiry_timestamp_seconds{key=\"tls.certificate\"} 1800000000\n");
}

TEST(Metrics, ReportsWhetherEtcdIsConnected) {
    Metrics metrics;
    EXPECT_EQ(metricsPage(metrics).find("etcd"), std::string::npos);
    for (const bool connected : {false, true}) {
        metrics.etcdConnected = connected;
        const std::string line = std::string("\nquorvane_etcd_connected ") + (connected ? "1" : "0") + '\n';
        EXPECT_NE(metricsPage(metrics).find(line), std::string::npos);
    }
}

TEST(CertificateExpiry, IsNotKnownWithoutACertificate) {
    EXPECT_FALSE(certificateExpiry("/nonexistent"));
    EXPECT_FALSE(certificateExpiry("/dev/null"));
}

} // namespace

} // namespace quorvane::service
