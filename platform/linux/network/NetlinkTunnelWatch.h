#pragma once

#include "NetworkChanges.h"
#include "platform/TunnelWatch.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdint>
#include <memory>
#include <vector>

namespace quorvane::platform {

/// TunnelWatch over process descriptors and the kernel's messages about the network.
class NetlinkTunnelWatch final : public TunnelWatch {
public:
    NetlinkTunnelWatch();

    ~NetlinkTunnelWatch() override { stop(); }

    NetlinkTunnelWatch(const NetlinkTunnelWatch &) = delete;
    NetlinkTunnelWatch &operator=(const NetlinkTunnelWatch &) = delete;

    void watch(const QSet<qint64> &processes, const Lost &lost) override;
    void stop() override;

private:
    void watchProcess(qint64 process);
    void watchNetwork();
    void checkNetwork();
    void report(TunnelLoss loss);

    /// The receiver of queued reports.
    QObject m_context;
    Lost m_lost;
    quint64 m_run = 0;
    std::vector<FileDescriptor> m_processes;
    NetworkChanges m_changes;
    std::uint32_t m_device = 0;
    TunnelLoss m_lossOfNetwork = TunnelLoss::DeviceGone;
    QTimer m_awaitsEnd;
    std::vector<std::unique_ptr<QSocketNotifier>> m_notifiers;
};

} // namespace quorvane::platform
