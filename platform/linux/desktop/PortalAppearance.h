#pragma once

#include "platform/Appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>

namespace quorvane::platform {

/// The appearance that the desktop portal reports (org.freedesktop.portal.Settings). The portal is not
/// started for it; one that starts later is used.
class PortalAppearance final : public QObject, public Appearance {
    Q_OBJECT

public:
    explicit PortalAppearance(const QDBusConnection &bus);

    [[nodiscard]] DesktopAppearance current() const override { return m_current; }

    void setObserver(Observer observer) override { m_observer = std::move(observer); }

    /// What one setting of the portal changes. Unknown settings and values of other types change nothing.
    [[nodiscard]] static DesktopAppearance with(DesktopAppearance before, const QString &space,
                                                const QString &key, const QVariant &value);

private Q_SLOTS:
    void settingChanged(const QDBusMessage &signal);

private:
    void read();
    void set(const DesktopAppearance &appearance);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_portal;
    DesktopAppearance m_current;
    Observer m_observer;
};

} // namespace quorvane::platform
