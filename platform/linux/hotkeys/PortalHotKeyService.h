#pragma once

#include "HotKeyRegistry.h"
#include "PortalShortcuts.h"

#include <QHash>
#include <QTimer>

namespace quorvane::platform {

/// Global hot keys through the desktop portal, as under Wayland. The requested combination is a hint: the
/// user may choose other keys for the action in the desktop's own dialog.
///
/// A registration succeeds at once and is withdrawn later when the portal refuses. Until the portal has
/// replied, the service counts as available. A portal that starts later is reported as appearing.
class PortalHotKeyService final : public HotKeyService {
public:
    explicit PortalHotKeyService(const PortalShortcuts::Settings &settings);

    [[nodiscard]] bool isAvailable() const override;
    [[nodiscard]] HotKeyRegistration registerHotKey(quint32 keyCode, quint32 modifiers,
                                                    HotKeyIdentifier identifier) override;
    HotKeyError unregisterHotKey(HotKeyReference reference) override;
    void installEventHandler(EventHandler handler) override;
    void installRefusalHandler(RefusalHandler handler) override;
    void installAppearanceHandler(AppearanceHandler handler) override;
    void setDescription(quint32 id, const QString &text) override;

private:
    void sendWanted();
    void reportPressed(const QString &id) const;
    void reportAppearance() const;
    void withdraw(const QStringList &ids, HotKeyError error);
    [[nodiscard]] PortalShortcuts::Shortcut shortcutOf(const HotKeyRegistry::Entry &entry) const;

    HotKeyRegistry m_registry;
    QHash<quint32, QString> m_descriptions;
    EventHandler m_pressed;
    RefusalHandler m_refused;
    AppearanceHandler m_appeared;
    /// Collects the changes of one turn of the event loop.
    QTimer m_changed;
    PortalShortcuts m_shortcuts;
};

} // namespace quorvane::platform
