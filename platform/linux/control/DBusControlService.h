#pragma once

#include "platform/Control.h"

#include <QDBusConnection>
#include <QObject>

namespace quorvane::platform {

class ControlAdaptor;

/// A running copy on the session bus, as com.tallowind.Quorvane.
class DBusControlService final : public QObject, public ControlService {
    Q_OBJECT

public:
    /// A connection that is not connected offers nothing.
    DBusControlService(const QDBusConnection &bus, QString version);
    ~DBusControlService() override;

    bool offer(ControlHandler &handler) override;
    void withdraw() override;
    void reportState() override;
    void reportLocations() override;

private:
    QDBusConnection m_bus;
    QString m_version;
    /// The object on the bus, and what it was last reported to be; absent while nothing is offered.
    std::unique_ptr<QObject> m_object;
    ControlAdaptor *m_adaptor = nullptr;
    ControlState m_reported;
};

} // namespace quorvane::platform
