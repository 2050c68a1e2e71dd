#include "GatewayRegistration.h"

#include "ServiceLog.h"

namespace quorvane::service {

void GatewayRegistration::setValue(const std::string &value) {
    m_value = value;
    step();
}

void GatewayRegistration::step() {
    if (m_busy || !m_client.connected() || m_value.empty() || m_value == m_written) {
        return;
    }
    m_busy = true;
    if (m_lease == 0) {
        grant();
    } else {
        write();
    }
}

void GatewayRegistration::grant() {
    m_client.post("/v3/lease/grant", etcd::leaseRequest(m_seconds.count()),
                  [this](const Result<std::string> &answer) {
                      m_busy = false;
                      const auto lease = etcd::parseLease(answer.value());
                      if (!lease) {
                          writeLog("etcd: no lease: " + lease.error());
                          return; // the next keep() tries again
                      }
                      m_lease = lease.value().id;
                      step();
                  });
}

void GatewayRegistration::write() {
    m_client.post("/v3/kv/put", etcd::putRequest(m_key, m_value, m_lease),
                  [this, value = m_value](const Result<std::string> &answer) {
                      m_busy = false;
                      if (const auto written = etcd::parseDone(answer.value()); !written) {
                          writeLog("etcd: not registered: " + written.error());
                          m_lease = 0;
                          return;
                      }
                      m_written = value;
                      m_everWritten = true;
                      step();
                  });
}

void GatewayRegistration::keep() {
    if (m_lease == 0 || m_busy || !m_client.connected()) {
        step();
        return;
    }
    m_busy = true;
    m_client.post("/v3/lease/keepalive", etcd::leaseNumber(m_lease),
                  [this](const Result<std::string> &answer) {
                      m_busy = false;
                      const auto kept = etcd::parseKeptLease(answer.value());
                      if (!kept || kept.value().seconds == 0) {
                          m_lease = 0; // it has ended, and the key with it
                          m_written.clear();
                      }
                      step();
                  });
}

void GatewayRegistration::lost() {
    m_busy = false;
    m_written.clear(); // whether the last value was written is unknown
}

void GatewayRegistration::revoke(std::function<void()> done) {
    if (m_lease == 0 || !m_client.connected()) {
        done();
        return;
    }
    m_value.clear();
    m_client.post("/v3/lease/revoke", etcd::leaseNumber(m_lease),
                  [done = std::move(done)](const Result<std::string> &) { done(); });
}

} // namespace quorvane::service
