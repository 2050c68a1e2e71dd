#include "NetlinkTunnelWatch.h"

#include "RouteTable.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <net/if.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

namespace quorvane::platform {

namespace {

constexpr std::chrono::milliseconds endOfProcessFollows{60};

} // namespace

NetlinkTunnelWatch::NetlinkTunnelWatch() {
    m_awaitsEnd.setSingleShot(true);
    m_awaitsEnd.setTimerType(Qt::PreciseTimer);
    m_awaitsEnd.setInterval(endOfProcessFollows);
    QObject::connect(&m_awaitsEnd, &QTimer::timeout, &m_context, [this] { report(m_lossOfNetwork); });
}

void NetlinkTunnelWatch::watch(const QSet<qint64> &processes, const Lost &lost) {
    stop();
    m_lost = lost;
    for (const qint64 process : processes) {
        watchProcess(process);
    }
    watchNetwork();
}

void NetlinkTunnelWatch::stop() {
    ++m_run;
    m_lost = {};
    m_notifiers.clear();
    m_processes.clear();
    m_changes.close();
    m_device = 0;
    m_awaitsEnd.stop();
}

void NetlinkTunnelWatch::watchProcess(qint64 process) {
    FileDescriptor file(static_cast<int>(::syscall(SYS_pidfd_open, static_cast<pid_t>(process), 0)));
    if (!file.isOpen()) {
        if (errno == ESRCH) {
            report(TunnelLoss::ProcessEnded);
        }
        return;
    }
    auto notifier = std::make_unique<QSocketNotifier>(file.get(), QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, &m_context,
                     [this] { report(TunnelLoss::ProcessEnded); });
    m_notifiers.push_back(std::move(notifier));
    m_processes.push_back(std::move(file));
}

void NetlinkTunnelWatch::watchNetwork() {
    // Before the table is read, so that no change is missed.
    if (!m_changes.open()) {
        return;
    }
    m_device = RouteTable::carrierOfBothHalves().value_or(0);
    if (m_device == 0) {
        m_changes.close();
        return;
    }
    auto notifier = std::make_unique<QSocketNotifier>(m_changes.descriptor(), QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, &m_context, [this] { checkNetwork(); });
    m_notifiers.push_back(std::move(notifier));
}

void NetlinkTunnelWatch::checkNetwork() {
    m_changes.clear();
    const auto carrier = RouteTable::carrierOfBothHalves();
    if (!carrier || *carrier == m_device) {
        return;
    }
    // When OpenVPN ends, its routes and its device go a moment before the process. Its end says more, and is
    // reported if it comes in time.
    std::array<char, IF_NAMESIZE> name{};
    const bool exists = ::if_indextoname(m_device, name.data()) != nullptr;
    m_lossOfNetwork = exists ? TunnelLoss::RoutesChanged : TunnelLoss::DeviceGone;
    if (!m_awaitsEnd.isActive()) {
        m_awaitsEnd.start();
    }
}

void NetlinkTunnelWatch::report(TunnelLoss loss) {
    for (const auto &notifier : m_notifiers) {
        notifier->setEnabled(false); // not destroyed: one of them is being handled
    }
    m_awaitsEnd.stop();
    QMetaObject::invokeMethod(
        &m_context,
        [this, loss, run = m_run] {
            if (run == m_run && m_lost) {
                const Lost lost = std::exchange(m_lost, {});
                lost(loss);
            }
        },
        Qt::QueuedConnection);
}

} // namespace quorvane::platform
