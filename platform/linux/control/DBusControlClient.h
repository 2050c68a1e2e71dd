#pragma once

#include "platform/Control.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QEventLoop>
#include <QObject>
#include <QStringList>

namespace quorvane::platform {

/// Reaches the running copy over the session bus. It starts one as `program` with `arguments`.
class DBusControlClient final : public QObject, public ControlClient {
    Q_OBJECT

public:
    /// A start that can be reached later than this has failed.
    static constexpr int startMilliseconds = 30000;

    DBusControlClient(const QDBusConnection &bus, QString program, QStringList arguments);

    [[nodiscard]] bool isRunning() override;
    [[nodiscard]] bool hasDisplay() const override;
    [[nodiscard]] bool start() override;
    ControlOutcome operate(ControlOperation operation, const QString &location,
                           const std::function<void(const ControlState &)> &observer) override;
    [[nodiscard]] std::optional<ControlState> state() override;
    [[nodiscard]] std::optional<QList<ControlLocation>> locations() override;
    void follow(const Follower &follower) override;

private Q_SLOTS:
    void propertiesChanged(const QDBusMessage &signal);

private:
    void observe(const std::function<void(const ControlState &)> &observer);

    QDBusConnection m_bus;
    QString m_program;
    QStringList m_arguments;
    std::function<void(const ControlState &)> m_observer;
};

} // namespace quorvane::platform
