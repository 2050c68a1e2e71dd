#include "DBusControlService.h"

#include "ControlAdaptor.h"
#include "ControlBus.h"

#include <utility>

namespace quorvane::platform {

DBusControlService::DBusControlService(const QDBusConnection &bus, QString version)
    : m_bus(bus), m_version(std::move(version)) {}

DBusControlService::~DBusControlService() {
    withdraw();
}

bool DBusControlService::offer(ControlHandler &handler) {
    withdraw();
    if (!m_bus.isConnected()) {
        return false;
    }
    m_object = std::make_unique<QObject>();
    m_adaptor = new ControlAdaptor(m_object.get(), m_bus, handler, m_version);
    m_reported = handler.controlState();
    if (m_bus.registerObject(controlbus::objectPath, m_object.get()) &&
        m_bus.registerService(controlbus::serviceName)) {
        return true;
    }
    withdraw();
    return false;
}

void DBusControlService::withdraw() {
    if (m_object) {
        m_bus.unregisterService(controlbus::serviceName);
        m_bus.unregisterObject(controlbus::objectPath);
        m_adaptor = nullptr;
        m_object.reset();
    }
}

void DBusControlService::reportState() {
    if (!m_object) {
        return;
    }
    const ControlState state = m_adaptor->handler().controlState();
    if (state == m_reported) {
        return;
    }
    const QVariantMap before = controlbus::propertiesOf(m_reported);
    QVariantMap changed = controlbus::propertiesOf(state);
    changed.removeIf([&before](QVariantMap::iterator entry) { return before.value(entry.key()) == *entry; });
    m_reported = state;
    QDBusMessage signal = QDBusMessage::createSignal(controlbus::objectPath, controlbus::propertiesInterface,
                                                     controlbus::propertiesChanged);
    signal << controlbus::interfaceName << changed << QStringList();
    m_bus.send(signal);
}

void DBusControlService::reportLocations() {
    if (m_adaptor != nullptr) {
        Q_EMIT m_adaptor->LocationsChanged();
    }
}

} // namespace quorvane::platform
