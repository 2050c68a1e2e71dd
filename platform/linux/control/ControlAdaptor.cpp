#include "ControlAdaptor.h"

#include "ControlBus.h"

#include <QDBusMetaType>

#include <utility>

namespace quorvane::platform {

ControlAdaptor::ControlAdaptor(QObject *parent, const QDBusConnection &bus, ControlHandler &handler,
                               QString version)
    : QDBusAbstractAdaptor(parent), m_bus(bus), m_handler(handler), m_version(std::move(version)) {
    qDBusRegisterMetaType<QList<QVariantMap>>();
}

void ControlAdaptor::operate(ControlOperation operation, const QString &location,
                             const QDBusMessage &message) {
    message.setDelayedReply(true);
    const bool returnsAddress = operation == ControlOperation::Hide ||
                                operation == ControlOperation::Change ||
                                operation == ControlOperation::Discard;
    m_handler.operate(
        operation, location, [bus = m_bus, message, returnsAddress](const ControlOutcome &outcome) {
            if (outcome.kind != ControlOutcome::Kind::Done) {
                bus.send(message.createErrorReply(controlbus::errorOf(outcome.kind), outcome.text));
            } else if (returnsAddress) {
                bus.send(message.createReply(outcome.text));
            } else {
                bus.send(message.createReply());
            }
        });
}

QString ControlAdaptor::Hide(const QString &location, const QDBusMessage &message) {
    operate(ControlOperation::Hide, location, message);
    return {};
}

void ControlAdaptor::Stop(const QDBusMessage &message) {
    operate(ControlOperation::Stop, {}, message);
}

QString ControlAdaptor::Change(const QDBusMessage &message) {
    operate(ControlOperation::Change, {}, message);
    return {};
}

QString ControlAdaptor::Discard(const QDBusMessage &message) {
    operate(ControlOperation::Discard, {}, message);
    return {};
}

void ControlAdaptor::Show(const QDBusMessage &message) {
    operate(ControlOperation::Show, {}, message);
}

void ControlAdaptor::Quit(const QDBusMessage &message) {
    operate(ControlOperation::Quit, {}, message);
}

QList<QVariantMap> ControlAdaptor::GetLocations() {
    QList<QVariantMap> entries;
    for (const ControlLocation &location : m_handler.controlLocations()) {
        entries.append(controlbus::entryOf(location));
    }
    return entries;
}

} // namespace quorvane::platform
