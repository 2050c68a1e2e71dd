#include "NetworkLock.h"

#include "ScriptUtil.h"
#include "frontend/support/EventQueue.h"
#include "frontend/support/Preferences.h"
#include "platform/NetworkLock.h"
#include "platform/Platform.h"

#include <QCoreApplication>

#include <atomic>
#include <mutex>

namespace quorvane {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(quorvane::NetworkLock)

public:
    static QString noAddress() { return tr("The address of the Quorvane server was not found."); }

    static QString noReason() { return tr("The administrator's name and password are not known."); }
};

platform::NetworkLock &lock() {
    return *platform::Platform::current().networkLock;
}

/// Blocks. Null on success.
QString run(const QStringList &words) {
    ScriptUtil script;
    QString output;
    QString problem;
    if (script.runProcessAsAdministrator(QStringLiteral("networklock"), words, output, problem)) {
        return {};
    }
    return problem.isEmpty() ? Texts::noReason() : problem;
}

QString closeNow(bool reachesHome) {
    lock().keepServiceAddresses();
    const QStringList addresses = lock().serviceAddresses();
    if (addresses.isEmpty()) {
        return Texts::noAddress();
    }
    return run(QStringList{QStringLiteral("-close"),
                           reachesHome ? QStringLiteral("home") : QStringLiteral("alone")} +
               addresses);
}

} // namespace

/// One script runs at a time, and none that is older than the last request.
struct NetworkLock::Order {
    std::mutex mutex;
    std::atomic<quint64> newest = 0;
    std::atomic<quint64> ended = 0;

    quint64 begin() { return ++newest; }
};

NetworkLock::NetworkLock() : m_order(std::make_shared<Order>()) {}

bool NetworkLock::mayBeClosed() const {
    return m_order->ended != m_order->newest || isClosed();
}

bool NetworkLock::isWanted() {
    return Preferences::boolean(Preference::NetworkLock);
}

bool NetworkLock::isClosed() {
    return lock().isClosed();
}

Task<QString> NetworkLock::close(EventQueue &events) {
    const bool reachesHome = !Preferences::boolean(Preference::LockHomeNetwork);
    auto closing = events.background([order = m_order, number = m_order->begin(), reachesHome] {
        const std::lock_guard running(order->mutex);
        const QString problem = number == order->newest ? closeNow(reachesHome) : QString();
        order->ended = number;
        return problem;
    });
    co_return co_await closing;
}

Task<QString> NetworkLock::lift(EventQueue &events) {
    auto lifting = events.background([order = m_order, number = m_order->begin()] {
        const std::lock_guard running(order->mutex);
        const QString problem = run({QStringLiteral("-lift")});
        order->ended = number;
        return problem;
    });
    co_return co_await lifting;
}

} // namespace quorvane
