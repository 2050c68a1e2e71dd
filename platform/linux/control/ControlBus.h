#pragma once

#include "platform/Control.h"

#include <QDBusMessage>
#include <QVariantMap>

namespace quorvane::platform::controlbus {

inline const QString serviceName = QStringLiteral("com.tallowind.Quorvane");
inline const QString objectPath = QStringLiteral("/com/tallowind/Quorvane");
inline const QString interfaceName = QStringLiteral("com.tallowind.Quorvane");
inline const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
inline const QString propertiesChanged = QStringLiteral("PropertiesChanged");

/// The state as the interface's properties, and back. What is missing or of another type is empty.
[[nodiscard]] QVariantMap propertiesOf(const ControlState &state);
[[nodiscard]] ControlState stateOf(const QVariantMap &properties);

[[nodiscard]] QVariantMap entryOf(const ControlLocation &location);
[[nodiscard]] ControlLocation locationOf(const QVariantMap &entry);

/// The method of an operation.
[[nodiscard]] QString methodOf(ControlOperation operation);

/// The D-Bus error of a failed operation, and back.
[[nodiscard]] QString errorOf(ControlOutcome::Kind kind);
[[nodiscard]] ControlOutcome outcomeOf(const QDBusMessage &reply);

} // namespace quorvane::platform::controlbus
