#pragma once

#include "QrvVpnData.h"

#include <QObject>

#include <atomic>
#include <memory>

namespace quorvane {

class QrvAPI;

/// Asks the service for the OpenVPN configuration of one server group and stores it: the configuration
/// file, a line in the session log, the path and the one-time pair in the preferences.
///
/// start() and the signals belong to the main thread; the request and the writing run as one task on the
/// global background queue. There is no lock: the caller keeps its buttons disabled meanwhile. Where a
/// request is sent all the same, the last one counts: of one that was superseded nothing is stored or told.
class ConfigurationFetch final : public QObject {
    Q_OBJECT

public:
    /// The API client is not owned and must outlive this.
    explicit ConfigurationFetch(QrvAPI &api, QObject *parent = nullptr);

    /// Sends the request for one address of the group, picked at random among those still usable (there
    /// must be one). The title names the location in the session log; the transport is the label of the
    /// chosen segment. prepared() is sent before the task is handed over.
    void start(const QString &title, const QrvVpnDataPointer &data, const QString &transport);

Q_SIGNALS:
    /// The request is built and about to be sent.
    void prepared();
    /// Everything is stored; the tunnel can start.
    void stored();
    /// The task is through after stored().
    void finished();
    /// The service refused, did not answer, or its answer held no configuration.
    void failed();

private:
    QrvAPI &m_api;
    /// The number of the last request, shared with the tasks that are on their way.
    std::shared_ptr<std::atomic<quint64>> m_lastRequest = std::make_shared<std::atomic<quint64>>(0);
};

} // namespace quorvane
