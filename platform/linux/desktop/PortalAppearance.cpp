#include "PortalAppearance.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace quorvane::platform {

namespace {

using Settings = QMap<QString, QVariantMap>;

const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceSpace = QStringLiteral("org.freedesktop.appearance");
const QString interfaceSpace = QStringLiteral("org.gnome.desktop.interface");

ColorScheme schemeOf(uint value) {
    switch (value) {
    case 1:
        return ColorScheme::Dark;
    case 2:
        return ColorScheme::Light;
    default:
        return ColorScheme::NoPreference;
    }
}

} // namespace

PortalAppearance::PortalAppearance(const QDBusConnection &bus)
    : m_bus(bus), m_portal(portal, bus, QDBusServiceWatcher::WatchForRegistration) {
    qDBusRegisterMetaType<Settings>();
    QObject::connect(&m_portal, &QDBusServiceWatcher::serviceRegistered, this, [this] { read(); });
    m_bus.connect(portal, portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
                  SLOT(settingChanged(QDBusMessage)));
    read();
}

void PortalAppearance::read() {
    QDBusMessage call =
        QDBusMessage::createMethodCall(portal, portalPath, settingsInterface, QStringLiteral("ReadAll"));
    call.setAutoStartService(false);
    call << QStringList{appearanceSpace, interfaceSpace};
    auto *answer = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<Settings> reply = *answer;
        if (reply.isError()) {
            return;
        }
        DesktopAppearance found;
        const Settings settings = reply.value();
        for (auto space = settings.cbegin(); space != settings.cend(); ++space) {
            for (auto entry = space->cbegin(); entry != space->cend(); ++entry) {
                found = with(found, space.key(), entry.key(), entry.value());
            }
        }
        set(found);
    });
}

DesktopAppearance PortalAppearance::with(DesktopAppearance before, const QString &space, const QString &key,
                                         const QVariant &value) {
    if (space == appearanceSpace && key == QStringLiteral("color-scheme") &&
        value.typeId() == QMetaType::UInt) {
        before.scheme = schemeOf(value.toUInt());
    }
    if (space == interfaceSpace && key == QStringLiteral("enable-animations") &&
        value.typeId() == QMetaType::Bool) {
        before.reducesMotion = !value.toBool();
    }
    return before;
}

void PortalAppearance::settingChanged(const QDBusMessage &signal) {
    const QList<QVariant> values = signal.arguments();
    if (signal.signature() == QStringLiteral("ssv")) {
        set(with(m_current, values[0].toString(), values[1].toString(),
                 values[2].value<QDBusVariant>().variant()));
    }
}

void PortalAppearance::set(const DesktopAppearance &appearance) {
    if (appearance == m_current) {
        return;
    }
    m_current = appearance;
    const Observer observer = m_observer; // a copy: it may set another one
    if (observer) {
        observer();
    }
}

} // namespace quorvane::platform
