#pragma once

#include "QrvVpnData.h"

#include <QObject>

#include <memory>

namespace quorvane {

class QrvAPI;

/// Requests the OpenVPN configuration of one server group from the service and stores the configuration file,
/// a line in the session log, and in the preferences the path and the one-time pair.
///
/// start() and the signals belong to the main thread; the request and the writing run as one piece of
/// background work, beside any other. The caller keeps its buttons disabled meanwhile. If another request is
/// started nevertheless, only the last one counts: a superseded one emits nothing, and its answer is stored
/// only if that has begun already. A lock makes start() wait for the end of the storing, so that the last
/// answer is what remains.
class ConfigurationFetch final : public QObject {
    Q_OBJECT

public:
    /// The API client is not owned and must outlive this.
    explicit ConfigurationFetch(QrvAPI &api, QObject *parent = nullptr);
    ~ConfigurationFetch() override;

    /// Sends the request for one address of the group, picked at random among those still usable (there must
    /// be one). The title names the location in the session log; the transport is the label of the chosen
    /// segment. prepared() is emitted before the task is queued.
    void start(const QString &title, const QrvVpnDataPointer &data, const QString &transport);

Q_SIGNALS:
    /// The request is built and about to be sent.
    void prepared();
    /// Everything is stored; the tunnel can start.
    void stored();
    /// Follows stored() when its receivers have returned.
    void finished();
    /// The service refused, did not answer, or its answer contained no configuration.
    void failed();

private:
    void report(bool success);

    QrvAPI &m_api;
    struct Newest;

    /// Shared with the work that is running.
    std::shared_ptr<Newest> m_newest;
};

} // namespace quorvane
