#pragma once

#include "platform/Control.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

namespace quorvane::platform {

/// The methods, properties and signals of com.tallowind.Quorvane. Every operation is answered when it has
/// ended.
class ControlAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.tallowind.Quorvane")
    Q_PROPERTY(QString State READ state)
    Q_PROPERTY(QString CurrentAddress READ currentAddress)
    Q_PROPERTY(QString RealAddress READ realAddress)
    Q_PROPERTY(QString Location READ location)
    Q_PROPERTY(bool NetworkLock READ networkLock)
    Q_PROPERTY(bool AsksAdministrator READ asksAdministrator)
    Q_PROPERTY(QString Version READ version)

public:
    /// The handler is not owned and must outlive this.
    ControlAdaptor(QObject *parent, const QDBusConnection &bus, ControlHandler &handler, QString version);

    [[nodiscard]] QString state() const { return m_handler.controlState().state; }

    [[nodiscard]] QString currentAddress() const { return m_handler.controlState().currentAddress; }

    [[nodiscard]] QString realAddress() const { return m_handler.controlState().realAddress; }

    [[nodiscard]] QString location() const { return m_handler.controlState().location; }

    [[nodiscard]] bool networkLock() const { return m_handler.controlState().locked; }

    [[nodiscard]] bool asksAdministrator() const { return m_handler.controlState().asksAdministrator; }

    [[nodiscard]] QString version() const { return m_version; }

    [[nodiscard]] ControlHandler &handler() const { return m_handler; }

    // The names of the interface begin with a capital letter.
    // NOLINTBEGIN(readability-identifier-naming)
public Q_SLOTS:
    QString Hide(const QString &location, const QDBusMessage &message);
    void Stop(const QDBusMessage &message);
    QString Change(const QDBusMessage &message);
    QString Discard(const QDBusMessage &message);
    void Show(const QDBusMessage &message);
    void Quit(const QDBusMessage &message);
    /// A dictionary for each location: title, country, full, selected.
    QList<QVariantMap> GetLocations();

Q_SIGNALS:
    void LocationsChanged();
    // NOLINTEND(readability-identifier-naming)

private:
    void operate(ControlOperation operation, const QString &location, const QDBusMessage &message);

    QDBusConnection m_bus;
    ControlHandler &m_handler;
    QString m_version;
};

} // namespace quorvane::platform
