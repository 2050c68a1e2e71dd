#include "ControlBus.h"

#include <array>

namespace quorvane::platform::controlbus {

namespace {

const QString errorPrefix = QStringLiteral("com.tallowind.Quorvane.Error.");

struct NamedKind {
    ControlOutcome::Kind kind;
    const char *name;
};

constexpr std::array namedKinds = {NamedKind{ControlOutcome::Kind::Failed, "Failed"},
                                   NamedKind{ControlOutcome::Kind::NotHidden, "NotHidden"},
                                   NamedKind{ControlOutcome::Kind::UnknownLocation, "UnknownLocation"}};

} // namespace

QVariantMap propertiesOf(const ControlState &state) {
    return {{QStringLiteral("State"), state.state},
            {QStringLiteral("CurrentAddress"), state.currentAddress},
            {QStringLiteral("RealAddress"), state.realAddress},
            {QStringLiteral("Location"), state.location},
            {QStringLiteral("NetworkLock"), state.locked},
            {QStringLiteral("AsksAdministrator"), state.asksAdministrator}};
}

ControlState stateOf(const QVariantMap &properties) {
    return {properties.value(QStringLiteral("State")).toString(),
            properties.value(QStringLiteral("CurrentAddress")).toString(),
            properties.value(QStringLiteral("RealAddress")).toString(),
            properties.value(QStringLiteral("Location")).toString(),
            properties.value(QStringLiteral("NetworkLock")).toBool(),
            properties.value(QStringLiteral("AsksAdministrator")).toBool()};
}

QVariantMap entryOf(const ControlLocation &location) {
    return {{QStringLiteral("title"), location.title},
            {QStringLiteral("country"), location.country},
            {QStringLiteral("full"), location.full},
            {QStringLiteral("selected"), location.selected}};
}

ControlLocation locationOf(const QVariantMap &entry) {
    return {entry.value(QStringLiteral("title")).toString(),
            entry.value(QStringLiteral("country")).toString(), entry.value(QStringLiteral("full")).toBool(),
            entry.value(QStringLiteral("selected")).toBool()};
}

QString methodOf(ControlOperation operation) {
    switch (operation) {
    case ControlOperation::Hide:
        return QStringLiteral("Hide");
    case ControlOperation::Stop:
        return QStringLiteral("Stop");
    case ControlOperation::Change:
        return QStringLiteral("Change");
    case ControlOperation::Discard:
        return QStringLiteral("Discard");
    case ControlOperation::Show:
        return QStringLiteral("Show");
    case ControlOperation::Quit:
        return QStringLiteral("Quit");
    }
    return {};
}

QString errorOf(ControlOutcome::Kind kind) {
    for (const NamedKind &named : namedKinds) {
        if (named.kind == kind) {
            return errorPrefix + QLatin1StringView(named.name);
        }
    }
    return errorPrefix + QStringLiteral("Failed");
}

ControlOutcome outcomeOf(const QDBusMessage &reply) {
    if (reply.type() != QDBusMessage::ErrorMessage) {
        return {ControlOutcome::Kind::Done, reply.arguments().value(0).toString()};
    }
    for (const NamedKind &named : namedKinds) {
        if (reply.errorName() == errorOf(named.kind)) {
            return {named.kind, reply.errorMessage()};
        }
    }
    // Every other error is the bus's own: there is no copy, or it ended before its answer.
    return {ControlOutcome::Kind::NotRunning, reply.errorMessage()};
}

} // namespace quorvane::platform::controlbus
